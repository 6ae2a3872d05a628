#include "tempo/LBeatGrid.h"

#include <algorithm>
#include <cmath>

#include "tempo/LBeatSpectrum.h"

namespace {

constexpr double kAroundBPM = 2, kStepBPM = 0.05;
constexpr int kPhases = LBeatWeights::kPhases;

}  // namespace

LBeatGrid::LBeatGrid(const LBeatList& beats, int sampleRate, const LBeatKernels& kernels)
    : rate_(sampleRate), kernels_(kernels), sums_(std::size_t(kPhases) * kBeatBands) {
  for (int band = 0; band < kBeatBands; ++band) {
    for (const LBeat& beat : beats) {
      if (beat.band != band || std::isnan(beat.strength)) continue;
      positions_.push_back(beat.position);
      strengths_.push_back(beat.strength);
    }
    firsts_[unsigned(band) + 1] = int(positions_.size());
  }
  places_.resize(positions_.size());
}

bool LBeatGrid::Search(double candidate, const std::function<bool()>& goOn) {
  const double end = std::clamp(candidate + kAroundBPM, kLeastBPM, kGreatestBPM);
  double tempo = std::clamp(candidate - kAroundBPM, kLeastBPM, kGreatestBPM);
  while (tempo < end) {
    if (!goOn()) return false;
    ScoreTempo(tempo);
    tempo += kStepBPM;
  }
  return true;
}

void LBeatGrid::ScoreTempo(double tempo) {
  LBeatWeights shape{int(60 / tempo * rate_), 0, 0};
  shape.step = std::max(shape.period / kPhases, 1);
  shape.most = (shape.period - 1) / shape.step;
  rows_.resize(std::size_t(shape.step) * unsigned(shape.RowSize()));
  kernels_.weights(shape, rows_.data());
  kernels_.places(shape, positions_, places_.data());
  sums_.Clear();
  for (unsigned band = 0; band < kBeatBands; ++band) {
    double* const sums = sums_.data() + band * kPhases;
    if (band > 0) std::copy_n(sums - kPhases, kPhases, sums);
    const auto first = unsigned(firsts_[band]), end = unsigned(firsts_[band + 1]);
    kernels_.score(rows_.data(), std::span(places_).subspan(first, end - first), strengths_.data() + first, sums);
    if (end > 0)
      for (int n = 0; n < kPhases; ++n) sums[n] /= end;
  }
  Take(tempo, shape.step);
}

void LBeatGrid::Take(double tempo, int step) {
  for (int n = 0; n < kPhases; ++n)
    for (int band = 0; band < kBeatBands; ++band) {
      const double sum = sums_[std::size_t(band) * kPhases + std::size_t(n)];
      if (sum <= score) continue;
      bpm = tempo;
      offset = n * step;
      score = sum;
    }
}
