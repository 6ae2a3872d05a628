// The discrete Fourier transform of 2^bits points in double precision.
// Law      forward X[k] = sum of x[i] exp(-2 pi i k i / N), not scaled; the inverse divides by N, so that it undoes the
//          forward one. Stockham's radix-4 passes (Van Loan, Computational Frameworks for the FFT, 1992, 1.7), the last
//          one of radix 8 where the bits are odd.
// Units    N = 1 << bits points; bits 3..24, others are held to that.
// Threads  [any], one thread an instance: the passes share scratch memory. Nothing allocates after construction.
#pragma once
#include <vector>

#include "tempo/LAlignedDoubles.h"
#include "tempo/kernels/LTempoKernels.h"

class LFFT {
 public:
  static constexpr unsigned long kMinBits = 3, kMaxBits = 24;
  // The bits of the smallest power of two that is at least three quarters of n; at least kMinBits.
  static unsigned long GetBits(unsigned long n);

  explicit LFFT(unsigned long bits, const LTempoKernels& kernels = TempoKernels());
  unsigned long Bits() const { return bits_; }
  unsigned long Size() const { return size_; }

  void DoFFT(double* re, double* im);  // in place
  void DoInverseFFT(double* re, double* im);
  // The inverse without the division by N, of which only the first N / 4 points are made; the others hold nothing.
  void DoInverseQuarter(double* re, double* im);
  // N reals into the bins 0..N / 2; the others are their mirror image.
  void DoRealFFT(const double* in, double* re, double* im);
  // The same transform by bit reversal and radix-2 steps: short, and slow.
  void DoFFTNoOpt(double* re, double* im) const;

 private:
  // The passes of one size, with their twiddles.
  struct Passes {
    explicit Passes(unsigned long bits);
    LFFTPlan Plan() const { return {size, stages, lastRadix}; }
    int size, lastRadix;
    LAlignedDoubles twiddles;
    std::vector<LFFTStage> stages;
  };

  const LTempoKernels& kernels_;
  unsigned long bits_, size_;
  Passes whole_, half_;           // of N points, and of N / 2 for real input
  LAlignedDoubles realTwiddles_;  // exp(-2 pi i k / N), k to N / 4: re, then im
  LAlignedDoubles work_;          // two complex arrays of N points, with a gap
  std::vector<unsigned> reversed_;
};
