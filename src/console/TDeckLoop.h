// The loop of a deck: a number of beats from a start, or the whole track. It is kept as a part of the track too, so
// that it survives a change of pitch.
// Units    frames at the deck's present pitch; beats; fractions of the track's length.
// Threads  [main]
// Failure  a loop never has a length of 0 or reaches past the track: then it is cut, or not on.
#pragma once
#include <array>

#include "console/TBeatGrid.h"

inline constexpr int kLoopLengths = 12;
inline constexpr std::array<double, kLoopLengths> arLoopLengths = {0.125, 0.25, 0.5, 1, 2, 3, 4, 6, 8, 12, 16, 32};
inline constexpr std::array<const char*, kLoopLengths> arBeatLoopLengths = {"1/8", "1/4", "1/2", "1",  "2",  "3",
                                                                            "4",   "6",   "8",   "12", "16", "32"};
inline constexpr double kWholeTrack = -1.0;  // as a number of beats
inline constexpr int kNoLoopLength = -1;     // as an index

int LoopLengthIndex(double beats);  // kNoLoopLength: none of the lengths

struct TDeckLoop {
  bool on = false;
  int start = 0, length = 0;
  double beats = 0;  // below 0: the whole track
  double startFraction = 0, lengthFraction = 0;

  int End() const { return start + length; }
  bool IsActive() const { return on && length > 0; }
  bool IsWholeTrack() const { return on && beats < 0; }
  bool Holds(int frame) const { return frame >= start && frame < End(); }

  // From the first call on the loop keeps its start. false: there are no beats to measure by, and no loop.
  bool SetBeats(double newBeats, const TBeatGrid& grid, int freshStart);
  void Apply(int newStart, double newBeats, const TBeatGrid& grid);
  void MoveTo(int newStart, const TBeatGrid& grid);
  void Rescale(int newTrackEnd);  // after a change of pitch
  void Clear() { *this = {}; }

 private:
  void LoopTrack(const TBeatGrid& grid);
  void Measure(double newBeats, const TBeatGrid& grid);
  void KeepInside(const TBeatGrid& grid);
};
