// Base of sources over what lies in a file. Their position may stand before the sound, which reads as silence up to
// frame 0, and counts on behind its end.
// Units    frames
// Threads  one thread at a time; no allocation.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "sound/LSoundSource.h"

class LPositionedSource : public LSoundSourceBase {
 public:
  int GetPositionSample() const override { return position_; }
  void Seek(int frame) override { position_ = frame; }

 protected:
  using LSoundSourceBase::LSoundSourceBase;
  void Advance(int frames) { position_ = int(std::min<std::int64_t>(std::int64_t{position_} + frames, kEndless)); }
  // The part of a request that lies before frame 0; what is left of it follows in `out` and `frames`.
  void ReadSilenceBefore(int*& out, int& frames) {
    if (position_ >= 0 || frames <= 0) return;
    const int before = int(std::min<std::int64_t>(frames, -std::int64_t{position_}));
    out = std::fill_n(out, std::ptrdiff_t{before} * GetChannels(), 0);
    Advance(before);
    frames -= before;
  }

  int position_ = 0;
};
