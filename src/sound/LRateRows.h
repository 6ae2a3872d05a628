// The table of the 63-tap converter in the form its kernels take. A row is computed when it is first used, since a pitch
// may need tens of thousands of them.
// Law      row n is the phase that output frame n meets, n * M mod L: a converter goes through the rows from the first to
//          the last and round again, and memory is read in its order. Each coefficient is LConvertRateBase's, to the bit.
// Memory   128 bytes a row, taken from the system at construction and touched row by row.
// Threads  [main, worker] construction, well below a millisecond; [player] rows, allocating nothing.
// Failure  without memory IsOk is false, and there are no rows.
#pragma once
#include <cstddef>

#include "sound/LConvertRateBase.h"
#include "sound/kernels/LRateKernels.h"

class LRateRows {
 public:
  explicit LRateRows(const LConvertRateBase& law);  // of 63 taps; outlives this
  ~LRateRows();
  LRateRows(const LRateRows&) = delete;
  LRateRows& operator=(const LRateRows&) = delete;

  bool IsOk() const { return rows_ != nullptr; }
  const LRateRow* Data() const { return rows_; }
  const LRateRow& Row(int number) {
    if (!rows_[number].IsMade()) Make(number);
    return rows_[number];
  }
  void Make(int number);

 private:
  std::size_t Bytes() const;

  const LConvertRateBase& law_;
  LRateRow* rows_;
  LRateLaw fastLaw_;
};
