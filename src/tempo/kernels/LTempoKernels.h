// The loops of the transforms and of the phase vocoder. Each stands once, written for vectors of four doubles, and is
// compiled for the plain machine and for AVX2; both forms give the same bits. The form is chosen once, by what the
// processor has; the environment variable TAVI_KERNELS=scalar forces the plain one.
// Units    counts of doubles unless they say frames; phases in radians; frequencies in radians a frame.
// Threads  [any]; no allocation after the first use.
#pragma once
#include <span>

// One radix-4 pass over data of `groups * 4 * stride` points: w, w^2 and w^3 of every group, each an array of `groups`.
struct LFFTStage {
  int groups, stride;
  const double* twiddles;  // six arrays: re and im of w, of w^2, of w^3
};

struct LComplexSpan {
  double* re;
  double* im;
};

// A plan of passes: radix-4 ones, then a last one of radix 4 or 8 without twiddles.
struct LFFTPlan {
  int size;
  std::span<const LFFTStage> stages;
  int lastRadix;
};

// Two real signals ride in one transform, one in its real and one in its imaginary part; `bins` is half its size.
struct LPolarBins {
  double* magnitude;
  double* phase;
  double* cross;  // Re(first * conj second)
};

struct LTempoKernels {
  const char* name;
  // Forward transform, exp(-i), not scaled, in place; `work` is as long as the data. With `quarter` only the first
  // quarter of the result is made, the rest is left undefined.
  void (*transform)(const LFFTPlan& plan, LComplexSpan data, LComplexSpan work, bool quarter);
  // 2 * plan.size reals into plan.size + 1 bins; `twiddles` is exp(-i pi k / size), re then im, of k to size / 2.
  void (*transformReal)(const LFFTPlan& plan, const double* in, LComplexSpan bins, LComplexSpan data, LComplexSpan work,
                        const double* twiddles);
  // One channel of interleaved samples times a window into re, times another into im, with the halves exchanged.
  void (*loadWindowed)(LComplexSpan to, const int* samples, int stride, int frames, const double* window,
                       const double* second);
  // Takes the two spectra apart: magnitude and phase of the first, and its product with the second.
  // `data` holds 2 * bins points, with data[2 * bins] = data[0].
  void (*polar)(LComplexSpan data, int bins, const LPolarBins& to);
  // Local maxima, tops of two equal bins included, whose right neighbour is above `lowest`. Gives their number; `to` has
  // room for `count`.
  int (*peaks)(int* to, const double* magnitudes, int count, double lowest);
  // w + e / hop with w = pi k / bins and e the part of phase - before - hop * w that is left in -pi..pi.
  void (*frequencies)(double* out, const double* phase, const double* before, int bins, int hop);
  // Adds 2 pi wherever the phase falls by more than pi, and takes it away where it rises by more.
  void (*unwrap)(double* out, const double* phase, int count);
  // to = magnitude * exp(i phase).
  void (*rebuild)(LComplexSpan to, const double* magnitude, const double* phase, int bins);
  // The spectrum of left + i * right, of two real signals with bins 0..bins each, into 2 * bins points.
  void (*joinReal)(LComplexSpan to, LComplexSpan left, LComplexSpan right, int bins);
};

const LTempoKernels& TempoKernels();
std::span<const LTempoKernels* const> UsableTempoKernels();  // the plain form first
