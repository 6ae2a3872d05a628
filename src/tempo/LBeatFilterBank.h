// The bands in which the beat detection looks for onsets: ten Butterworth filters of fourth order a side, and the signal
// itself as the eleventh.
// Law      bilinear transform with prewarping, two biquads a side in rising Q, high-pass sides first; b0 is 1 and the gains
//          of all sections are one factor in front. Designed for 44100 Hz: at other rates the edges shift with the rate.
// Units    edges in Hz, time constants in ms; a section is b0, b1, b2, a1, a2.
// Threads  [any]; the tables are made at the first use and never change.
#pragma once
#include <span>

inline constexpr int kBeatBands = 11;
inline constexpr int kFullBeatBand = 10;  // without a filter
inline constexpr int kMostBeatSections = 4;

struct LBeatSection {
  double b0, b1, b2, a1, a2;
};

struct LBeatFilter {
  LBeatSection table[kMostBeatSections];
  int sections;  // 0: the signal as it is
  double gain;
  int timeConstantMs;  // of the rise that counts as an onset

  std::span<const LBeatSection> Sections() const { return std::span(table).first(unsigned(sections)); }
};

const LBeatFilter& BeatFilter(int band);  // 0..kBeatBands - 1
