#include "console/TCuePoints.h"

#include <cstdlib>

void TCuePoints::Set(int index, int frame, int trackEnd) {
  if (!IsIndex(index)) return;
  points_[std::size_t(index)] = {trackEnd > 0 ? double(frame) / trackEnd : 0, frame};
}

void TCuePoints::SetFraction(int index, double fraction) {
  if (IsIndex(index)) points_[std::size_t(index)].fraction = fraction;
}

void TCuePoints::Clear(int index) {
  if (IsIndex(index)) points_[std::size_t(index)] = {};
}

void TCuePoints::Rescale(int trackEnd) {
  for (TCuePoint& point : points_)
    if (point.fraction != 0) point.position = int(trackEnd * point.fraction);
}

const TCuePoint& TCuePoints::At(int index) const {
  static constexpr TCuePoint kEmpty{};
  return IsIndex(index) ? points_[std::size_t(index)] : kEmpty;
}

int TCuePoints::Position(int index, int trackEnd) const {
  const TCuePoint& point = At(index);
  return point.IsSet() ? int(trackEnd * point.fraction) : kNoCue;
}

// A point exactly at the frame counts as not found yet, so that a DJ who stands on one gets the next.
int TCuePoints::GetCuePointClosest(int frame, int trackEnd) const {
  int closest = 0;
  long long best = 0;
  for (int index = 0; index < kCuePoints; ++index) {
    if (!At(index).IsSet()) continue;
    const long long distance = std::llabs((long long)Position(index, trackEnd) - frame);
    if (best != 0 && distance >= best) continue;
    best = distance;
    closest = index;
  }
  return closest;
}

void TCuePoints::SetLoopLength(int index, int lengthIndex) {
  if (IsIndex(index) && lengthIndex >= kNoLoopLength && lengthIndex < kLoopLengths)
    loopLengths_[std::size_t(index)] = lengthIndex;
}
