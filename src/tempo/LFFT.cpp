#include "tempo/LFFT.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace {

// Arrays a power of two apart fall on the same lines of the cache; this keeps them from it.
constexpr std::size_t kGap = 24;

LComplexSpan Part(LAlignedDoubles& memory, std::size_t part, std::size_t size) {
  double* const re = memory.data() + 2 * part * (size + kGap);
  return {re, re + size + kGap};
}

double TurnRe(double turns) { return std::cos(2 * std::numbers::pi * turns); }
double TurnIm(double turns) { return -std::sin(2 * std::numbers::pi * turns); }

}  // namespace

unsigned long LFFT::GetBits(unsigned long n) {
  const unsigned long wanted = n - (n >> 2);
  if (wanted < 9) return kMinBits;
  unsigned long bits = kMinBits + 1;
  while (bits < kMaxBits && (1UL << bits) < wanted) ++bits;
  return bits;
}

LFFT::Passes::Passes(unsigned long bits) : size(1 << bits), lastRadix(bits % 2 == 0 ? 4 : 8) {
  std::size_t count = 0;
  for (int groups = size / 4; groups * 4 > lastRadix; groups /= 4) count += 6 * std::size_t(groups);
  twiddles = LAlignedDoubles(count);
  double* at = twiddles.data();
  for (int groups = size / 4; groups * 4 > lastRadix; groups /= 4) {
    stages.push_back({groups, size / 4 / groups, at});
    for (int power = 1; power <= 3; ++power, at += 2 * groups)
      for (int group = 0; group < groups; ++group) {
        const double turns = double(power) * group / (4.0 * groups);
        at[group] = TurnRe(turns);
        at[groups + group] = TurnIm(turns);
      }
  }
}

LFFT::LFFT(unsigned long bits, const LTempoKernels& kernels)
    : kernels_(kernels),
      bits_(std::clamp(bits, kMinBits, kMaxBits)),
      size_(1UL << bits_),
      whole_(bits_),
      half_(bits_ - 1),
      realTwiddles_(size_ / 2 + 2),
      work_(4 * (size_ + kGap)),
      reversed_(size_) {
  for (std::size_t k = 0; k <= size_ / 4; ++k) {
    realTwiddles_[k] = TurnRe(double(k) / double(size_));
    realTwiddles_[size_ / 4 + 1 + k] = TurnIm(double(k) / double(size_));
  }
  for (unsigned i = 1; i < size_; ++i) reversed_[i] = reversed_[i / 2] / 2 | (i & 1) << (bits_ - 1);
}

void LFFT::DoFFT(double* re, double* im) { kernels_.transform(whole_.Plan(), {re, im}, Part(work_, 0, size_), false); }

// Exchanging re and im turns the sense of the transform.
void LFFT::DoInverseFFT(double* re, double* im) {
  DoFFT(im, re);
  const double scale = 1.0 / double(size_);
  for (std::size_t i = 0; i < size_; ++i) {
    re[i] *= scale;
    im[i] *= scale;
  }
}

void LFFT::DoInverseQuarter(double* re, double* im) {
  kernels_.transform(whole_.Plan(), {im, re}, Part(work_, 0, size_), true);
}

void LFFT::DoRealFFT(const double* in, double* re, double* im) {
  const LComplexSpan data = Part(work_, 0, size_), work = Part(work_, 1, size_);
  if (half_.stages.empty() || half_.size < 16) {
    std::copy_n(in, size_, data.re);
    std::fill_n(data.im, size_, 0.0);
    kernels_.transform(whole_.Plan(), data, work, false);
    std::copy_n(data.re, size_ / 2 + 1, re);
    std::copy_n(data.im, size_ / 2 + 1, im);
    return;
  }
  kernels_.transformReal(half_.Plan(), in, {re, im}, data, work, realTwiddles_.data());
}

void LFFT::DoFFTNoOpt(double* re, double* im) const {
  for (unsigned i = 0; i < size_; ++i)
    if (i < reversed_[i]) {
      std::swap(re[i], re[reversed_[i]]);
      std::swap(im[i], im[reversed_[i]]);
    }
  for (std::size_t half = 1; half < size_; half *= 2)
    for (std::size_t k = 0; k < half; ++k) {
      const double wRe = TurnRe(double(k) / double(2 * half)), wIm = TurnIm(double(k) / double(2 * half));
      for (std::size_t low = k; low < size_; low += 2 * half) {
        const std::size_t high = low + half;
        const double turnedRe = re[high] * wRe - im[high] * wIm, turnedIm = re[high] * wIm + im[high] * wRe;
        re[high] = re[low] - turnedRe;
        im[high] = im[low] - turnedIm;
        re[low] += turnedRe;
        im[low] += turnedIm;
      }
    }
}
