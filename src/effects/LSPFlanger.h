// Flanger: the sound and itself, a few milliseconds late by a delay that swings.
// Law      y = x + trunc(tap * wet); delay = centre + sin * swing, swing a part of the centre.
// Units    delay in ms, modulation in Hz, depth and gain in percent; a gain of 0 % passes the signal.
// Threads  LSPFlanger [main]; LSRCFlanger [player], Read allocates nothing.
// Failure  none; what leaves the range of an int takes its nearest end.
#pragma once
#include "effects/LEffect.h"
#include "effects/LModulatedRing.h"

class LSPFlanger final : public LEffect {
 public:
  static constexpr int kType = 7;
  enum Parameter { Delay, Frequency, Depth, Gain };
  static constexpr LEffectParameter kParameters[] = {
      {"Verzögerung", "ms", LSoundProcessParameter::Time, 1, 50, 5},
      {"Modulationsfrequenz", "Hz", LSoundProcessParameter::Decimal, 0, 10000, 5000},
      {"Modulationstiefe", "%", LSoundProcessParameter::Percent, 0, 100, 70},
      {"Zunahme", "%", LSoundProcessParameter::Percent, 0, 100, 50},
  };
  static constexpr LEffectPreset kPresets[] = {{"Stark", {kKeepValue, kKeepValue, kKeepValue, 100}},
                                               {"Mittel", {kKeepValue, kKeepValue, kKeepValue, 90}},
                                               {"Leise", {kKeepValue, kKeepValue, kKeepValue, 50}}};

  LSPFlanger() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCFlanger final : public LSoundProcessBase {
 public:
  LSRCFlanger(const LSoundSource& input, const LSwing& swing, double wet);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // what was before is gone; the swing goes on

 private:
  LSwing swing_;
  double wet_;
  LModulatedRing ring_;
};
