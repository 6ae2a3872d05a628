// Chorus: two more voices, late by delays that swing a little, each to its own time.
// Law      y = x + trunc(tap1 * g1 + tap2 * g2), in odd channels g2 and g1; g1 = gain, g2 = half of it. The voices swing
//          with 3/4 of the frequency set and with all of it, both from the centre on.
// Units    delay in ms, modulation in Hz, depth (of the delay) and gain in percent; a gain of 0 % passes the signal.
// Threads  LSPChorus [main]; LSRCChorus [player], Read allocates nothing.
// Failure  none; what leaves the range of an int takes its nearest end.
#pragma once
#include "effects/LEffect.h"
#include "effects/LModulatedRing.h"

class LSPChorus final : public LEffect {
 public:
  static constexpr int kType = 4;
  enum Parameter { Delay, Frequency, Depth, Gain };
  static constexpr LEffectParameter kParameters[] = {
      {"Verzögerung", "ms", LSoundProcessParameter::Time, 10, 100, 40},
      {"Modulationsfrequenz", "Hz", LSoundProcessParameter::Decimal, 0, 2000, 500},
      {"Modulationstiefe", "%", LSoundProcessParameter::Percent, 0, 30, 5},
      {"Zunahme", "%", LSoundProcessParameter::Percent, 0, 100, 70},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Stark", {40, 500, 5, 80}}, {"Mittel", {65, 500, 5, 80}}, {"Leise", {40, 500, 5, 50}}};

  LSPChorus() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCChorus final : public LSoundProcessBase {
 public:
  LSRCChorus(const LSoundSource& input, const LSwing& first, const LSwing& second, double gain);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // what was before is gone; the voices swing on

 private:
  LSwing first_, second_;
  double gains_[2];
  LModulatedRing ring_;
};
