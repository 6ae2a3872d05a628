#include "audiofile/mp3/LMP3Source.h"

#include <algorithm>

LMP3Source::LMP3Source(const std::string& path, bool fullScan, bool gapless, const LMP3Kernels& kernels)
    : LSoundSourceBase(kDeckRate, 1, kPeakHeadroom), file_(path), decoder_(kernels) {
  if (!file_.IsOpen() || !initial_.Read(file_)) {
    SetError(file_.IsOpen() ? lseDamaged : lseCannotOpen);
    return;
  }
  SetSampleRate(initial_.header.SampleRate());
  SetChannels(static_cast<unsigned char>(initial_.header.Channels()));
  decoder_.SetChannels(initial_.header.Channels());
  frameSamples_ = initial_.header.Samples();
  if (gapless) {
    lead_ += initial_.encoderDelay;
    trimmed_ = initial_.encoderDelay + initial_.encoderPadding;
  }
  walker_.Init(fullScan);
}

int LMP3Source::GetEndSample() const {
  const std::int64_t end = std::int64_t{walker_.EndFrame()} * frameSamples_ - trimmed_;
  return int(std::clamp<std::int64_t>(end, 0, kEndless));
}

void LMP3Source::Read(int* out, int frames) {
  const int channels = GetChannels();
  while (frames > 0) {
    const int end = GetEndSample();
    int count = frames;
    if (position_ >= 0 && position_ < end) {
      count = ReadSound(out, std::min(frames, end - position_));
    } else {
      if (position_ < 0) count = int(std::min<std::int64_t>(frames, -std::int64_t{position_}));
      std::fill_n(out, std::ptrdiff_t{count} * channels, 0);
    }
    out += std::ptrdiff_t{count} * channels;
    frames -= count;
    position_ = position_ > kEndless - count ? kEndless : position_ + count;
  }
}

void LMP3Source::Seek(int frame) {
  position_ = frame;
  if (frame >= 0 && frame < GetEndSample()) MakeFrame(FrameAt(frame));
}

// From the frame at the position; silence where that cannot be made. Gives how many, at least 1.
int LMP3Source::ReadSound(int* out, int frames) {
  const int channels = GetChannels();
  const int number = FrameAt(position_);
  const int within = int(position_ + std::int64_t{lead_} - std::int64_t{number} * frameSamples_);
  const int count = std::min(frames, frameSamples_ - within);
  if (MakeFrame(number))
    std::copy_n(samples_ + within * channels, count * channels, out);
  else
    std::fill_n(out, count * channels, 0);
  return count;
}

// Brings a frame into samples_. Going on from the last one taken gives the same as beginning anew further back.
bool LMP3Source::MakeFrame(int number) {
  if (isMade_ && made_ == number) return true;
  if (number <= made_ || number > made_ + kPreRollFrames) {
    const int first = std::max(0, number - kPreRollFrames);
    decoder_.Clear();
    hasPending_ = isMade_ = false;
    made_ = first - 1;
    if (!walker_.Seek(first)) return false;
  }
  while (made_ < number)
    if (!TakeFrame(number)) return false;
  return true;
}

// Takes the next frame of those up to `number`: only its main data, unless it is near enough to be heard in `number`.
bool LMP3Source::TakeFrame(int number) {
  isMade_ = false;
  if (!hasPending_ && !walker_.Next(pending_)) return false;
  hasPending_ = true;
  if (pending_.number > number) {
    std::fill_n(samples_, frameSamples_ * GetChannels(), 0);
    decoder_.Clear();
    made_ = number;
    isMade_ = true;
    return true;
  }
  hasPending_ = false;
  const unsigned char* const bytes = file_.PeekAt(pending_.offset, pending_.header.FrameBytes());
  if (!bytes) return false;
  if (pending_.number < number - kWarmFrames) {
    decoder_.Collect(pending_.header, bytes);
  } else {
    decoder_.Decode(pending_.header, bytes, samples_);
    isMade_ = true;
  }
  made_ = pending_.number;
  return true;
}
