#include "sound/kernels/LRateKernels.h"

#include "sound/LRateRows.h"
#include "sound/LWrap.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr int kHalfTaps = 32, kMiddle = kRateCentreTap;

// Takes the middle two out of a row.
struct BesideMiddle {
  alignas(32) std::int16_t mask[kRateRowTaps];
};
constexpr BesideMiddle kBeside = [] {
  BesideMiddle beside{};
  for (int tap = 0; tap < kRateRowTaps; ++tap)
    beside.mask[tap] = static_cast<std::int16_t>(tap == kMiddle || tap == kMiddle + 1 ? 0 : -1);
  return beside;
}();

// I0(x) as a polynomial in x^2: coefficient k is 1 / (4^k k!^2).
constexpr double BesselCoefficient(int k) { return k == 0 ? 1 : BesselCoefficient(k - 1) / (4.0 * k * k); }

// The sine of every tap comes from the sine and cosine of the phase; the rest is arithmetic alike for all taps.
[[gnu::always_inline]] inline bool MakeRowLoop(const LRateLaw& law, double fraction, double* __restrict values,
                                               LRateRow& row) {
  constexpr double kEdge = kHalfTaps;
  const double angular = law.angular, gain = law.gain, betaSquared = law.betaSquared;
  const double sine = std::sin(angular * fraction), cosine = std::cos(angular * fraction);
  for (int tap = 0; tap < kRateRowTaps; ++tap) {
    const double t = double(tap - kMiddle) - fraction;
    const double square = betaSquared * (1 - t * t * (1 / (kEdge * kEdge)));
    double bessel = BesselCoefficient(kRateBesselTerms);
    for (int k = kRateBesselTerms - 1; k >= 0; --k) bessel = bessel * square + BesselCoefficient(k);
    values[tap] = (law.sines[tap] * cosine - law.cosines[tap] * sine) / (angular * t) * gain * bessel;
  }
  int doubtful = 0;
  for (int tap = 0; tap < kRateRowTaps; ++tap) {
    const double moved = values[tap] + std::copysign(0.5, values[tap]);
    const int whole = int(moved);
    row.taps[tap] = static_cast<std::int16_t>(whole);
    doubtful |= int(std::fabs(std::fabs(moved - whole) - 0.5) * 2 + 2 * kRateDoubt);  // 1 from 0.5 - kRateDoubt on
  }
  row.taps[kRateTaps] = 0;
  return doubtful == 0;
}

bool MakeRowScalar(const LRateLaw& law, double fraction, double* values, LRateRow& row) {
  return MakeRowLoop(law, fraction, values, row);
}

// Walks the block: calls make(row, index, number) for each output frame until they are made or the block is used up.
template <class Make>
[[gnu::always_inline]] inline int Walk(const LRateRun& run, LRateCursor& cursor, int frames, Make make) {
  const LRateRow* const rows = run.rows->Data();
  const int phases = run.phases, endIndex = run.endIndex;
  const int stepWhole = run.step / phases, stepRest = run.step % phases;
  int index = cursor.index + cursor.phase / phases;
  int phase = cursor.phase % phases;
  int row = cursor.row;
  int made = 0;
  for (; made < frames && index < endIndex; ++made) {
    if (!rows[row].IsMade()) [[unlikely]]
      run.rows->Make(row);
    make(rows[row], index, made);
    if (++row == phases) row = 0;
    phase += stepRest;
    const int carry = (phases - 1 - phase) >> 31;  // -1 or 0: a branch here would be mispredicted every dozen frames
    index += stepWhole - carry;
    phase -= phases & carry;
  }
  cursor = {index, phase, row};
  if (made < frames || made == 0) return made;
  // The step after the last frame is not yet taken: where the next one lies is decided in the next block.
  const long long last = (long long)index * phases + phase - run.step;
  cursor = {int(last / phases), int(last % phases) + run.step, row};
  return made;
}

[[gnu::always_inline]] inline int FilterPlain(const LRateRow& row, const std::int16_t* in, const LRateRun& run) {
  const auto beside = [&row](int tap) { return static_cast<std::int16_t>(row.taps[tap] & kBeside.mask[tap]); };
  int first = 0, second = 0;
  for (int tap = 0; tap < kHalfTaps; ++tap) {
    first += beside(tap) * in[tap];
    second += beside(tap + kHalfTaps) * in[tap + kHalfTaps];
  }
  const std::int64_t firstAll = std::int64_t{row.Tap(kMiddle)} * in[kMiddle] + first;
  const std::int64_t secondAll = std::int64_t{row.Tap(kMiddle + 1)} * in[kMiddle + 1] + second;
  return int(((firstAll >> 1) + (secondAll >> 1) + ((1 << run.shift) >> 1)) >> run.shift);
}

int MonoScalar(const LRateRun& run, LRateCursor& cursor, const std::int16_t* plane, int* out, int stride, int frames) {
  return Walk(run, cursor, frames, [&](const LRateRow& row, int index, int made) {
    out[made * stride] = FilterPlain(row, plane + index, run);
  });
}

int StereoScalar(const LRateRun& run, LRateCursor& cursor, const std::int16_t* left, const std::int16_t* right,
                 int* out, int frames) {
  return Walk(run, cursor, frames, [&](const LRateRow& row, int index, int made) {
    out[2 * made] = FilterPlain(row, left + index, run);
    out[2 * made + 1] = FilterPlain(row, right + index, run);
  });
}

[[gnu::always_inline]] inline void SplitLoop(std::int16_t* plane, const int* in, int stride, int frames, int shift) {
  const int half = (1 << shift) / 2;
  for (int frame = 0; frame < frames; ++frame)
    plane[frame] = static_cast<std::int16_t>(WrapAdd32(in[frame * stride], half) >> shift);
}

[[gnu::always_inline]] inline void SplitByStride(std::int16_t* plane, const int* in, int stride, int frames,
                                                 int shift) {
  if (stride == 1)
    SplitLoop(plane, in, 1, frames, shift);
  else if (stride == 2)
    SplitLoop(plane, in, 2, frames, shift);
  else
    SplitLoop(plane, in, stride, frames, shift);
}

void SplitScalar(std::int16_t* plane, const int* in, int stride, int frames, int shift) {
  SplitByStride(plane, in, stride, frames, shift);
}

#if defined(__x86_64__)

#define L_AVX2 __attribute__((target("avx2")))

L_AVX2 inline __m256i Load(const std::int16_t* at) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)); }

// The sums of both halves of a channel, each still spread over eight lanes.
L_AVX2 inline void Halves(const __m256i (&taps)[4], const std::int16_t* in, __m256i& first, __m256i& second) {
  first = _mm256_add_epi32(_mm256_madd_epi16(taps[0], Load(in)), _mm256_madd_epi16(taps[1], Load(in + 16)));
  second = _mm256_add_epi32(_mm256_madd_epi16(taps[2], Load(in + 32)), _mm256_madd_epi16(taps[3], Load(in + 48)));
}

// (a + b) >> 1 without the carry that 32 bits have no room for.
L_AVX2 inline __m128i HalfOfSum(__m128i a, __m128i b) {
  return _mm_add_epi32(_mm_and_si128(a, b), _mm_srai_epi32(_mm_xor_si128(a, b), 1));
}

L_AVX2 inline int TwoSamples(const std::int16_t* at) {
  int both;
  std::memcpy(&both, at, sizeof both);
  return both;
}

// Gives lanes left, right, and two that are not used. By hand, since the plain loop adds up its lanes four times.
L_AVX2 inline __m128i FilterAvx2(const LRateRow& row, const std::int16_t* left, const std::int16_t* right,
                                 __m128i shift) {
  const __m256i taps[4] = {Load(row.taps), _mm256_and_si256(Load(row.taps + 16), Load(kBeside.mask + 16)),
                           _mm256_and_si256(Load(row.taps + 32), Load(kBeside.mask + 32)), Load(row.taps + 48)};
  __m256i leftFirst, leftSecond, rightFirst, rightSecond;
  Halves(taps, left, leftFirst, leftSecond);
  Halves(taps, right, rightFirst, rightSecond);
  const __m256i sums =
      _mm256_hadd_epi32(_mm256_hadd_epi32(leftFirst, rightFirst), _mm256_hadd_epi32(leftSecond, rightSecond));
  const __m128i beside = _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));

  // Lanes from here: left first, right first, left second, right second.
  const __m128i pairs = _mm_insert_epi32(_mm_cvtsi32_si128(TwoSamples(left + kMiddle)), TwoSamples(right + kMiddle), 1);
  const __m128i samples = _mm_shuffle_epi32(_mm_cvtepi16_epi32(pairs), _MM_SHUFFLE(3, 1, 2, 0));
  const __m128i middleTaps = _mm_cvtepu16_epi32(_mm_cvtsi32_si128(TwoSamples(row.taps + kMiddle)));
  const __m128i middle = _mm_mullo_epi32(samples, _mm_unpacklo_epi32(middleTaps, middleTaps));
  const __m128i halves = HalfOfSum(beside, middle);
  const __m128i total = HalfOfSum(halves, _mm_unpackhi_epi64(halves, halves));
  // (2 total + rounding) >> shift, with shift at least 2, stays within 32 bits in this order.
  return _mm_srai_epi32(_mm_add_epi32(_mm_sra_epi32(total, shift), _mm_set1_epi32(1)), 1);
}

L_AVX2 int StereoAvx2(const LRateRun& run, LRateCursor& cursor, const std::int16_t* left, const std::int16_t* right,
                      int* out, int frames) {
  if (run.shift < 2) return StereoScalar(run, cursor, left, right, out, frames);
  const __m128i shift = _mm_cvtsi32_si128(run.shift - 2);
  return Walk(run, cursor, frames, [&](const LRateRow& row, int index, int made) L_AVX2 {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 2 * made), FilterAvx2(row, left + index, right + index, shift));
  });
}

L_AVX2 int MonoAvx2(const LRateRun& run, LRateCursor& cursor, const std::int16_t* plane, int* out, int stride,
                    int frames) {
  return Walk(run, cursor, frames, [&](const LRateRow& row, int index, int made) L_AVX2 {
    out[made * stride] = FilterPlain(row, plane + index, run);
  });
}

L_AVX2 bool MakeRowAvx2(const LRateLaw& law, double fraction, double* values, LRateRow& row) {
  return MakeRowLoop(law, fraction, values, row);
}

L_AVX2 void SplitAvx2(std::int16_t* plane, const int* in, int stride, int frames, int shift) {
  SplitByStride(plane, in, stride, frames, shift);
}

#endif

}  // namespace

const LRateKernels kRateKernelsScalar{MakeRowScalar, MonoScalar, StereoScalar, SplitScalar};
#if defined(__x86_64__)
const LRateKernels kRateKernelsAvx2{MakeRowAvx2, MonoAvx2, StereoAvx2, SplitAvx2};
#endif
