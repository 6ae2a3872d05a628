// A source that costs next to nothing, so that a benchmark measures what stands in front of it.
#pragma once
#include <algorithm>
#include <cstring>
#include <vector>

#include "sound/LSoundSource.h"

// Noise at full scale, over and over; the end is never reached.
class BenchSource final : public LSoundSourceBase {
 public:
  explicit BenchSource(unsigned char channels) : LSoundSourceBase(kDeckRate, channels, kPeak16) {
    unsigned seed = 1;
    for (int i = 0; i < kMaxBlockFrames * channels; ++i) {
      seed = seed * 1664525U + 1013904223U;
      samples_.push_back(int((long long)int(seed) * kPeak16 >> 31));
    }
  }
  void Read(int* out, int frames) override {
    std::memcpy(out, samples_.data(), std::size_t(frames) * GetChannels() * sizeof(int));
    position_ = (position_ + frames) % kMaxBlockFrames;
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kEndless; }

 private:
  std::vector<int> samples_;
  int position_ = 0;
};

// A stereo click, and nothing after it: what is left of it in a filter soon is too small for normal numbers, which would
// cost a hundred times as much.
class EndedSource final : public LSoundSourceBase {
 public:
  EndedSource() : LSoundSourceBase(kDeckRate, 2, kPeak16) {}
  void Read(int* out, int frames) override {
    std::fill_n(out, frames * 2, 0);
    if (!ended_) std::fill_n(out, 2, kPeak16);
    ended_ = true;
  }
  int GetPositionSample() const override { return 0; }
  int GetEndSample() const override { return kEndless; }

 private:
  bool ended_ = false;
};
