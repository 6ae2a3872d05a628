#include "effects/LSPReverb3.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "sound/LWrap.h"

namespace {

constexpr int kCombFrames[kReverbSides][kReverbCombs] = {{1116, 1188, 1277, 1356, 1422, 1491, 1557, 1617},
                                                         {1139, 1211, 1300, 1379, 1455, 1514, 1580, 1640}};
constexpr int kAllPassFrames[kReverbSides][kReverbAllPasses] = {{556, 441, 341, 225}, {579, 464, 364, 248}};
constexpr double kPerDeckRate = 2.2675737e-5;  // s: the lengths above are for 44100 Hz
constexpr float kInputGain = 0.015F;           // eight combs with their feedback add up to a multiple of what goes in
constexpr double kWetScale = 3, kDryScale = 2;

float Factor(double scale, int db) { return float(scale * std::pow(10, db * 0.05)); }

}  // namespace

LSoundSource LSPReverb3::OpenSource(LSoundSource& input) {
  const auto feedback = float(Value(Time) * 7e-5 + 0.7), damping = float(Value(Diffusion) * 0.004);
  const LReverbSettings settings{feedback, damping, Factor(kWetScale, Value(Wet)), Factor(kDryScale, Value(Dry))};
  return LSoundSource::Make<LSRCReverb3>(input, settings);
}

std::vector<int> LSRCReverb3::LineFrames(int sampleRate) {
  std::vector<int> lengths;
  const auto add = [&](int frames) { lengths.push_back(std::max(int(sampleRate * kPerDeckRate * frames), 1)); };
  for (const auto& side : kCombFrames) std::for_each(std::begin(side), std::end(side), add);
  for (const auto& side : kAllPassFrames) std::for_each(std::begin(side), std::end(side), add);
  return lengths;
}

LSRCReverb3::LSRCReverb3(const LSoundSource& input, const LReverbSettings& settings, const LFilterKernels& kernels)
    : LSoundProcessBase(input), kernels_(kernels), settings_(settings), reverb_{} {
  const std::vector<int> lengths = LineFrames(input.GetSampleRate());
  lines_.resize(std::size_t(std::accumulate(lengths.begin(), lengths.end(), 0LL)));
  float* at = lines_.data();
  auto length = lengths.begin();
  const auto place = [&](LReverbLine& line) {
    line = {at, *length, 0};
    at += *length++;
  };
  for (auto& side : reverb_.combs) std::for_each(std::begin(side), std::end(side), place);
  for (auto& side : reverb_.allPasses) std::for_each(std::begin(side), std::end(side), place);
  reverb_.feedback = settings.feedback;
  reverb_.damping = settings.damping;
  SetPeak(std::max(SaturateToInt(settings.dry * double(GetPeak())), kPeakHeadroom));
}

void LSRCReverb3::Read(int* out, int frames) {
  input_.Read(out, frames);
  for (int done = 0; done < frames; done += kBlockFrames)
    ReadBlock(out + std::ptrdiff_t(done) * GetChannels(), std::min(frames - done, kBlockFrames));
}

void LSRCReverb3::ReadBlock(int* out, int frames) {
  const int channels = GetChannels(), right = channels > 1 ? 1 : 0;
  for (int i = 0; i < frames; ++i) {
    const int* frame = out + std::ptrdiff_t(i) * channels;
    in_[i] = (float(frame[0]) + float(frame[right])) * kInputGain;
    if (!softStart_.IsOver()) in_[i] *= float(softStart_.Next());
  }
  kernels_.reverb(reverb_, {in_, {left_, right_}, frames});
  for (int i = 0; i < frames; ++i, out += channels) {
    const float wet[] = {left_[i] * settings_.wet, right_[i] * settings_.wet};
    if (channels == 1) {
      out[0] = SaturateToInt((wet[0] + wet[1]) / 2 + float(out[0]) * settings_.dry);
      continue;
    }
    for (int channel = 0; channel < channels; ++channel)
      out[channel] = SaturateToInt((channel < 2 ? wet[channel] : 0) + float(out[channel]) * settings_.dry);
  }
}

void LSRCReverb3::Seek(int frame) {
  std::fill(lines_.begin(), lines_.end(), 0.0F);
  for (auto& side : reverb_.stores) std::fill(std::begin(side), std::end(side), 0.0F);
  softStart_.Restart(frame);
  input_.Seek(frame);
}
