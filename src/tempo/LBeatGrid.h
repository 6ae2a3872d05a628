// Scores a grid of tempos and phases against the onsets of all bands, and keeps the best.
// Law      around each candidate tempo in steps of 0.05 BPM, a hundred phases of each beat length. An onset's worth is 1
//          on the beat and falls to 0 towards the half, from where it begins anew. The mean runs on: what a phase has from
//          the bands before is divided again by all onsets so far. The first of equals stays.
// Units    BPM, frames.
// Threads  one at a time; Score may be called for one candidate after the other.
// Failure  onsets without a strength take no part.
#pragma once
#include <array>
#include <functional>
#include <vector>

#include "tempo/LAlignedDoubles.h"
#include "tempo/LBeat.h"
#include "tempo/LBeatFilterBank.h"
#include "tempo/kernels/LBeatKernels.h"

class LBeatGrid {
 public:
  LBeatGrid(const LBeatList& beats, int sampleRate, const LBeatKernels& kernels = BeatKernels());

  // Looks around one candidate; `goOn` is asked at each tempo. false: it ended that.
  bool Search(double candidate, const std::function<bool()>& goOn);

  double bpm = 1.0;  // of the best so far
  int offset = 0;
  double score = 0;

 private:
  void ScoreTempo(double tempo);
  void Take(double tempo, int step);

  const int rate_;
  const LBeatKernels& kernels_;
  std::array<int, kBeatBands + 1> firsts_{};  // of each band, and the end
  std::vector<int> positions_, places_;
  std::vector<double> strengths_;
  std::vector<double> rows_;
  LAlignedDoubles sums_;  // a hundred phases of one band after the other
};
