// The filters of a reverberator, both sides of them, as its loop works on them.
// Units    counts in frames.
#pragma once

inline constexpr int kReverbSides = 2, kReverbCombs = 8, kReverbAllPasses = 4;

// A delay that is read and then written at the same place.
struct LReverbLine {
  float* at;
  int size, index;
};

// comb: out = line; store = out * (1 - damping) + store * damping; line = x + store * feedback
// all-pass: b = line; line = b / 2 + x; y = b - x
struct LReverb {
  LReverbLine combs[kReverbSides][kReverbCombs];
  LReverbLine allPasses[kReverbSides][kReverbAllPasses];
  float stores[kReverbSides][kReverbCombs];  // of the combs
  float feedback, damping;
};

struct LReverbSamples {
  const float* in;  // of both sides
  float* out[kReverbSides];
  int frames;
};
