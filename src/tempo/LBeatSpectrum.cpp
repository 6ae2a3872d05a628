#include "tempo/LBeatSpectrum.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "tempo/LFFT.h"
#include "tempo/LFFTWindow.h"

namespace {

constexpr int kSmoothing = 31;
constexpr int kLongestTransform = 32768, kLeastBins = 201;
constexpr int kFirstPeak = 2, kLastPeak = 199, kMostPeaks = 20;

int TransformLength(int length) {
  int points = kLongestTransform;
  while (points > length) points /= 2;
  return points;
}

std::vector<double> SumOfMagnitudes(const std::vector<double>& train, int points) {
  const auto bits = static_cast<unsigned long>(std::countr_zero(unsigned(points)));
  LFFT transform(bits);
  LAlignedDoubles re(transform.Size()), im(transform.Size());
  std::vector<double> sums(unsigned(points / 2));
  for (int offset = 0; offset < int(train.size()) - points; offset += points) {
    transform.DoRealFFT(train.data() + offset, re.data(), im.data());
    for (std::size_t k = 0; k < sums.size(); ++k) sums[k] += std::sqrt(re[k] * re[k] + im[k] * im[k]);
  }
  return sums;
}

std::vector<int> Peaks(const std::vector<double>& spectrum) {
  std::vector<int> peaks;
  for (unsigned k = kFirstPeak; k <= kLastPeak; ++k) {
    const double height = spectrum[k];
    if (height > spectrum[k - 2] && height > spectrum[k - 1] && height > spectrum[k + 1] && height > spectrum[k + 2])
      peaks.push_back(int(k));
  }
  std::stable_sort(peaks.begin(), peaks.end(),
                   [&](int a, int b) { return spectrum[unsigned(a)] > spectrum[unsigned(b)]; });
  if (peaks.size() > kMostPeaks) peaks.resize(kMostPeaks);
  return peaks;
}

}  // namespace

// At the left edge the window begins at the first step, unshifted. Most steps are empty, so the onsets are spread out
// instead of steps summed up, in the order in which a sum would meet them.
std::vector<double> SmoothedBeatTrain(const LBeatList& beats, int length) {
  const auto steps = std::size_t(length);
  std::vector<double> raw(steps), smooth(steps);
  for (const LBeat& beat : beats)
    if (beat.band != kFullBeatBand && !std::isnan(beat.strength)) raw[unsigned(beat.index)] = beat.strength;
  const LHammingWindow window(kSmoothing);
  for (int p = 0; p < length - 1; ++p) {
    if (raw[unsigned(p)] == 0) continue;
    const int first = p < kSmoothing ? 0 : p - kSmoothing / 2, last = std::min(p + kSmoothing / 2, length - 1);
    for (int i = first; i <= last; ++i) {
      const int j = p - std::max(i - kSmoothing / 2, 0);
      if (j < kSmoothing) smooth[unsigned(i)] += window[unsigned(j)] * raw[unsigned(p)];
    }
  }
  return smooth;
}

std::vector<double> FindBeatCandidates(const LBeatList& beats, const LBeatGeometry& geometry) {
  std::vector<double> candidates;
  const int points = TransformLength(geometry.length);
  if (points / 2 < kLeastBins) return candidates;
  for (const int k : Peaks(SumOfMagnitudes(SmoothedBeatTrain(beats, geometry.length), points))) {
    const double bpm = double(geometry.rate) * k * 60 / (double(points) * geometry.hop);
    if (bpm >= kLeastBPM && bpm <= kGreatestBPM) candidates.push_back(bpm);
  }
  return candidates;
}
