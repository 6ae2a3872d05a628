#include "effects/LSPDoppler.h"

#include <cmath>

#include "sound/LWrap.h"
#include "tempo/LSPVarPitchShift.h"

namespace {
constexpr double kPerSpeedOfSound = 1 / 343.3125;  // s/m, in air at 20 degrees
}

double LDopplerPass::Along(double at) const { return std::abs(at - frame) / sampleRate * speed; }

double LDopplerPass::Ratio(double at) const {
  const double along = Along(at), towards = along / std::sqrt(along * along + height * height);
  return 1 + (at > frame ? -speed : speed) * towards * kPerSpeedOfSound;
}

double LDopplerPass::Level(double at) const {
  const double along = Along(at);
  return height / std::sqrt(along * along + height * height);
}

LSoundSource LSPDoppler::OpenSource(LSoundSource& input) {
  const int passing = SaturateToInt(input.GetEndSample() * Percent(Horizontal) + 0.5);
  const LDopplerPass pass{passing, input.GetSampleRate(), double(Value(Speed)), double(Value(Vertical))};
  return LSoundSource::Make<LSRCDoppler>(input, pass, Value(ChangeVolume) != 0);
}

LSRCDoppler::LSRCDoppler(const LSoundSource& input, const LDopplerPass& pass, bool changesVolume)
    : LSoundProcessBase(input), pass_(pass), changesVolume_(changesVolume) {
  input_ = LSPVarPitchShift(GetRatiosCallback, &pass_).OpenSource(input_);
  SetPeak(input_.GetPeak());
}

double LSRCDoppler::GetRatiosCallback(int frame, double /*inputPosition*/, void* pass) {
  return static_cast<const LDopplerPass*>(pass)->Ratio(frame);
}

void LSRCDoppler::Read(int* out, int frames) {
  const int channels = GetChannels();
  double at = double(input_.GetPositionSample()) * channels;
  input_.Read(out, frames);
  if (!changesVolume_) return;
  for (int* const end = out + std::ptrdiff_t(frames) * channels; out < end; ++out, ++at)
    *out = SaturateToInt(*out * pass_.Level(at));
}
