#include "effects/LSPEcho.h"

#include <algorithm>

namespace {

constexpr int kLeastSamples = 20;
constexpr long long kLoudest = 1 << 30;

std::size_t RingSamples(const LSoundSource& input, LSoundTime time) {
  const long long frames = (long long)input.GetSampleRate() * time / 1000;
  return std::size_t(std::max<long long>(frames * input.GetChannels(), kLeastSamples));
}

}  // namespace

LSoundSource LSPEcho::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCEcho>(input, Value(Gain), Value(Time));
}

LSRCEcho::LSRCEcho(const LSoundSource& input, int gainPercent, LSoundTime time)
    : LSoundProcessBase(input), gain9_((gainPercent << 9) / 100), ring_(RingSamples(input, time)) {
  SetPeak(std::max(GetPeak(), kPeakHeadroom));
}

void LSRCEcho::Read(int* out, int frames) {
  input_.Read(out, frames);
  const std::size_t size = ring_.size();
  for (int* const end = out + std::ptrdiff_t(frames) * GetChannels(); out < end; ++out) {
    const long long sum = (((long long)gain9_ * ring_[index_]) >> 9) + *out;
    *out = int(std::clamp(sum, -kLoudest, kLoudest));
    ring_[index_] = softStart_.IsOver() ? *out : int(*out * softStart_.Next());
    index_ = index_ + 1 == size ? 0 : index_ + 1;
  }
}

void LSRCEcho::Seek(int frame) {
  std::fill(ring_.begin(), ring_.end(), 0);
  index_ = 0;
  softStart_.Restart(frame);
  input_.Seek(frame);
}
