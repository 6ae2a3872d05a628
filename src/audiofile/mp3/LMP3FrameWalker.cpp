#include "audiofile/mp3/LMP3FrameWalker.h"

#include <algorithm>
#include <cmath>

void LMP3FrameWalker::Init(bool fullScan) {
  endFrame_ = initial_.endFrame;
  if (initial_.isVariable)
    cache_.Init((file_.AudioEnd() - initial_.firstAudioOffset) / initial_.header.LeastFrameBytes(), kCacheStep);
  Seek(0);
  if (!initial_.isVariable || !fullScan) return;
  LMP3Frame frame;
  while (Next(frame)) continue;
  endFrame_ = nextNumber_;
  Seek(0);
}

bool LMP3FrameWalker::Next(LMP3Frame& frame) {
  LMP3FoundFrame found;
  if (isAtEnd_ || !LMP3FrameSearch::Next(file_, initial_.header, found)) {
    EndHere();
    return false;
  }
  frame.header = found.header;
  frame.offset = found.offset;
  frame.number = nextNumber_;
  if (found.skipped > 0 && !initial_.isVariable) frame.number = std::max(nextNumber_, NumberFromOffset(found.offset));
  nextNumber_ = frame.number + 1;
  file_.Seek(frame.offset + frame.header.FrameBytes());
  FrameFound(frame);
  return true;
}

bool LMP3FrameWalker::Seek(int number) {
  isAtEnd_ = false;
  if (number <= 0) {
    file_.Seek(initial_.firstAudioOffset);
    nextNumber_ = 0;
    return true;
  }
  return initial_.isVariable ? SeekByCache(number) : SeekByRate(number);
}

int LMP3FrameWalker::NumberFromOffset(std::int64_t offset) const {
  return int(std::lround(double(offset - initial_.firstAudioOffset) / initial_.averageFrameBytes));
}

// Half a frame early, so that the header nearest to the computed place is the first one met.
bool LMP3FrameWalker::SeekByRate(int number) {
  const double place = (number - 0.5) * initial_.averageFrameBytes;
  file_.Seek(initial_.firstAudioOffset + std::int64_t(place));
  LMP3FoundFrame found;
  if (!LMP3FrameSearch::Next(file_, initial_.header, found)) {
    nextNumber_ = number;
    EndHere();
    return false;
  }
  file_.Seek(found.offset);
  nextNumber_ = NumberFromOffset(found.offset);
  return true;
}

bool LMP3FrameWalker::SeekByCache(int number) {
  std::int64_t offset = initial_.firstAudioOffset;
  int nearest = number;
  if (!cache_.GetNearestPreviousFrame(nearest, offset)) nearest = 0;
  file_.Seek(offset);
  nextNumber_ = nearest;
  LMP3Frame passed;
  while (nextNumber_ < number)
    if (!Next(passed)) return false;
  return true;
}

void LMP3FrameWalker::FrameFound(const LMP3Frame& frame) {
  if (!initial_.isVariable) return;
  cache_.Set(frame.number, frame.offset);
  if (initial_.hasFrameCount || frame.number < nextEstimate_) return;
  const std::int64_t behind = frame.offset + frame.header.FrameBytes();
  const double average = double(behind - initial_.firstAudioOffset) / (frame.number + 1);
  const double left = std::ceil(double(file_.AudioEnd() - behind) / average);
  constexpr double kMaxFrames = 1 << 30;
  endFrame_ = int(std::min(frame.number + 1 + left, kMaxFrames));
  nextEstimate_ = frame.number + std::max(1, int(std::min(left, kMaxFrames) / kCheckpoints));
}

void LMP3FrameWalker::EndHere() {
  if (!isAtEnd_) endFrame_ = initial_.hasFrameCount ? std::min(endFrame_, nextNumber_) : nextNumber_;
  isAtEnd_ = true;
}
