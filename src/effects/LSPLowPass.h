// Low-pass of one pole, 6 dB an octave.
// Law      acc += (x - (acc >> 8)) * c; y = acc >> 8; in wrapping 32-bit arithmetic.
// Units    Hz.
// Threads  LSPLowPass [main]; LSRCLowPass [player], Read allocates nothing.
// Failure  none; below about 28 Hz at 44100 Hz the step is 0 and nothing passes.
#pragma once
#include <vector>

#include "effects/LEffect.h"

class LSPLowPass final : public LEffect {
 public:
  static constexpr int kType = 15;
  enum Parameter { Frequency };
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Whole, 1, 20000, 1600},
  };

  LSPLowPass() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCLowPass final : public LSoundProcessBase {
 public:
  LSRCLowPass(const LSoundSource& input, int frequencyHz);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // begins anew, from silence

 private:
  int step8_;
  std::vector<int> accumulators_;  // one a channel
};
