// The 63-tap filter of the rate converter over one block of 16-bit samples, one output frame after the other.
// Law      first = sum of taps 0..31, second = sum of taps 32..62; out = ((first >> 1) + (second >> 1) + rounding) >>
//          shift, all of it exact. The two middle taps stand apart, since only they exceed 16 bits.
// Units    index and endIndex in input frames of the block, phase in units of 1 / phases of one.
// Threads  [any]; no allocation.
#pragma once
#include <cstdint>
#include <vector>

class LConvertRateBase;

inline constexpr int kRateTaps = 63;
inline constexpr int kRateRowTaps = 64;  // with one of 0, so that a row is a whole number of vectors

struct alignas(32) LRateRow {
  std::int16_t taps[kRateRowTaps];  // taps 31, 32 and 63 are 0
  std::int32_t middle[2];           // taps 31 and 32
};

// The rows of a table; empty if a coefficient beside the middle, or the sum of a half, could exceed what the kernels
// hold.
std::vector<LRateRow> MakeRateRows(const LConvertRateBase& table);

struct LRateCursor {
  int index;  // of the first sample under the filter
  int phase;  // not yet carried into the index
};

struct LRateRun {
  const LRateRow* rows;
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
  LConvertMono mono;
  LConvertStereo stereo;
  LSplitChannel split;
};
extern const LRateKernels kRateKernelsScalar;
#if defined(__x86_64__)
extern const LRateKernels kRateKernelsAvx2;
#endif
