// What the high-pass and the low-pass have in common: one pole in whole numbers, accumulators with 8 fraction bits.
// Units    frequencies in Hz; the step has 8 fraction bits: 0 moves never, 255 almost follows the input.
// Threads  [any]
#pragma once
#include <cmath>
#include <numbers>

namespace LOnePole {

inline int Step8(int frequencyHz, int sampleRate) {
  return int((1 - std::exp(-2 * std::numbers::pi * frequencyHz / sampleRate)) * 256);
}

// Both filters overshoot on steep edges, to twice the input at most.
inline int RaisedPeak(int peak) { return peak <= 0x100000 ? peak * 2 : peak; }

}  // namespace LOnePole
