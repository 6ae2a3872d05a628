// A source gives the same samples from wherever it is read.
#pragma once
#include "audiofile/AudioFileTest.h"
#include "support/AllocationGuard.h"

// From many places, most of them behind one that has been passed, in pieces of many lengths; the first ones far ahead.
inline void CheckSeeks(const LSoundSource& source, const std::vector<int>& whole, int tolerance = 0) {
  const int channels = source.GetChannels(), end = int(whole.size()) / channels;
  std::vector<int> out(std::size_t(9000 * channels));
  unsigned random = 1;
  for (int i = 0; i < 60; ++i) {
    random = random * 1664525 + 1013904223;
    const int at = i == 0 ? end - 100 : int(random >> 8) % (end + 20) - 10, count = int(random >> 20) % 900 + 1;
    AllocationGuard guard;
    source.Seek(at);
    source.Read(out.data(), count);
    source.Read(out.data() + std::ptrdiff_t{count} * channels, 7);
    ASSERT_EQ(guard.Count(), 0);
    ASSERT_EQ(source.GetPositionSample(), at + count + 7);
    for (int s = 0; s < (count + 7) * channels; ++s) {
      const int place = at * channels + s;
      const bool inside = place >= 0 && place < int(whole.size());
      ASSERT_LE(std::abs(out[std::size_t(s)] - (inside ? whole[std::size_t(place)] : 0)), inside ? tolerance : 0)
          << "read from " << at << ", sample " << s;
    }
  }
}
