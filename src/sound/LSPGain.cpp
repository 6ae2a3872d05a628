#include "sound/LSPGain.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "sound/LFixedPoint.h"
#include "sound/LSoundLevel.h"

namespace {

constexpr double kGainOfPercent = 167772.16;              // 2^24 / 100
constexpr double kPercentOfGain = 5.9604644775390625e-6;  // 100 / 2^24

constexpr int kPresetCount = int(std::size(LSPGain::kPresets));

bool IsPreset(int index) { return index >= 0 && index < kPresetCount; }

}  // namespace

LSoundSource LSPGain::OpenSource(LSoundSource& input) { return LSoundSource::Make<LSRCGain>(input, gain24_); }

int LSPGain::Gain24OfPercent(int percent) {
  return int(std::clamp(percent, kMinPercent, kMaxPercent) * kGainOfPercent);
}

int LSPGain::PercentOfGain24(int gain24) { return int(std::ceil(gain24 * kPercentOfGain)); }

void LSPGain::SetParameterByIndex(int index, int percent) {
  if (index == 0) gain24_ = Gain24OfPercent(percent);
}

bool LSPGain::GetParameterByIndex(int index, LSoundProcessParameter* parameter) const {
  if (index != 0) return false;
  *parameter = {kParameterName, "%", LSoundProcessParameter::Percent, Percent(), kMinPercent, kMaxPercent};
  return true;
}

int LSPGain::GetNumPresets() const { return kPresetCount; }

std::string LSPGain::GetPresetsName(int index) const { return IsPreset(index) ? kPresets[index].name : ""; }

void LSPGain::SetPreset(int index) {
  if (IsPreset(index)) SetParameterByIndex(0, kPresets[index].percent);
}

int LSPGain::GetIndexInPreset() const {
  for (int index = 0; index < kPresetCount; ++index)
    if (kPresets[index].percent == Percent()) return index;
  return -1;
}

LSRCGain::LSRCGain(const LSoundSource& input, int gain24) : LSoundProcessBase(input), gain9_(Gain9FromGain24(gain24)) {
  if (gain24 > kUnityGain24) SetPeak(kPeakHeadroom);
}

void LSRCGain::Read(int* out, int frames) {
  input_.Read(out, frames);
  if (gain9_ != kUnityGain9) GainAudioBufferQuick(gain9_, out, frames * GetChannels());
}
