// A level in whole decibels, and a meter's levels of several channels.
// Units    dB, -126..127; kMuted (-127) means silence, not -127 dB. Gains have 24 fraction bits, 0x1000000 is unity.
// Threads  [any]
#pragma once
#include <array>
#include <cstdint>

inline constexpr int kUnityGain24 = 0x1000000;
inline constexpr int kUnityGain9 = 512;

template <class T>
class LdB;

template <>
class LdB<signed char> {
 public:
  static constexpr signed char kMuted = -127;

  constexpr LdB() = default;
  constexpr LdB(int db) : db_(static_cast<signed char>(db)) {}  // NOLINT: a level is written as its number
  constexpr int Get() const { return db_; }
  constexpr bool IsMuted() const { return db_ <= kMuted; }
  friend constexpr bool operator==(LdB, LdB) = default;

  // The sum of the numbers, clamped to kMuted..127: a muted level counts as -127, so raising it opens it again.
  friend LdB operator+(LdB a, LdB b);

  struct Table {
    std::array<std::int32_t, 256> amplitude;  // index dB + 128; 10^(dB/20) * 2^24 + 0.5, truncated, at most 0x7fffffff
    std::array<std::int32_t, 256> power;      // 10^(dB/10), likewise; the entries of -128 and -127 are 0
  };
  static const Table& GetTable();  // built on first use
  int AmplitudeGain24() const { return GetTable().amplitude[std::size_t(db_ + 128)]; }

 private:
  signed char db_ = 0;
};

using LLevel = LdB<signed char>;

// Levels of up to 256 channels. Unused ones hold 0; an empty meter reports two channels of silence.
struct LDBMultiChannelLevels {
  unsigned char channels = 0;
  std::array<LLevel, 256> levels{};
  static LDBMultiChannelLevels Silent() {
    LDBMultiChannelLevels meter;
    meter.channels = 2;
    meter.levels[0] = meter.levels[1] = LLevel::kMuted;
    return meter;
  }
};

template <class Level>
using LDBMultiChannel = LDBMultiChannelLevels;
using LLevels = LDBMultiChannel<LLevel>;
