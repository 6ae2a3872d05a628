// Vibrato: the pitch swings around that of the input, by a delay that swings.
// Law      delay = centre + swing * sin(2 pi hz * frame / rate), k its whole part and f the rest; between the frames an
//          all-pass: y = x[k + 1] + (1 - f) x[k] - (1 - f) last. A swing of (2^(depth / 12) - 1) * rate / (2 pi hz) frames
//          bends the pitch by the depth where the delay moves fastest.
// Units    frequency in Hz, depth in semitones. The output is late by the centre, two frames more than the swing.
// Threads  LSPVibrato [main]; LSRCVibrato [player], Read allocates nothing.
// Failure  none; what leaves the range of an int takes its nearest end.
#pragma once
#include "effects/LEffect.h"
#include "effects/LModulatedRing.h"

class LSPVibrato final : public LEffect {
 public:
  static constexpr int kType = 20;
  enum Parameter { Frequency, Depth };
  // A new one is the middle preset.
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Whole, 1, 15, 6},
      {"Tiefe (Halbton)", "", LSoundProcessParameter::Decimal, 10, 900, 500},
  };
  static constexpr LEffectPreset kPresets[] = {{"Stark", {10, 900}}, {"Mittel", {6, 500}}, {"Leise", {3, 250}}};

  LSPVibrato() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCVibrato final : public LSoundProcessBase {
 public:
  LSRCVibrato(const LSoundSource& input, const LSwing& swing);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // what was before is gone; the swing goes on

 private:
  LSwing swing_;
  LModulatedRing ring_;
  std::vector<double> last_;  // outputs, by channel
};
