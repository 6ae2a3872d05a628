#include "effects/LFiltFFT.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "sound/LWrap.h"

void LFiltFFT::SetBlkSize(unsigned long frames) {
  block_ = std::bit_ceil(std::max(frames, 4UL));
  fft_ = std::make_unique<LFFT>((unsigned long)std::countr_zero(2 * block_));
  time_ = LAlignedDoubles(2 * block_);
  re_ = LAlignedDoubles(2 * block_);
  im_ = LAlignedDoubles(2 * block_);
  SetCoeff(nullptr, 0);
}

LSpectrum LFiltFFT::Part(LAlignedDoubles& spectra, std::size_t part) const {
  double* const re = spectra.data() + part * 2 * Bins();
  return {re, re + Bins()};
}

void LFiltFFT::SetCoeff(const double* coefficients, unsigned long count) {
  parts_ = (count + block_ - 1) / block_;
  inputs_ = LAlignedDoubles(parts_ * 2 * Bins());
  filters_ = LAlignedDoubles(parts_ * 2 * Bins());
  for (std::size_t part = 0; part < parts_; ++part) {
    time_.Clear();
    const std::size_t start = part * block_;
    std::copy_n(coefficients + start, std::min(block_, count - start), time_.data());
    fft_->DoRealFFT(time_.data(), re_.data(), im_.data());
    const LSpectrum to = Part(filters_, part);
    std::copy_n(re_.data(), Bins(), to.re);
    std::copy_n(im_.data(), Bins(), to.im);
  }
  Clear();
}

void LFiltFFT::Clear() {
  time_.Clear();
  inputs_.Clear();
  newest_ = 0;
}

void LFiltFFT::ApplyFilter(int* out, const int* in, int count, int stride) {
  const auto block = std::ptrdiff_t(block_);
  for (; count >= block; count -= int(block), in += block * stride, out += block * stride) FilterBlock(out, in, stride);
}

void LFiltFFT::FilterBlock(int* out, const int* in, int stride) {
  std::copy_n(time_.data() + block_, block_, time_.data());
  for (std::size_t i = 0; i < block_; ++i) time_[block_ + i] = in[std::ptrdiff_t(i) * stride];
  if (parts_ > 0) {
    newest_ = (newest_ == 0 ? parts_ : newest_) - 1;
    fft_->DoRealFFT(time_.data(), re_.data(), im_.data());
    const LSpectrum to = Part(inputs_, newest_);
    std::copy_n(re_.data(), Bins(), to.re);
    std::copy_n(im_.data(), Bins(), to.im);
  }

  std::fill_n(re_.data(), Bins(), 0.0);
  std::fill_n(im_.data(), Bins(), 0.0);
  for (std::size_t part = 0; part < parts_; ++part) {
    const LSpectrum input = Part(inputs_, (newest_ + part) % parts_);
    const LSpectrum filter = Part(filters_, part);
    kernels_.multiplyAdd({re_.data(), im_.data()}, {input.re, input.im}, {filter.re, filter.im}, int(Bins()));
  }
  for (std::size_t i = 1; i < block_; ++i) {
    re_[2 * block_ - i] = re_[i];
    im_[2 * block_ - i] = -im_[i];
  }
  fft_->DoInverseFFT(re_.data(), im_.data());
  for (std::size_t i = 0; i < block_; ++i)
    out[std::ptrdiff_t(i) * stride] = SaturateToInt(std::nearbyint(re_[block_ + i]));
}
