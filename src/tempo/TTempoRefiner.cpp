#include "tempo/TTempoRefiner.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tempo/LBeatEnvelope.h"
#include "tempo/LBeatSpectrum.h"
#include "tempo/LFFT.h"

namespace {

constexpr std::size_t kLeastOnsets = 16;
constexpr double kBinsPerSecond = 200;  // of the train of impulses
constexpr double kAroundBPM = 2.4, kGridBPM = 0.02;
constexpr double kClearly = 1.1;  // so much more evidence has to be for another tempo
constexpr double kCentreBPM = 120, kSpreadOctaves = 1.5;
constexpr double kFinestBPM = 0.001;
constexpr int kLowBands = 3;  // 0..2: drums and bass
constexpr double kLowWeight = 4;
constexpr int kFirstExactBand = 9;      // above 8000 Hz, and all together
constexpr double kNearSeconds = 0.025;  // of the beat: belongs to it

// Tempos in the middle of the range are likelier than those at its ends.
double Likelihood(double bpm) {
  const double octaves = std::log2(bpm / kCentreBPM) / kSpreadOctaves;
  return std::exp(-0.5 * octaves * octaves);
}

}  // namespace

TTempoRefiner::TTempoRefiner(const LProcessSoundSourceBPMDetectionData& data)
    : bpm_(data.bpm), offset_(data.offset), rate_(data.sampleRate) {
  const LBeatGeometry geometry(rate_, LBeatGeometry::kMostFrames);
  if (geometry.length == 0) return;
  for (const LBeat& beat : data.beats) {
    if (std::isnan(beat.rise)) continue;
    const double time = (double(beat.attack) * geometry.hop + geometry.window) / rate_;
    onsets_.push_back({time, beat.rise, beat.rise * (beat.band < kLowBands ? kLowWeight : 1),
                       beat.band >= kFirstExactBand ? beat.rise : 0});
  }
}

void TTempoRefiner::Refine() {
  if (!(bpm_ >= kLeastBPM && bpm_ <= kGreatestBPM) || onsets_.size() < kLeastOnsets) return;
  MakeSpectrum();
  bpm_ = Sharpened(ChooseLevel());
  const double beat = 60 / bpm_, phase = AtAttacks(bpm_, Phase(bpm_));
  const auto frames = int(std::lround((phase - std::floor(phase / beat) * beat) * rate_));
  offset_ = frames < int(beat * rate_) ? frames : 0;
}

// Twice as long as the track, so that no peak falls between two bins.
void TTempoRefiner::MakeSpectrum() {
  double last = 0;
  for (const Onset& onset : onsets_) last = std::max(last, onset.time);
  const auto used = std::size_t(last * kBinsPerSecond) + 2;
  unsigned long bits = LFFT::kMinBits;
  while (bits < LFFT::kMaxBits && (1UL << bits) < 2 * used) ++bits;
  LFFT transform(bits);
  LAlignedDoubles train(transform.Size()), re(transform.Size()), im(transform.Size());
  for (const Onset& onset : onsets_) {
    const double place = std::max(onset.time, 0.0) * kBinsPerSecond;
    const auto bin = std::size_t(place);
    if (bin + 1 >= train.size()) continue;
    train[bin] += onset.weight * (1 - (place - double(bin)));
    train[bin + 1] += onset.weight * (place - double(bin));
  }
  transform.DoRealFFT(train.data(), re.data(), im.data());
  spectrum_.resize(transform.Size() / 2);
  for (std::size_t k = 0; k < spectrum_.size(); ++k) spectrum_[k] = std::hypot(re[k], im[k]);
  binsPerHz_ = double(transform.Size()) / kBinsPerSecond;
}

double TTempoRefiner::Magnitude(double hz) const {
  const auto bin = std::size_t(std::lround(hz * binsPerHz_));
  if (bin < 1 || bin + 1 >= spectrum_.size()) return 0;
  return std::max({spectrum_[bin - 1], spectrum_[bin], spectrum_[bin + 1]});
}

double TTempoRefiner::Evidence(double bpm) const {
  const double hz = bpm / 60;
  return (Magnitude(hz) + 0.5 * Magnitude(2 * hz) + 0.25 * Magnitude(4 * hz) - Magnitude(hz / 2)) * Likelihood(bpm);
}

double TTempoRefiner::BestBetween(double low, double high) const {
  double best = low;
  for (int n = 0; low + n * kGridBPM <= high; ++n)
    if (Evidence(low + n * kGridBPM) > Evidence(best)) best = low + n * kGridBPM;
  return best;
}

double TTempoRefiner::ChooseLevel() const {
  const double found = BestBetween(bpm_ - kAroundBPM, bpm_ + kAroundBPM);
  const double other = BestBetween(kLeastBPM, kGreatestBPM);
  return Evidence(other) > kClearly * Evidence(found) ? other : found;
}

TTempoRefiner::Harmonics TTempoRefiner::Sums(double bpm, double Onset::*weight) const {
  Harmonics sums{};
  for (const Onset& onset : onsets_) {
    const std::complex<double> beat = std::polar(1.0, 2 * std::numbers::pi * bpm / 60 * onset.time);
    const std::complex<double> half = beat * beat;
    sums[0] += onset.*weight * beat;
    sums[1] += onset.*weight * half;
    sums[2] += onset.*weight * (half * half);
  }
  return sums;
}

double TTempoRefiner::Clarity(double bpm) const {
  const Harmonics sums = Sums(bpm, &Onset::weight);
  return std::abs(sums[0]) + std::abs(sums[1]) + 0.5 * std::abs(sums[2]);
}

// Climbs in steps that halve.
double TTempoRefiner::Sharpened(double bpm) const {
  double height = Clarity(bpm), step = kGridBPM;
  while (step > kFinestBPM / 4) {
    const double lower = Clarity(bpm - step), higher = Clarity(bpm + step);
    if (std::max(lower, higher) > height) {
      bpm += higher > lower ? step : -step;
      height = std::max(lower, higher);
    } else {
      step /= 2;
    }
  }
  return std::round(bpm / kFinestBPM) * kFinestBPM;
}

// The place in the beat where the onsets gather, s: where the harmonics, turned back, add up to most.
double TTempoRefiner::Phase(double bpm) const {
  constexpr int kSteps = 200;
  const Harmonics sums = Sums(bpm, &Onset::phaseWeight);
  double best = 0, most = -1;
  for (int n = 0; n < kSteps; ++n) {
    const double turn = -2 * std::numbers::pi * n / kSteps;
    double sum = 0;
    for (int h = 0; h < kHarmonics; ++h) sum += (sums[unsigned(h)] * std::polar(1.0, turn * (1 << h))).real();
    if (sum <= most) continue;
    most = sum;
    best = double(n) / kSteps;
  }
  return best * 60 / bpm;
}

// Moves a phase to the mean of the attacks close to it.
double TTempoRefiner::AtAttacks(double bpm, double phase) const {
  const double beat = 60 / bpm;
  for (int round = 0; round < 3; ++round) {
    double sum = 0, weights = 0;
    for (const Onset& onset : onsets_) {
      const double rest = std::remainder(onset.time - phase, beat);
      if (std::abs(rest) > kNearSeconds) continue;
      sum += rest * onset.attackWeight;
      weights += onset.attackWeight;
    }
    if (weights > 0) phase += sum / weights;
  }
  return phase;
}

void RefineTempo(LProcessSoundSourceBPMDetectionData& data) {
  TTempoRefiner refiner(data);
  refiner.Refine();
  data.bpm = refiner.Bpm();
  data.offset = refiner.Offset();
}
