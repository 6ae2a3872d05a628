#include "sound/kernels/LSoundKernels.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "sound/LFixedPoint.h"
#include "sound/LSoundSource.h"
#include "sound/kernels/LRateKernels.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#define L_LOOP [[gnu::always_inline]] inline

namespace {

L_LOOP void MixChannelLoop(int* out, int outStride, const int* in, int inStride, int frames, int gain24) {
  for (int frame = 0; frame < frames; ++frame, out += outStride, in += inStride)
    *out = WrapAdd32(*out, MulGain24(*in, gain24));
}

L_LOOP void MixFramesLoop(int* out, const int* in, int frames, const LMixPlan& plan) {
  for (int frame = 0; frame < frames; ++frame, out += plan.outChannels, in += plan.inChannels)
    for (int channel = 0; channel < plan.outChannels; ++channel)
      out[channel] = WrapAdd32(out[channel], MulGain24(in[plan.source[channel]], plan.gain24[channel]));
}

L_LOOP void GainQuickLoop(int* samples, int count, int gain9) {
  for (int i = 0; i < count; ++i) samples[i] = WrapMul32(gain9, samples[i]) >> 9;
}

L_LOOP int PeakLoop(const int* samples, int count) {
  int least = 0, greatest = 0;
  for (int i = 0; i < count; ++i) {
    least = std::min(least, samples[i]);
    greatest = std::max(greatest, samples[i]);
  }
  return std::max(greatest, -std::max(least, -INT32_MAX));
}

L_LOOP void SquaresLoop(const int* samples, int count, int stride, std::uint64_t& high, std::uint64_t& low) {
  constexpr int kSquareShift = 5, kLowBits = 13;
  std::uint64_t highSum = 0, lowSum = 0;
  for (int i = 0; i < count; ++i) {
    const std::int64_t value = samples[i * stride] >> kSquareShift;
    const auto square = std::uint64_t(value * value);
    highSum += square >> kLowBits;
    lowSum += square & ((1U << kLowBits) - 1);
  }
  high += highSum;
  low += lowSum;
}

L_LOOP void SquaresByStride(const int* samples, int count, int stride, std::uint64_t& high, std::uint64_t& low) {
  if (stride == 1)
    SquaresLoop(samples, count, 1, high, low);
  else if (stride == 2)
    SquaresLoop(samples, count, 2, high, low);
  else
    SquaresLoop(samples, count, stride, high, low);
}

L_LOOP void ToDeviceLoop(int* out, const int* in, int count) {
  for (int i = 0; i < count; ++i) out[i] = std::clamp(in[i], -kFullScale, kFullScale - 1) * 4096;
}

constexpr LSoundKernels kScalar{
    "scalar",
    [](int* out, int outStride, const int* in, int inStride, int frames, int gain24) {
      MixChannelLoop(out, outStride, in, inStride, frames, gain24);
    },
    [](int* out, const int* in, int frames, const LMixPlan& plan) { MixFramesLoop(out, in, frames, plan); },
    [](int* samples, int count, int gain9) { GainQuickLoop(samples, count, gain9); },
    [](const int* samples, int count) { return PeakLoop(samples, count); },
    [](const int* samples, int count, int stride, std::uint64_t& high, std::uint64_t& low) {
      SquaresByStride(samples, count, stride, high, low);
    },
    [](int* out, const int* in, int count) { ToDeviceLoop(out, in, count); },
    &kRateKernelsScalar};

#if defined(__x86_64__)

#define L_AVX2 __attribute__((target("avx2")))

L_AVX2 void MixChannelAvx2(int* out, int outStride, const int* in, int inStride, int frames, int gain24) {
  MixChannelLoop(out, outStride, in, inStride, frames, gain24);
}
L_AVX2 void GainQuickAvx2(int* samples, int count, int gain9) { GainQuickLoop(samples, count, gain9); }
L_AVX2 int PeakAvx2(const int* samples, int count) { return PeakLoop(samples, count); }
L_AVX2 void SquaresAvx2(const int* samples, int count, int stride, std::uint64_t& high, std::uint64_t& low) {
  SquaresByStride(samples, count, stride, high, low);
}
L_AVX2 void ToDeviceAvx2(int* out, const int* in, int count) { ToDeviceLoop(out, in, count); }

L_AVX2 inline __m256i MulGain24Avx2(__m256i sample, __m256i gainHigh, __m256i gainLow) {
  const __m256i sampleHigh = _mm256_srai_epi32(sample, 12);
  const __m256i sampleLow = _mm256_and_si256(sample, _mm256_set1_epi32(0xfff));
  const __m256i high = _mm256_mullo_epi32(gainHigh, sampleHigh);
  const __m256i crossSample = _mm256_srai_epi32(_mm256_mullo_epi32(sampleLow, gainHigh), 12);
  const __m256i crossGain = _mm256_srai_epi32(_mm256_mullo_epi32(sampleHigh, gainLow), 12);
  return _mm256_add_epi32(high, _mm256_add_epi32(crossSample, crossGain));
}

// By hand, since no compiler finds the permutation: eight lanes are one, two, four or eight frames of the output.
L_AVX2 void MixFramesAvx2(int* out, const int* in, int frames, const LMixPlan& plan) {
  const bool wholeLanes = kMixLanes % plan.outChannels == 0 && plan.inChannels <= plan.outChannels;
  if (!wholeLanes) return MixFramesLoop(out, in, frames, plan);

  const int framesAtOnce = kMixLanes / plan.outChannels;
  alignas(32) int source[kMixLanes], gain[kMixLanes];
  for (int lane = 0; lane < kMixLanes; ++lane) {
    const int channel = lane % plan.outChannels;
    source[lane] = lane / plan.outChannels * plan.inChannels + plan.source[channel];
    gain[lane] = plan.gain24[channel];
  }
  const __m256i lanes = _mm256_load_si256(reinterpret_cast<const __m256i*>(source));
  const __m256i gains = _mm256_load_si256(reinterpret_cast<const __m256i*>(gain));
  const __m256i gainHigh = _mm256_srai_epi32(gains, 12);
  const __m256i gainLow = _mm256_and_si256(gains, _mm256_set1_epi32(0xfff));
  // A whole vector of input is loaded, more than is used: the last frames go the plain way.
  for (; frames * plan.inChannels >= kMixLanes && frames >= framesAtOnce; frames -= framesAtOnce) {
    const __m256i loaded = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
    const __m256i spread = _mm256_permutevar8x32_epi32(loaded, lanes);
    auto* sum = reinterpret_cast<__m256i*>(out);
    _mm256_storeu_si256(sum, _mm256_add_epi32(_mm256_loadu_si256(sum), MulGain24Avx2(spread, gainHigh, gainLow)));
    in += framesAtOnce * plan.inChannels;
    out += kMixLanes;
  }
  MixFramesLoop(out, in, frames, plan);
}

constexpr LSoundKernels kAvx2{"avx2",   MixChannelAvx2, MixFramesAvx2, GainQuickAvx2,
                              PeakAvx2, SquaresAvx2,    ToDeviceAvx2,  &kRateKernelsAvx2};

#endif

const LSoundKernels& Choose() {
  const char* forced = std::getenv("TAVI_KERNELS");
  if (forced && std::string_view(forced) == kScalar.name) return kScalar;
  return *UsableKernels().back();
}

}  // namespace

const LSoundKernels& Kernels() {
  static const LSoundKernels& chosen = Choose();
  return chosen;
}

std::span<const LSoundKernels* const> UsableKernels() {
#if defined(__x86_64__)
  static const LSoundKernels* const all[] = {&kScalar, &kAvx2};
  return {all, __builtin_cpu_supports("avx2") ? 2U : 1U};
#else
  static const LSoundKernels* const all[] = {&kScalar};
  return all;
#endif
}
