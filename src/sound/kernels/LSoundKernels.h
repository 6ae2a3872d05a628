// The loops of the sound path that cost time. Each stands once and is compiled for the plain machine and for AVX2; all
// forms give the same samples for every input. The form is chosen once, by what the processor has; the environment
// variable TAVI_KERNELS=scalar forces the plain one.
// Units    samples on the 20-bit scale, gains with 24 fraction bits (gain9: 9); counts of ints unless they say frames.
// Threads  [any]; no allocation after the first use.
#pragma once
#include <cstdint>
#include <span>

struct LRateKernels;

inline constexpr int kMixLanes = 8;

// Where each output channel takes its input from: out[channel] += in[source] * gain. A gain of 0 takes nothing.
struct LMixPlan {
  int inChannels, outChannels;
  int source[kMixLanes];
  int gain24[kMixLanes];
};

struct LSoundKernels {
  const char* name;
  // One input channel into one output channel; the strides are the channel counts.
  void (*mixChannel)(int* out, int outStride, const int* in, int inStride, int frames, int gain24);
  void (*mixFrames)(int* out, const int* in, int frames, const LMixPlan& plan);
  void (*gainQuick)(int* samples, int count, int gain9);
  int (*peak)(const int* samples, int count);  // largest magnitude; that of the least int is the greatest
  // Sums of (sample >> 5)^2 of every `stride`th sample: low collects the 13 low bits of each square, high the rest.
  void (*squares)(const int* samples, int count, int stride, std::uint64_t& high, std::uint64_t& low);
  void (*toDevice)(int* out, const int* in, int count);  // x << 12, held within the range
  const LRateKernels* rate;
};

const LSoundKernels& Kernels();
std::span<const LSoundKernels* const> UsableKernels();  // the plain form first
