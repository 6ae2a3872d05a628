#include "sound/LSoundLevel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "sound/kernels/LSoundKernels.h"

namespace {

constexpr int kLowBits = 13;  // of a square, summed apart
constexpr unsigned kSineMeanSquare = 134214685;
constexpr double kMeanSquareScale = 7.450749521186896e-9;  // 1 / kSineMeanSquare

// As a magnitude; that of INT_MIN is held at INT_MAX.
int Magnitude(int sample) { return sample < 0 ? -std::max(sample, -INT32_MAX) : sample; }

unsigned MeanSquare(const int* samples, int count, int stride) {
  if (count < 1) return 0;
  std::uint64_t high = 0, low = 0;
  Kernels().squares(samples, count, stride, high, low);
  const std::uint64_t sum = (low >> kLowBits) + high;
  const auto n = std::uint64_t(count);
  const std::uint64_t mean = ((sum / n) << kLowBits) + ((sum % n) << kLowBits) / n;
  return unsigned(std::min<std::uint64_t>(mean, UINT32_MAX));
}

}  // namespace

int GetBufferPeak(const int* samples, int frames, unsigned char channels) {
  return Kernels().peak(samples, frames * channels);
}

int GetBufferPeak(const int* samples, int frames, unsigned char channels, int& peakFrame) {
  const int peak = GetBufferPeak(samples, frames, channels);
  const int count = std::max(frames, 0) * channels;
  const int* found = std::find_if(samples, samples + count, [peak](int sample) { return Magnitude(sample) == peak; });
  peakFrame = count > 0 ? int(found - samples) / channels : 0;
  return peak;
}

int GetBufferPeakChan(int channel, const int* samples, int frames, unsigned char channels) {
  int peak = 0;
  for (int frame = 0; frame < frames; ++frame) peak = std::max(peak, Magnitude(samples[frame * channels + channel]));
  return peak;
}

unsigned GetBufferMeanSquare(const int* samples, int frames, unsigned char channels) {
  return MeanSquare(samples, frames * channels, 1);
}

unsigned GetBufferMeanSquareChan(int channel, const int* samples, int frames, unsigned char channels) {
  return MeanSquare(samples + channel, frames, channels);
}

LLevel LevelFromMeanSquare(unsigned meanSquare) {
  if (meanSquare == 0) return LLevel::kMuted;
  const double db = 10 * std::log10(meanSquare * kMeanSquareScale) + (meanSquare < kSineMeanSquare ? -0.5 : 0.5);
  return std::clamp(int(db), -127, 127);
}

void GainAudioBufferQuick(int gain9, int* samples, int count) {
  if (gain9 != kUnityGain9) Kernels().gainQuick(samples, count, gain9);
}
