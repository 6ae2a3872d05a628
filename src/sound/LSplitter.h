// The two halves of a divided mix with what they share: rings, mutex, and the one seek that serves both.
// Units    frames
// Threads  [main, player locks]; MainFillFrames [main].
#pragma once
#include <array>

#include "sound/LSplitterSource.h"

class LSplitter {
 public:
  // map: for the mix's channels 0..3 the device channel that each feeds, -1 for none. Both halves get the width of the
  // largest.
  void Open(LSoundSource& mix, const std::array<int, 4>& map, LSoundSource& main, LSoundSource& headphone);
  int MainFillFrames() const;  // waiting in the main half's ring

  // Between the two a seek of a half only names the place that it wants. At the end the mix goes once to the earlier
  // place, and the other half leaves out the difference.
  void BeginSharedSeek();
  void EndSharedSeek();
  void EndSharedSkip();  // the same where the halves only move on: each leaves out its part, the mix stays

 private:
  LSplitterRing mainRing_, headphoneRing_;
  mutable LMutex mutex_;
  int width_ = 2;
  LSplitterPrimarySource* main_ = nullptr;         // owned by the handles given out
  LSplitterSecondarySource* headphone_ = nullptr;  // likewise
};
