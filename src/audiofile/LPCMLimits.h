// What rates and channel counts a file may have, for readers and writers alike.
// Units    Hz
// Threads  [any]
#pragma once
#include <cstdint>

inline constexpr std::int64_t kMaxFileRate = 196000;
inline constexpr std::int64_t kMaxFileChannels = 255;

inline bool IsPlayableFormat(std::int64_t rate, std::int64_t channels) {
  return rate >= 1 && rate <= kMaxFileRate && channels >= 1 && channels <= kMaxFileChannels;
}
