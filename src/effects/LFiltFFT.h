// A long filter of one channel, by transforms: the coefficients are cut into parts of a block, and every part is one
// product with the spectrum of the input as many blocks ago (overlap-save, uniformly partitioned).
// Law      y[n] = sum of c[k] x[n - k], rounded to the nearest sample.
// Units    blocks and coefficients in frames; a block is a power of two, 4 at least.
// Threads  one at a time; ApplyFilter allocates nothing.
// Failure  none: without coefficients everything becomes 0.
#pragma once
#include <memory>

#include "effects/kernels/LFilterKernels.h"
#include "tempo/LFFT.h"

class LFiltFFT {
 public:
  explicit LFiltFFT(const LFilterKernels& kernels = FilterKernels()) : kernels_(kernels) { SetBlkSize(4); }

  void SetBlkSize(unsigned long frames);  // forgets the coefficients
  void SetCoeff(const double* coefficients, unsigned long count);
  // Whole blocks, `stride` ints apart; `out` may be `in`. Goes on where the last call ended.
  void ApplyFilter(int* out, const int* in, int count, int stride);
  void Clear();  // what went in is forgotten

 private:
  void FilterBlock(int* out, const int* in, int stride);
  std::size_t Bins() const { return block_ + 1; }
  LSpectrum Part(LAlignedDoubles& spectra, std::size_t part) const;

  const LFilterKernels& kernels_;
  std::size_t block_ = 0, parts_ = 0;
  std::size_t newest_ = 0;            // of the inputs' spectra, a ring
  std::unique_ptr<LFFT> fft_;         // of two blocks
  LAlignedDoubles time_;              // the last block and this one
  LAlignedDoubles inputs_, filters_;  // the spectra, each with its bins' re and then their im
  LAlignedDoubles re_, im_;
};
