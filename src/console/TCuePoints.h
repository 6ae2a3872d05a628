// The eight cue points of a deck, and the loop length that each slot may hold besides.
// Law      a position is kept as a part of the track, so that it survives a change of pitch: frame = fraction * end.
// Units    frames at the deck's present pitch, -1 for none; length indices into arLoopLengths, -1 for none.
// Threads  [main]
// Failure  an index outside 0..7 is ignored, and reads as an empty slot.
#pragma once
#include <array>

#include "console/TDeckLoop.h"

inline constexpr int kCuePoints = 8;
inline constexpr int kNoCue = -1;

struct TCuePoint {
  double fraction = 0;
  int position = kNoCue;
  bool IsSet() const { return position != kNoCue; }
};

class TCuePoints {
 public:
  static bool IsIndex(int index) { return index >= 0 && index < kCuePoints; }

  void Set(int index, int frame, int trackEnd);
  void SetFraction(int index, double fraction);  // the position stays what it was
  void Clear(int index);
  void ClearAll() { *this = {}; }
  void Rescale(int trackEnd);  // a point at fraction 0 stays

  const TCuePoint& At(int index) const;
  int Position(int index, int trackEnd) const;            // recomputed from the fraction; kNoCue: empty
  int GetCuePointClosest(int frame, int trackEnd) const;  // slot of the nearest; 0 if none is set

  int LoopLength(int index) const { return IsIndex(index) ? loopLengths_[std::size_t(index)] : kNoLoopLength; }
  void SetLoopLength(int index, int lengthIndex);

 private:
  std::array<TCuePoint, kCuePoints> points_;
  std::array<int, kCuePoints> loopLengths_ = {kNoLoopLength, kNoLoopLength, kNoLoopLength, kNoLoopLength,
                                              kNoLoopLength, kNoLoopLength, kNoLoopLength, kNoLoopLength};
};
