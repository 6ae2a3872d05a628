// An array of doubles at an address the vector instructions like. All zeros when made.
// Units    aligned to 64 bytes, a cache line.
// Threads  [any]
#pragma once
#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

class LAlignedDoubles {
 public:
  LAlignedDoubles() = default;
  explicit LAlignedDoubles(std::size_t count)
      : data_(static_cast<double*>(::operator new(count * sizeof(double), kAlignment))), count_(count) {
    Clear();
  }

  double* data() { return data_.get(); }
  const double* data() const { return data_.get(); }
  std::size_t size() const { return count_; }
  double& operator[](std::size_t index) { return data_.get()[index]; }
  double operator[](std::size_t index) const { return data_.get()[index]; }
  void Clear() { std::fill_n(data_.get(), count_, 0.0); }

 private:
  static constexpr std::align_val_t kAlignment{64};
  struct Free {
    void operator()(double* data) const { ::operator delete(data, kAlignment); }
  };
  std::unique_ptr<double[], Free> data_;
  std::size_t count_ = 0;
};
