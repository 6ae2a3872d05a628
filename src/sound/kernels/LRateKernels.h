// The 63-tap filter of the rate converter over one block of 16-bit samples, one output frame after the other, and the
// rows of coefficients it takes.
// Law      first = sum of taps 0..31, second = sum of taps 32..62; out = ((first >> 1) + (second >> 1) + rounding) >>
//          shift, all of it exact. The two middle taps stand apart, since only they exceed 16 bits. Beside them a half
//          sums up to at most 53,600 in magnitude (worked out over all cutoffs and phases), so its products fit 32 bits.
// Units    index and endIndex in input frames of the block, phase in units of 1 / phases of one.
// Threads  [any]; no allocation.
#pragma once
#include <cmath>
#include <cstdint>
#include <cstring>

class LRateRows;

inline constexpr int kRateTaps = 63;
inline constexpr int kRateRowTaps = 64;    // with one of 0, so that a row is a whole number of vectors
inline constexpr int kRateCentreTap = 31;  // the first of the middle two

struct alignas(64) LRateRow {
  std::int16_t taps[kRateRowTaps];  // the middle two without sign; tap 63 is 0

  int Tap(int tap) const {
    const bool middle = tap == kRateCentreTap || tap == kRateCentreTap + 1;
    return middle ? static_cast<std::uint16_t>(taps[tap]) : taps[tap];
  }
  // Memory that was never written is 0; the middle of a row is not, the main lobe of a low-pass being there.
  bool IsMade() const {
    std::uint32_t middle;
    std::memcpy(&middle, taps + kRateCentreTap, sizeof middle);
    return middle != 0;
  }
};

// What the rows of one table share.
struct LRateLaw {
  double angular, gain, betaSquared;                  // of LRateWindow
  double sines[kRateRowTaps], cosines[kRateRowTaps];  // of angular * (tap - kRateCentreTap)
};

// Computes a row in double precision; `fraction` is the phase in input frames, above 0 and below 1, and `values` gets the
// coefficients before they are rounded. False: one of them lies so near the middle of two whole numbers that double
// precision might round it to the wrong one.
using LMakeRateRow = bool (*)(const LRateLaw& law, double fraction, double* values, LRateRow& row);
inline constexpr double kRateDoubt = 1e-4;  // thousands of times the error of double precision
inline bool IsRateDoubtful(double value) {
  return std::fabs(std::fabs(value) - std::floor(std::fabs(value)) - 0.5) <= 2 * kRateDoubt;
}

struct LRateCursor {
  int index;  // of the first sample under the filter
  int phase;  // not yet carried into the index
  int row;    // of the next output frame, below the number of phases
};

struct LRateRun {
  LRateRows* rows;
  int phases, step;
  int endIndex;  // stop when the index reaches it
  int shift;     // 0..15; rounding is half of 1 << shift
};

// Both give the number of frames made, and leave the cursor where the next call goes on. A plane is one channel of the
// block, readable to endIndex + kRateRowTaps - 1. Mono output goes to every `stride`th int.
using LConvertMono = int (*)(const LRateRun& run, LRateCursor& cursor, const std::int16_t* plane, int* out, int stride,
                             int frames);
using LConvertStereo = int (*)(const LRateRun& run, LRateCursor& cursor, const std::int16_t* left,
                               const std::int16_t* right, int* out, int frames);

// One channel of an interleaved block, scaled: plane[i] = (in[i * stride] + (1 << shift) / 2) >> shift, which fits 16
// bits.
using LSplitChannel = void (*)(std::int16_t* plane, const int* in, int stride, int frames, int shift);

struct LRateKernels {
  LMakeRateRow makeRow;
  LConvertMono mono;
  LConvertStereo stereo;
  LSplitChannel split;
};
extern const LRateKernels kRateKernelsScalar;
#if defined(__x86_64__)
extern const LRateKernels kRateKernelsAvx2;
#endif
