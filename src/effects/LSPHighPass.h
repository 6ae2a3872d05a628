// High-pass of one pole, 6 dB an octave: takes away a share of what the low-pass of the same frequency gives.
// Law      y = x - (acc >> 8) * percent / 100, truncated; acc += y * c; in wrapping 32-bit arithmetic.
// Units    Hz; the share in percent: 100 takes all of the bass away, 0 passes the signal.
// Threads  LSPHighPass [main]; LSRCHighPass [player], Read allocates nothing.
// Failure  none.
#pragma once
#include <vector>

#include "effects/LEffect.h"

class LSPHighPass final : public LEffect {
 public:
  static constexpr int kType = 6;
  enum Parameter { Frequency, Share };
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Whole, 1, 20000, 50},
      {"Anteil", "%", LSoundProcessParameter::Percent, 0, 100, 100},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Allgemeine Audioreinigung", {200, kKeepValue}},
      {"Audio mit Radio-/ Telefon-Qualität", {4000, kKeepValue}},
  };

  LSPHighPass() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCHighPass final : public LSoundProcessBase {
 public:
  static constexpr int kSettleFrames = 512;

  LSRCHighPass(const LSoundSource& input, int frequencyHz, int percent);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // settles on the frames before, so that no bass step is heard

 private:
  int step8_, percent_;
  std::vector<int> accumulators_;  // one a channel
  std::vector<int> settling_;      // interleaved
};
