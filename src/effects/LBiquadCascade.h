// A row of biquads, one after the other, over all channels of a stream.
// Law      w = x - a1 w1 - a2 w2; y = b0 w + b1 w1 + b2 w2 in each section; the last result is truncated to a sample and
//          held within the range of an int.
// Units    samples on the 20-bit scale.
// Threads  one at a time; Run allocates nothing.
#pragma once
#include <span>
#include <vector>

#include "effects/kernels/LFilterKernels.h"

struct LBiquadSection {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;  // as they stand: the signal passes
};

class LBiquadCascade {
 public:
  enum Between : unsigned char { kKeepFractions, kTruncate };  // what one section hands to the next

  // kMostBiquadSections at most. `gain` is of the samples that go in.
  LBiquadCascade(int channels, std::span<const LBiquadSection> sections, Between between, double gain = 1,
                 const LFilterKernels& kernels = FilterKernels());
  void Run(int* samples, int frames);  // interleaved, in place
  void Clear();

 private:
  const LFilterKernels& kernels_;
  int channels_;
  std::vector<LBiquadBank> banks_;  // one a pair of channels
};
