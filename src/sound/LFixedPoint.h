// The gain product of the sound path, and the conversions of its gains.
// Law      sh = sample >> 12, sl = sample & 0xfff, likewise for the gain; gh * sh + (sl * gh >> 12) + (sh * gl >> 12).
//          The product of the two low parts is left out, so unity gives the sample only up to one step of rounding:
//          callers that need the sample itself branch around it.
// Units    samples on the 20-bit scale; gain24 with 24 fraction bits, kUnityGain24 = 0x1000000.
// Threads  [any], [device] included
#pragma once
#include "sound/LWrap.h"
#include "sound/LdB.h"

constexpr int MulGain24(int sample, int gain24) {
  const int sampleHigh = sample >> 12, sampleLow = sample & 0xfff;
  const int gainHigh = gain24 >> 12, gainLow = gain24 & 0xfff;
  const int high = WrapMul32(gainHigh, sampleHigh);
  const int crossSample = WrapMul32(sampleLow, gainHigh) >> 12;
  const int crossGain = WrapMul32(sampleHigh, gainLow) >> 12;
  return WrapAdd32(high, WrapAdd32(crossSample, crossGain));
}

constexpr int Gain9FromGain24(int gain24) { return gain24 >> 15; }
