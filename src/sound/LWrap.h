// Integer arithmetic with a stated overflow: wrapping in 32 bits where the sound path wraps by design, saturating where
// a real number becomes a sample. No undefined behaviour, so the sanitizers stay silent.
// Units    none
// Threads  [any], [device] included
#pragma once
#include <cstdint>

constexpr int WrapAdd32(int a, int b) { return int(unsigned(a) + unsigned(b)); }
constexpr int WrapSub32(int a, int b) { return int(unsigned(a) - unsigned(b)); }
constexpr int WrapMul32(int a, int b) { return int(unsigned(a) * unsigned(b)); }

// Truncates toward zero; what lies beyond the range takes the nearest end, and what is no number becomes 0.
constexpr int SaturateToInt(double value) {
  if (!(value == value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return int(value);
}
