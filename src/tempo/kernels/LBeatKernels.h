// The loops of the beat detection that cost time. Each stands once, written for vectors of four doubles, and is compiled
// for the plain machine and for AVX2; both forms give the same bits. The form is chosen once, by what the processor has;
// the environment variable TAVI_KERNELS=scalar forces the plain one.
// Units    samples on the 20-bit scale, positions and periods in frames.
// Threads  [any]; no allocation.
#pragma once
#include <span>

// Four filters side by side, one a lane. b0 is 1 in every section; a section beyond a filter's own passes the signal.
struct alignas(32) LBeatLanes {
  static constexpr int kSections = 4;
  struct alignas(32) Section {
    double b1[4], b2[4], a1[4], a2[4];
    double w1[4], w2[4];  // the state
  };
  Section sections[kSections];
  double gain[4];
  double energy[4];  // sum of (result >> 5)^2 so far
  int sectionCount;  // 2 or 4
};

// What an onset at a distance from the beat is worth, for a hundred phases at once.
struct LBeatWeights {
  static constexpr int kPhases = 100;
  int period, step;  // frames, at least 1; phase n is the beat at n * step
  int most;          // steps that fit into a period
  int RowSize() const { return most + kPhases; }
};

struct LBeatKernels {
  const char* name;
  // Runs the samples through the filters, truncates the results and adds their energies up. Behind each of the runs the
  // four sums so far go to `sums`. The runs together are all samples.
  void (*energies)(LBeatLanes& lanes, const int* samples, std::span<const int> runs, double* sums);
  // A row for each frame of a step: entry c of row m is the worth of the distance |m + (most - c) * step|.
  void (*weights)(const LBeatWeights& shape, double* rows);
  // Where in these rows the hundred phases of an onset begin.
  void (*places)(const LBeatWeights& shape, std::span<const int> positions, int* places);
  // sums[n] += rows[place + n] * strength for every onset, in their order.
  void (*score)(const double* rows, std::span<const int> places, const double* strengths, double* sums);
};

const LBeatKernels& BeatKernels();
std::span<const LBeatKernels* const> UsableBeatKernels();  // the plain form first
