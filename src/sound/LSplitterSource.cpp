#include "sound/LSplitterSource.h"

#include <algorithm>
#include <mutex>

int LSplitterRing::Filled() const {
  const int filled = write - read;
  return filled < 0 ? filled + kCapacitySamples : filled;
}

void LSplitterRing::Drop(int count) { read = (read + count) % kCapacitySamples; }

void LSplitterRing::Append(const int* in, int count, int width) {
  const int excess = Filled() + count - (kCapacitySamples - 1);
  if (excess > 0) Drop(std::min((excess + width - 1) / width * width, Filled()));
  const int first = std::min(count, kCapacitySamples - write);
  std::copy_n(in, first, samples.begin() + write);
  std::copy_n(in + first, count - first, samples.begin());
  write = (write + count) % kCapacitySamples;
}

void LSplitterRing::Take(int* out, int count) {
  const int first = std::min(count, kCapacitySamples - read);
  std::copy_n(samples.begin() + read, first, out);
  std::copy_n(samples.begin(), count - first, out + first);
  Drop(count);
}

int LSplitterPrimarySource::Width(int first, int second, int width) {
  return width > 0 ? width : std::max(std::max(first, second) + 1, 1);
}

LSplitterPrimarySource::LSplitterPrimarySource(const LSoundSource& input, LSplitterRing& main, LSplitterRing& phones,
                                               const std::array<int, 4>& map, LMutex& mutex, int width)
    : LSoundSourceBase(input.GetSampleRate(), static_cast<unsigned char>(Width(map[0], map[1], width)), input.GetPeak(),
                       input.IsOk() ? lseNone : lseInputError),
      input_(input),
      main_(main),
      phones_(phones),
      map_(map),
      mutex_(mutex),
      mainChannels_(Width(map[0], map[1], width)),
      phonesChannels_(Width(map[2], map[3], width)),
      scratch_(std::size_t(kMaxBlockFrames) * input.GetChannels()),
      staging_(std::size_t(kMaxBlockFrames) * std::size_t(std::max(mainChannels_, phonesChannels_))) {}

void LSplitterPrimarySource::Read(int* out, int frames) {
  std::lock_guard lock(mutex_);
  Discard();
  while (frames > 0) {
    const int part = std::min(frames, kMaxBlockFrames);
    Fill(part);
    // Maps of different width without a given one: the ring may hold narrower frames than this half reports.
    const int wanted = part * GetChannels();
    const int got = std::min(wanted, OwnRing().Filled());
    OwnRing().Take(out, got);
    std::fill_n(out + got, wanted - got, 0);
    out += wanted;
    frames -= part;
  }
}

void LSplitterPrimarySource::Discard() {
  while (skipFrames_ > 0) {
    const int part = std::min(skipFrames_, kMaxBlockFrames);
    Fill(part);
    OwnRing().Drop(std::min(part * GetChannels(), OwnRing().Filled()));
    skipFrames_ -= part;
  }
}

void LSplitterPrimarySource::Fill(int frames) {
  if (OwnRing().Filled() >= frames * GetChannels()) return;
  input_.Read(scratch_.data(), frames);
  FeedRing(main_, 0, mainChannels_, frames);
  FeedRing(phones_, 2, phonesChannels_, frames);
}

void LSplitterPrimarySource::FeedRing(LSplitterRing& ring, int firstChannel, int width, int frames) {
  const int inChannels = input_.GetChannels();
  std::fill_n(staging_.begin(), frames * width, 0);
  for (int channel = firstChannel; channel < std::min(firstChannel + 2, inChannels); ++channel) {
    const int target = map_[std::size_t(channel)];
    if (target < 0 || target >= width) continue;
    const int* in = scratch_.data() + channel;
    int* out = staging_.data() + target;
    for (int frame = 0; frame < frames; ++frame, in += inChannels, out += width) *out = *in;
  }
  ring.Append(staging_.data(), frames * width, width);
}

int LSplitterPrimarySource::GetPositionSample() const {
  std::lock_guard lock(mutex_);
  return input_.GetPositionSample() - OwnRing().Filled() / GetChannels() + skipFrames_;
}

void LSplitterPrimarySource::Seek(int frame) {
  std::lock_guard lock(mutex_);
  if (deferSeek_) {
    deferredFrame_ = frame;
    return;
  }
  input_.Seek(frame);
  main_.Clear();
  phones_.Clear();
  skipFrames_ = 0;
}

void LSplitterPrimarySource::DeferSeek() {
  deferredFrame_ = GetPositionSample();
  deferSeek_ = true;
}

int LSplitterPrimarySource::EndDeferredSeek() {
  deferSeek_ = false;
  return deferredFrame_;
}

void LSplitterPrimarySource::SkipFrames(int frames) {
  std::lock_guard lock(mutex_);
  skipFrames_ += std::max(frames, 0);
}

void LSplitterPrimarySource::ForgetSkip() {
  std::lock_guard lock(mutex_);
  skipFrames_ = 0;
}
