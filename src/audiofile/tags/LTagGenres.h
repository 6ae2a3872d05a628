// The genres that a tag names by a number.
// Threads  [any]
#pragma once
#include <string_view>

inline constexpr int kGenreCount = 148;
extern const char* const Genres[kGenreCount];

// Empty: no such number.
inline std::string_view GenreName(long number) {
  return number >= 0 && number < kGenreCount ? std::string_view(Genres[number]) : std::string_view();
}
