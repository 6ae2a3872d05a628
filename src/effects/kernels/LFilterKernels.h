// The loops of the filters: chains of biquads, the sums of fast convolution, and reverberation. Each stands once, written for vectors of
// four doubles, and is compiled for the plain machine and for AVX2; both forms give the same samples. The form is chosen
// once, by what the processor has; the environment variable TAVI_KERNELS=scalar forces the plain one.
// Units    samples on the 20-bit scale; counts of frames, of bins for spectra.
// Threads  [any]; no allocation after the first use.
#pragma once
#include <span>

#include "effects/kernels/LReverb.h"

inline constexpr int kBiquadVectors = 4;                        // of a bank
inline constexpr int kMostBiquadSections = 2 * kBiquadVectors;  // one after the other

// Two sections, two channels: lanes are (section, channel) = (0, 0), (0, 1), (1, 0), (1, 1).
struct LBiquadPair {
  double b0[4], b1[4], b2[4], a1[4], a2[4];
  double w1[4], w2[4];  // the state
};

// Two channels through a row of sections, in direct form II:
//   w = x - a1 w1 - a2 w2; y = b0 w + b1 w1 + b2 w2
struct LBiquadBank {
  LBiquadPair pairs[kBiquadVectors];
  int pairCount;   // 1..kBiquadVectors
  bool truncates;  // every section's result becomes a whole number before the next one takes it
  double gain;     // of the samples that go in
};

// Where the samples of a bank's two channels lie; `second` is 0 where there is but one, which then stands for both.
struct LBiquadSamples {
  int* first;
  int second, stride, frames;
};

// A spectrum with its real and imaginary parts apart.
struct LSpectrum {
  double* re;
  double* im;
};
struct LConstSpectrum {
  const double* re;
  const double* im;
};

struct LFilterKernels {
  const char* name;
  // In place; what leaves the range of an int takes its nearest end.
  void (*biquads)(LBiquadBank& bank, const LBiquadSamples& samples);
  void (*multiplyAdd)(LSpectrum sum, LConstSpectrum a, LConstSpectrum b, int bins);  // sum += a * b
  void (*reverb)(LReverb& reverb, const LReverbSamples& samples);
};

const LFilterKernels& FilterKernels();
std::span<const LFilterKernels* const> UsableFilterKernels();  // the plain form first
