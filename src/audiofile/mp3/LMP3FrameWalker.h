// Goes through the frames of a file by number, and knows how many there are.
// Law      constant bit rate: a frame's number follows from its place, so that what damage has taken away counts as frames
//          that are not there. Variable: numbers count what is found from the start on; places passed are remembered.
//          Without a count from a tag block the end is estimated from the mean length so far, anew at ever nearer
//          checkpoints, so it is exact once the last frame has been found.
// Units    frames of the stream by number from 0; offsets in bytes
// Threads  one thread at a time; allocates in Init alone
// Failure  Next and Seek are false where the file ends, and the end is moved there
#pragma once
#include "audiofile/mp3/LMP3FrameCache.h"
#include "audiofile/mp3/LMP3InitialHeader.h"

struct LMP3Frame {
  LMP3Header header;
  std::int64_t offset = 0;
  int number = 0;
};

class LMP3FrameWalker {
 public:
  LMP3FrameWalker(LMP3ReadFile& file, const LMP3InitialHeader& initial) : file_(file), initial_(initial) {}

  void Init(bool fullScan);
  int EndFrame() const { return endFrame_; }
  // The next frame; its number may leave some out.
  bool Next(LMP3Frame& frame);
  // Goes to where Next gives frame `number`, or the first one behind it.
  bool Seek(int number);

 private:
  static constexpr int kCacheStep = 16;  // frames
  static constexpr int kCheckpoints = 50;

  int NumberFromOffset(std::int64_t offset) const;
  bool SeekByRate(int number);
  bool SeekByCache(int number);
  void FrameFound(const LMP3Frame& frame);
  void EndHere();

  LMP3ReadFile& file_;
  const LMP3InitialHeader& initial_;
  LMP3FrameCache cache_;
  int endFrame_ = 0;
  int nextNumber_ = 0;
  int nextEstimate_ = 0;  // number of the frame at which the end is estimated again
  bool isAtEnd_ = false;
};
