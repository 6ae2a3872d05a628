// Hall: on each side eight combs beside each other, which lose their treble as they repeat, then four all-passes in a row.
// Signal   both sides hear the sum of the first two channels; a mono source is both and gets the mean of both sides;
//          further channels have no hall and keep their balance with the first two.
// Law      y = hall * wet + x * dry; wet = 3 * 10^(dB / 20), dry = 2 * 10^(dB / 20); feedback = 0.7 + 0.00007 per ms;
//          damping = 0.004 per percent.
// Units    time in ms, diffusion in percent, levels in dB.
// Threads  LSPReverb3 [main]; LSRCReverb3 [player], Read allocates nothing.
// Failure  none; what leaves the range of an int takes its nearest end.
#pragma once
#include "effects/LEffect.h"
#include "effects/LSoftStart.h"
#include "effects/kernels/LFilterKernels.h"

class LSPReverb3 final : public LEffect {
 public:
  static constexpr int kType = 8;
  enum Parameter { Time, Diffusion, Wet, Dry };
  // Past 4285 ms the combs would grow without end.
  static constexpr LEffectParameter kParameters[] = {
      {"Zeit", "ms", LSoundProcessParameter::Time, 0, 4000, 100, true},
      {"Streuung", "%", LSoundProcessParameter::Percent, 0, 100, 20},
      {"Effektanteil", "dB", LSoundProcessParameter::Db, -48, 12, 0},
      {"Originalanteil", "dB", LSoundProcessParameter::Db, -48, 12, 0},
  };
  static constexpr LEffectPreset kPresets[] = {{"Wohnzimmer", {50, kKeepValue, kKeepValue, kKeepValue}},
                                               {"Badezimmer", {250, kKeepValue, kKeepValue, kKeepValue}},
                                               {"Hörsaal", {500, kKeepValue, kKeepValue, kKeepValue}},
                                               {"Hangar", {1000, kKeepValue, kKeepValue, kKeepValue}}};

  LSPReverb3() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

struct LReverbSettings {
  float feedback, damping, wet, dry;
};

class LSRCReverb3 final : public LSoundProcessBase {
 public:
  LSRCReverb3(const LSoundSource& input, const LReverbSettings& settings,
              const LFilterKernels& kernels = FilterKernels());
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // the hall of what was before is gone

  // The lengths of the delays at a rate: left and right combs, left and right all-passes.
  static std::vector<int> LineFrames(int sampleRate);

 private:
  static constexpr int kBlockFrames = 512;  // small enough to stay near the processor

  void ReadBlock(int* out, int frames);

  const LFilterKernels& kernels_;
  LReverbSettings settings_;
  std::vector<float> lines_;  // all delays, one behind the other
  LReverb reverb_;
  float in_[kBlockFrames], left_[kBlockFrames], right_[kBlockFrames];
  LSoftStart softStart_;
};
