#include "sound/LCrossFadeSource.h"

#include <algorithm>

#include "sound/LFixedPoint.h"

namespace {
constexpr int kIndexMask = LCrossFadeSource::kHistorySamples - 1;
}

void LCrossFadeSource::Clear() {
  std::fill(history_.begin(), history_.end(), 0);
  index_ = 0;
}

LSoundSource LCrossFadeSource::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCCrossFade>(input, *this);
}

void LSRCCrossFade::Read(int* out, int frames) {
  if (frames < 1) return;
  input_.Read(out, frames);
  const bool fade = owner_.request_.exchange(false, std::memory_order_relaxed);
  if (GetChannels() > LCrossFadeSource::kMaxChannels) return;
  if (fade) FadeFromHistory(out, frames);
  Remember(out, frames * GetChannels());
}

void LSRCCrossFade::FadeFromHistory(int* out, int frames) const {
  const int channels = GetChannels();
  const int step = kUnityGain24 / frames;
  int at = owner_.index_;
  for (int frame = 0; frame < frames; ++frame) {
    const int up = frame * step;
    const int down = kUnityGain24 - up;
    for (int channel = 0; channel < channels; ++channel, ++out, at = (at + 1) & kIndexMask)
      *out = WrapAdd32(MulGain24(*out, up), MulGain24(owner_.history_[std::size_t(at)], down));
  }
}

void LSRCCrossFade::Remember(const int* samples, int count) {
  int at = owner_.index_;
  while (count > 0) {
    const int part = std::min(count, LCrossFadeSource::kHistorySamples - at);
    std::copy_n(samples, part, owner_.history_.begin() + at);
    samples += part;
    count -= part;
    at = (at + part) & kIndexMask;
  }
  owner_.index_ = at;
}

void LSRCCrossFade::Seek(int frame) {
  const long long moved = (long long)frame - input_.GetPositionSample();
  input_.Seek(frame);
  owner_.index_ = int((owner_.index_ + moved * GetChannels()) & kIndexMask);
}
