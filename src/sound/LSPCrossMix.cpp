#include "sound/LSPCrossMix.h"

#include <algorithm>

#include "sound/LWrap.h"

LSoundSource LSPCrossMix::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCCrossMix>(input, second_, fadeFrames_);
}

int LSPCrossMix::FadeFrames(int totalFrames, int sampleRate) {
  return sampleRate / 10 <= 1 ? 1 : std::min(totalFrames / 10, sampleRate / 10);
}

LSRCCrossMix::LSRCCrossMix(const LSoundSource& first, const LSoundSource& second, int fadeFrames)
    : LSoundProcessBase(first), second_(second), fadeFrames_(std::max(fadeFrames, 0)) {
  if (!second.IsOk() || second.GetChannels() != GetChannels()) SetError(lseInputError);
  const auto count = std::size_t(fadeFrames_);
  const float step = 1.0F / float(std::max(fadeFrames_, 1));
  for (int i = 0; i < fadeFrames_; ++i) {
    rising_.push_back(float(i) * step);
    falling_.push_back(1.0F - float(i) * step);
  }
  firstBlock_.resize(count * GetChannels());
  secondBlock_.resize(count * std::max(GetChannels(), second.GetChannels()));
}

void LSRCCrossMix::Read(int* out, int frames) {
  const int channels = GetChannels();
  int done = 0;
  while (done < frames) {
    const int part = ReadPart(out + done * channels, frames - done, done);
    if (part < 1) break;
    done += part;
    position_ += part;
  }
  if (done < frames) std::fill_n(out + done * channels, (frames - done) * channels, 0);
}

int LSRCCrossMix::ReadPart(int* out, int frames, int done) {
  const int end = input_.GetEndSample();
  const int tail = end - fadeFrames_;
  if (position_ < 0) {
    const int part = std::min(frames, -position_);
    input_.Read(out, part);
    return part;
  }
  if (position_ < fadeFrames_) {
    const int part = std::min({frames, fadeFrames_ - position_, fadeFrames_ - done});
    if (part > 0) Fade(out, part, rising_.data() + done, falling_.data() + done);
    return part;
  }
  if (position_ < tail) {
    const int part = std::min(frames, tail - position_);
    second_.Seek(tail - position_);
    input_.Read(out, part);
    return part;
  }
  const int part = std::min(frames, end - position_);
  const int at = position_ - tail;
  if (part > 0) Fade(out, part, falling_.data() + at, rising_.data() + at);
  return part;
}

void LSRCCrossMix::Fade(int* out, int frames, const float* firstRamp, const float* secondRamp) {
  const int channels = GetChannels();
  input_.Read(firstBlock_.data(), frames);
  second_.Read(secondBlock_.data(), frames);
  for (int frame = 0, i = 0; frame < frames; ++frame)
    for (int channel = 0; channel < channels; ++channel, ++i) {
      const float sum = float(firstBlock_[std::size_t(i)]) * firstRamp[frame] +
                        float(secondBlock_[std::size_t(i)]) * secondRamp[frame];
      out[i] = SaturateToInt(sum);
    }
}

void LSRCCrossMix::Seek(int frame) {
  input_.Seek(frame);
  if (frame < fadeFrames_) second_.Seek(std::max(frame, 0));
  position_ = frame;
}
