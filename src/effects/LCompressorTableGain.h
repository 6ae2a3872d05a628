// What a compressor does to each level: a gain for every whole decibel.
// Law      by threshold: unity up to it, then each decibel of level takes the ratio once more, but not so much that level
//          and gain together fall below the limit.
//          by a line: the level that goes in against the one that comes out, straight in dB between the points; beyond the
//          ends the gain is that of the end.
// Units    levels in dB, ratio as a factor (10^(-1/20) takes 1 dB a dB), gains with 24 fraction bits.
// Threads  [any]; no allocation.
// Failure  an empty line is unity.
#pragma once
#include <array>
#include <span>

#include "sound/LdB.h"

struct LCompressorPoint {
  LLevel in, out;
};

class LCompressorTableGain {
 public:
  LCompressorTableGain(const LLevel& threshold, double ratio, const LLevel& limit);
  explicit LCompressorTableGain(std::span<const LCompressorPoint> line);  // in any order

  int Gain24(LLevel level) const { return gains_[IndexOf(level.Get())]; }
  int Greatest24() const;

 private:
  static constexpr int kLeastDb = -127;
  static constexpr std::size_t IndexOf(int db) { return std::size_t(db < kLeastDb ? 0 : db - kLeastDb); }

  std::array<int, 256> gains_;  // from kLeastDb on
};
