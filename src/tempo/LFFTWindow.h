// Window tables of the transforms: what a frame's samples are multiplied by, from its first to its last.
// Units    factors, 0..1 apart from rounding.
// Threads  [any]; nothing changes after construction.
#pragma once
#include "tempo/LAlignedDoubles.h"

class LFFTWindow {
 public:
  const double* data() const { return table_.data(); }
  std::size_t size() const { return table_.size(); }
  double operator[](std::size_t index) const { return table_[index]; }

 protected:
  explicit LFFTWindow(std::size_t size) : table_(size) {}
  LAlignedDoubles table_;
};

class LHanningWindow final : public LFFTWindow {
 public:
  explicit LHanningWindow(std::size_t size);  // (1 - cos(2 pi i / N)) / 2
};

class LHammingWindow final : public LFFTWindow {
 public:
  explicit LHammingWindow(std::size_t size);  // 0.54 - 0.46 cos(2 pi i / N)
};

class LCosineWindow final : public LFFTWindow {
 public:
  explicit LCosineWindow(std::size_t size);  // cos(pi i / (N - 1) - pi / 2)
};
