// Distortion: a curve of three straight pieces through the origin and the threshold. Soft samples are raised, from the
// threshold on loud ones are held back.
// Law      c = 1 - 0.22 degree; slopes 4 - 3c below a quarter of the threshold, c up to it, 1 - degree above; odd in the
//          sign of the sample. out = y * level / 100 + x * (100 - level) / 100, each quotient truncated.
// Units    degree 0 (passes the signal) to 1 (clips); the threshold in dB of full scale, in the shape as a sample; the
//          level in percent of the distorted signal. Slopes with 24 fraction bits.
// Threads  LSPDistortion [main]; LSRCDistortion [player], Read allocates nothing.
// Failure  none.
#pragma once
#include "effects/LEffect.h"

class LSPDistortion final : public LEffect {
 public:
  static constexpr int kType = 5;
  enum Parameter { Degree, Threshold, Level };
  static constexpr LEffectParameter kParameters[] = {
      {"Grad", "", LSoundProcessParameter::Decimal, 0, 1000, 500},
      {"Schwelle", "dB", LSoundProcessParameter::Db, -60, 0, -20},
      {"Pegel", "%", LSoundProcessParameter::Percent, 0, 100, 100},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Clip", {1000, -32, kKeepValue}},
      {"Stark", {600, -24, kKeepValue}},
      {"Mittel", {300, -18, kKeepValue}},
      {"Leicht", {100, -12, kKeepValue}},
  };

  LSPDistortion() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LDistortionShape {
 public:
  struct Piece {
    int slope24, offset;
  };
  LDistortionShape(double degree, int threshold);
  int operator()(int sample) const;
  const Piece& Inner() const { return inner_; }
  const Piece& Middle() const { return middle_; }
  const Piece& Outer() const { return outer_; }

 private:
  int threshold_;
  Piece inner_, middle_, outer_;
};

class LSRCDistortion final : public LSoundProcessBase {
 public:
  LSRCDistortion(const LSoundSource& input, const LDistortionShape& shape, int levelPercent);
  void Read(int* out, int frames) override;

 private:
  int Shaped(int sample) const;

  LDistortionShape shape_;
  int levelPercent_;
};
