// What a speed source has lately played: how many frames of its input stood behind how many of its output, newest first.
// Units    frames of output and of input; input frames are negative where it plays backward.
// Memory   a ring for kMaxFrames entries, 2 MiB, since an entry is at least one output frame and what lies further back
//          than kMaxFrames of output is dropped. Only what is used is ever touched.
// Threads  [player]; allocates at construction only.
#pragma once
#include <memory>

class LSpeedTimeMap {
 public:
  static constexpr int kMaxFrames = 0x40000;  // about six seconds

  LSpeedTimeMap() : entries_(std::make_unique_for_overwrite<Entry[]>(kMaxFrames)) {}
  void Clear() { count_ = 0, outFrames_ = 0; }
  void Push(int outFrames, int inFrames);  // outFrames 1..kMaxFrames

  // Turns a negative offset in output frames, from a place `skip` input frames before the newest, into input frames. What
  // the map does not reach goes by `speed`.
  int ToInput(int offset, long long skip, double speed) const;

 private:
  struct Entry {
    int out, in;
  };
  const Entry& FromNewest(int age) const { return entries_[unsigned(newest_ - age) % kMaxFrames]; }

  std::unique_ptr<Entry[]> entries_;
  int newest_ = 0;  // index in the ring
  int count_ = 0;
  int outFrames_ = 0;  // of all entries
};
