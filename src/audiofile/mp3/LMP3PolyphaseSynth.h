// The synthesis filter of one channel: 32 subband samples a slot become 32 samples of sound.
// Signal   slots -> MatrixMultiply -> rows of 64 -> the window over 16 rows -> samples on the 20-bit scale, unclipped
// Law      ISO/IEC 11172-3, figure A.2; the window D is its table B.3, here times the full scale of the sound path
// Units    slots of 32 samples; a row is what one slot becomes
// Threads  one thread at a time; no allocation after construction
#pragma once
#include "audiofile/kernels/LMP3Kernels.h"

class LMP3PolyphaseSynth {
 public:
  static constexpr int kMaxSlots = 36;  // of a frame
  static constexpr int kWindow = 512;
  using Row = float[LMP3Kernels::kRowFloats];

  static const float* const D;  // kWindow values, 32-byte aligned

  void Clear();
  void MatrixMultiply(const LMP3Kernels& kernels, const float (*slots)[32], int count) {
    kernels.matrixMultiply(slots, rows_ + LMP3Kernels::kHistory, count);
  }
  // Of the slot that came first; the kHistory rows before it are there too.
  const Row* Rows() const { return rows_ + LMP3Kernels::kHistory; }
  void Advance(int count);  // the rows of the last slots become history

 private:
  alignas(32) float rows_[LMP3Kernels::kHistory + kMaxSlots][LMP3Kernels::kRowFloats] = {};
};
