#include "console/TDeckLoop.h"

#include <algorithm>

int LoopLengthIndex(double beats) {
  const auto found = std::find(arLoopLengths.begin(), arLoopLengths.end(), beats);
  return found == arLoopLengths.end() ? kNoLoopLength : int(found - arLoopLengths.begin());
}

bool TDeckLoop::SetBeats(double newBeats, const TBeatGrid& grid, int freshStart) {
  if (newBeats < 0) {
    LoopTrack(grid);
    return true;
  }
  const bool wasOn = on;
  beats = newBeats;
  on = newBeats != 0 && grid.interval > 0;
  if (grid.interval <= 0) return false;
  if (!on) return true;
  Measure(newBeats, grid);
  if (!wasOn) start = freshStart;
  KeepInside(grid);
  return true;
}

void TDeckLoop::Apply(int newStart, double newBeats, const TBeatGrid& grid) {
  if (newBeats < 0) return LoopTrack(grid);
  start = newStart;
  on = newBeats != 0;
  Measure(newBeats, grid);
  KeepInside(grid);
}

void TDeckLoop::MoveTo(int newStart, const TBeatGrid& grid) {
  start = newStart;
  KeepInside(grid);
}

void TDeckLoop::Rescale(int newTrackEnd) {
  length = int(newTrackEnd * lengthFraction);
  start = int(newTrackEnd * startFraction);
  on = on && length > 0;
}

void TDeckLoop::LoopTrack(const TBeatGrid& grid) { *this = {grid.trackEnd > 0, 0, grid.trackEnd, kWholeTrack, 0, 1.0}; }

void TDeckLoop::Measure(double newBeats, const TBeatGrid& grid) {
  beats = std::max(newBeats, arLoopLengths.front());
  length = int(double(float(grid.Step())) * beats);
}

void TDeckLoop::KeepInside(const TBeatGrid& grid) {
  if (start > grid.trackEnd) start = grid.GetPreviousBeatPos(grid.trackEnd);
  start = std::clamp(start, 0, std::max(grid.trackEnd, 0));
  length = std::min(length, grid.trackEnd - start);
  startFraction = grid.trackEnd > 0 ? double(start) / grid.trackEnd : 0;
  lengthFraction = grid.trackEnd > 0 ? double(length) / grid.trackEnd : 0;
  on = on && length > 0;
}
