#include "audiofile/LRawFileDataSoundSource.h"

#include <algorithm>

namespace {

// The buffer holds a whole block, but a short file does not get a long one only because it claims 255 channels.
constexpr std::int64_t kSmallBufferBytes = 0x10000;

std::size_t BufferBytes(std::int64_t fileBytes, int frameBytes, bool growing) {
  const std::int64_t block = std::int64_t{kMaxBlockFrames} * frameBytes;
  return std::size_t(growing ? block : std::min(block, std::max(fileBytes, kSmallBufferBytes)));
}

}  // namespace

LRawFileDataSoundSourceBase::LRawFileDataSoundSourceBase(LPCMData&& data, int sampleBytes, int peak, Converter convert,
                                                         bool growing)
    : LPositionedSource(data.rate, data.channels, peak),
      file_(std::move(data.file)),
      dataStart_(data.start),
      end_(0),
      frameBytes_(sampleBytes * GetChannels()),
      convert_(convert),
      buffer_(BufferBytes(file_.Size(), frameBytes_, growing)),
      bufferFrames_(int(buffer_.size()) / frameBytes_) {
  end_ = growing ? -1 : data.HasUnknownLength() ? FramesInFile() : FramesOf(data.length);
}

int LRawFileDataSoundSourceBase::FramesOf(std::int64_t bytes) const {
  return int(std::clamp<std::int64_t>(bytes / frameBytes_, 0, kEndless - 1));
}

int LRawFileDataSoundSourceBase::FramesInFile() const { return FramesOf(file_.Size() - dataStart_); }

int LRawFileDataSoundSourceBase::ReadFrames(int* out, int frames) {
  const std::int64_t offset = dataStart_ + std::int64_t{position_} * frameBytes_;
  const std::int64_t got = file_.ReadAt(buffer_.data(), std::size_t(frames) * std::size_t(frameBytes_), offset);
  const int whole = int(std::max<std::int64_t>(got, 0) / frameBytes_);
  convert_(out, buffer_.data(), whole * GetChannels());
  return whole;
}

void LRawFileDataSoundSourceBase::Read(int* out, int frames) {
  const std::ptrdiff_t channels = GetChannels();
  ReadSilenceBefore(out, frames);
  const bool growing = end_ < 0;
  while (frames > 0 && (growing || position_ < end_)) {
    const int wanted = std::min({frames, bufferFrames_, growing ? frames : end_ - position_});
    const int got = ReadFrames(out, wanted);
    Advance(got);
    out += got * channels;
    frames -= got;
    if (got < wanted) break;
  }
  if (frames <= 0) return;
  std::fill_n(out, frames * channels, 0);
  if (!growing) Advance(frames);  // of a growing file the frames are still to come
}
