// Echo with feedback: what comes out goes back in, later and softer.
// Law      y = (gain9 * ring >> 9) + x; ring = y, held within 2^30: at 99 % repeats add up to a hundred times the input.
//          Entered in the middle of a track, the first echo fades in (LSoftStart).
// Units    gain in percent; time in ms.
// Threads  LSPEcho [main]; LSRCEcho [player], Read allocates nothing.
// Failure  without memory for its ring it repeats after 20 samples.
#pragma once
#include <vector>

#include "effects/LEffect.h"
#include "effects/LSoftStart.h"

class LSPEcho final : public LEffect {
 public:
  static constexpr int kType = 3;
  enum Parameter { Gain, Time };
  static constexpr LEffectParameter kParameters[] = {
      {"Zunahme", "%", LSoundProcessParameter::Percent, 1, 99, 50},
      {"Zeit", "ms", LSoundProcessParameter::Time, 1, 4000, 100, true},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Wohnzimmer", {10, 50}}, {"Höhle", {40, 400}}, {"Grand Canyon", {75, 750}}};

  LSPEcho() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCEcho final : public LSoundProcessBase {
 public:
  LSRCEcho(const LSoundSource& input, int gainPercent, LSoundTime time);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // the echoes of what was before are gone

 private:
  int gain9_;
  std::vector<int> ring_;  // interleaved
  std::size_t index_ = 0;
  LSoftStart softStart_;
};
