// The data of one transform: N complex points, as two arrays.
// Units    points; n is the number of points that an operation goes over, at most the frame's size.
// Threads  [any], one thread a frame; nothing allocates after construction.
#pragma once
#include "tempo/LAlignedDoubles.h"
#include "tempo/LFFTWindow.h"

class LFFTFrame {
 public:
  explicit LFFTFrame(std::size_t size) : re_(size), im_(size) {}

  std::size_t size() const { return re_.size(); }
  double* re() { return re_.data(); }
  double* im() { return im_.data(); }
  const double* re() const { return re_.data(); }
  const double* im() const { return im_.data(); }

  // The real part becomes sample times window, of one channel of interleaved samples; the imaginary part stays.
  void LoadRealSamples(const int* samples, std::size_t n, const LFFTWindow& window, unsigned char channels,
                       unsigned char channel);
  void LoadRealSamples(const double* samples, std::size_t n, const LFFTWindow& window, unsigned char channels,
                       unsigned char channel);
  void ClearImaginary() { im_.Clear(); }
  void ShiftHalf(std::size_t n);      // exchanges the halves, so that the frame's middle is point 0
  void MirrorTopHalf(std::size_t n);  // bins above n / 2 become the conjugates of those below: a real signal's spectrum

 private:
  LAlignedDoubles re_, im_;
};
