#include "tempo/LSpectralPeaks.h"

#include <algorithm>
#include <cmath>

#include "tempo/kernels/LTempoKernels.h"

namespace {

double Largest(const double* values, int count) {
  double largest[4] = {};
  int i = 0;
  for (; i + 4 <= count; i += 4)
    for (int lane = 0; lane < 4; ++lane) largest[lane] = std::max(largest[lane], values[i + lane]);
  for (; i < count; ++i) largest[0] = std::max(largest[0], values[i]);
  return std::max(std::max(largest[0], largest[1]), std::max(largest[2], largest[3]));
}

}  // namespace

int FindPeaks(const double* magnitudes, int count, int* peaks, LLevel threshold) {
  if (count < 3) return 0;
  // A level rounds to more than the threshold from half a decibel above it on.
  const double lowest = Largest(magnitudes, count) * std::pow(10.0, (threshold.Get() + 0.5) / 20);
  return TempoKernels().peaks(peaks, magnitudes, count, lowest);
}

void FindRegionStarts(const double* frequencies, int bins, const int* peaks, int peakCount, int* starts,
                      int* regionOf) {
  starts[0] = 1;
  for (int peak = 0; peak + 1 < peakCount; ++peak) {
    const double left = frequencies[peaks[peak]], right = frequencies[peaks[peak + 1]];
    int bin = peaks[peak] + 1;
    while (bin < peaks[peak + 1] && std::abs(frequencies[bin] - left) < std::abs(frequencies[bin] - right)) ++bin;
    starts[peak + 1] = bin;
  }
  starts[peakCount] = bins;
  regionOf[0] = 0;
  for (int peak = 0; peak < peakCount; ++peak) std::fill(regionOf + starts[peak], regionOf + starts[peak + 1], peak);
}
