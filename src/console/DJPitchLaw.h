// The speed of a deck, its slider, and what speed two decks share.
// Law      slider v of 0..1000: 1 + (v / 10 - 50) / 100, so 500 is normal speed and a step is 0.1 %.
// Units    pitch as a factor of speed, 1.0 is normal.
// Threads  [any]
#pragma once
#include <cmath>
#include <limits>

#include "console/DJSyncResult.h"
#include "console/TBeatGrid.h"

inline constexpr int kPitchSliderMax = 1000, kPitchSliderCentre = 500;
inline constexpr double kLowestPitch = 0.5, kHighestPitch = 1.5;
inline constexpr double kPitchTolerance = std::numeric_limits<double>::epsilon();

inline double PitchFromSlider(int value) {
  const double percent = value * 0.1;
  return percent < 50 ? 1.0 - (50 - percent) * 0.01 : 1.0 + (percent - 50) * 0.01;
}

inline int SliderFromPitch(double pitch) { return int(std::lround((pitch - 1.0) * 1000)) + kPitchSliderCentre; }
inline bool IsSamePitch(double a, double b) { return std::fabs(a - b) <= kPitchTolerance; }

inline bool IsPitchAllowed(double pitch) {
  return pitch >= kLowestPitch - kPitchTolerance && pitch <= kHighestPitch + kPitchTolerance;
}

// The same place of the track after a change of its length, to the nearest frame.
inline int RescalePosition(int frame, int oldEnd, int newEnd) {
  if (oldEnd <= 0) return 0;
  const long long product = (long long)newEnd * frame, half = oldEnd / 2;
  return int((product + (product < 0 ? -half : half)) / oldEnd);
}

// The converter of a deck's speed makes whole hertz and cuts: the ratio that gives it the nearest rate instead. Two
// synced decks then part by 0.7 ms a minute at most while one of them is at its own speed.
inline double NearestRateRatio(double pitch, int sampleRate) {
  const double rate = std::round(sampleRate / pitch);
  return rate < 1 ? pitch : sampleRate / (rate + 0x1p-20);  // a hair above it, so that cutting leaves it
}

// The pitch at which the slave's beats last as long as the master's do now; set if the result is syncDone.
DJSyncResult FindSyncPitch(const TBeatGrid& master, const TBeatGrid& slave, double& pitch);
