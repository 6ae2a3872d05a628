#include "audiofile/LRawFileDataSoundSink.h"

#include <algorithm>

#include "sound/LSoundSource.h"

LRawFileDataSoundSinkBase::LRawFileDataSoundSinkBase(LFileHandle&& file, const LSinkContainer& container, int rate,
                                                     unsigned char channels, int sampleBytes, Converter convert,
                                                     int startFrame)
    : LSoundSinkBase(rate, channels, !file.IsOpen()),
      frameBytes_(sampleBytes * GetChannels()),
      file_(std::move(file)),
      container_(container),
      headerBytes_(container.header({rate, GetChannels(), frameBytes_, 0, false}).Size()),
      convert_(convert),
      buffer_(std::size_t(kMaxBlockFrames) * std::size_t(frameBytes_)) {
  if (!file_.IsOpen()) return;
  position_ = int(std::clamp<std::int64_t>(startFrame, 0, FramesInFile()));
  WriteHeader(false);
  if (!file_.Truncate(OffsetOf(position_))) SetError();
}

LRawFileDataSoundSinkBase::~LRawFileDataSoundSinkBase() {
  if (!file_.IsOpen()) return;
  if (HasError()) {  // without the piece of a frame that a full disk may have left at the end
    position_ = int(std::min<std::int64_t>(position_, FramesInFile()));
    file_.Truncate(OffsetOf(position_));
  }
  if (container_.padsToEven && (std::int64_t{position_} * frameBytes_ & 1) != 0)
    file_.WriteAt("", 1, OffsetOf(position_));
  WriteHeader(true);
}

std::int64_t LRawFileDataSoundSinkBase::FramesInFile() const {
  return std::max<std::int64_t>(file_.Size() - headerBytes_, 0) / frameBytes_;
}

void LRawFileDataSoundSinkBase::WriteHeader(bool final) {
  const LHeaderBytes bytes = container_.header({GetSampleRate(), GetChannels(), frameBytes_, position_, final});
  if (!file_.WriteAt(bytes.Data(), std::size_t(bytes.Size()), 0)) SetError();
}

void LRawFileDataSoundSinkBase::Write(const int* samples, int frames) {
  const std::int64_t limit = std::min<std::int64_t>(container_.maxDataBytes / frameBytes_, kEndless);
  const int fitting = int(std::min<std::int64_t>(frames, limit - position_));
  if (fitting < frames) SetError();
  for (int done = 0; done < fitting;) {
    const int count = std::min(fitting - done, kMaxBlockFrames);
    WriteBlock(samples + std::ptrdiff_t{done} * GetChannels(), count);
    done += count;
  }
}

// At its own place in the file, so that a block lost to a full disk does not shift the ones behind it.
void LRawFileDataSoundSinkBase::WriteBlock(const int* samples, int frames) {
  const std::int64_t offset = OffsetOf(position_);
  position_ += frames;
  convert_(buffer_.data(), samples, frames * GetChannels());
  if (!file_.WriteAt(buffer_.data(), std::size_t(frames) * std::size_t(frameBytes_), offset)) SetError();
  if (!container_.marksGrowing) WriteHeader(false);
}

void LRawFileDataSoundSinkBase::Seek(int frame) {
  if (frame > position_ || !file_.IsOpen()) return;
  position_ = std::max(frame, 0);
  if (!file_.Truncate(OffsetOf(position_))) SetError();
  if (!container_.marksGrowing) WriteHeader(false);
}
