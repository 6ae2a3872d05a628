// A run of ADPCM bytes in a file, read from any sample on. Where the coding leaves no other way, decoder states are kept
// at even distances as the decoder comes by, so that only a first jump ahead has to run through what lies between.
// Units    samples: single values; offsets and lengths in bytes
// Threads  one thread at a time; Read allocates nothing.
// Failure  what the file no longer holds is silence.
//
// A codec has a State, kSamplesPerByteMax, SamplesPerByte(), Decode(State&, byte, samples) and Skip(State&, bytes, count).
#pragma once
#include <algorithm>
#include <cstdint>
#include <vector>

#include "foundation/LFile.h"

template <class Codec>
class LAdpcmRun {
 public:
  using State = typename Codec::State;

  // `bytes` as the file holds them, whatever its header says.
  LAdpcmRun(const Codec& codec, const State& first, std::int64_t start, std::int64_t bytes)
      : codec_(codec), start_(start), state_(first), marks_(std::size_t(bytes / kMarkBytes) + 1, first) {}

  void Read(LFileHandle& file, std::int64_t sample, int* out, int count) {
    const int perByte = codec_.SamplesPerByte();
    int skip = int(sample % perByte);
    int done = 0;
    if (GoTo(file, sample / perByte)) {
      while (done < count) {
        unsigned char bytes[kLoadBytes];
        const int wanted = std::min<int>(kLoadBytes, (count - done + skip + perByte - 1) / perByte);
        const int got = Load(file, bytes, wanted);
        for (int i = 0; i < got; ++i) {
          done += TakeFrom(bytes[i], skip, out + done, count - done);
          skip = 0;
        }
        if (got < wanted) break;
      }
    }
    std::fill_n(out + done, count - done, 0);
  }

 private:
  static constexpr int kLoadBytes = 1024;
  static constexpr int kMarkBytes = 4 * kLoadBytes;

  int Load(LFileHandle& file, unsigned char* bytes, int wanted) {
    return int(std::max<std::int64_t>(file.ReadAt(bytes, std::size_t(wanted), start_ + at_), 0));
  }

  // A byte whose last sample is not wanted yet is decoded again next time.
  int TakeFrom(unsigned char byte, int skip, int* out, int count) {
    int samples[Codec::kSamplesPerByteMax];
    State next = state_;
    codec_.Decode(next, byte, samples);
    const int taken = std::min(codec_.SamplesPerByte() - skip, count);
    std::copy_n(samples + skip, taken, out);
    if (skip + taken == codec_.SamplesPerByte()) Advance(next, 1);
    return taken;
  }

  // Never across a mark.
  void Advance(const State& next, int bytes) {
    state_ = next;
    at_ += bytes;
    if (at_ % kMarkBytes == 0 && std::size_t(at_ / kMarkBytes) == reached_ && reached_ < marks_.size())
      marks_[reached_++] = state_;
  }

  bool GoTo(LFileHandle& file, std::int64_t byte) {
    const std::size_t mark = std::min(std::size_t(byte / kMarkBytes), reached_ - 1);
    if (at_ > byte || at_ < std::int64_t(mark) * kMarkBytes) {
      at_ = std::int64_t(mark) * kMarkBytes;
      state_ = marks_[mark];
    }
    while (at_ < byte) {
      unsigned char bytes[kLoadBytes];
      const std::int64_t toBorder = kLoadBytes - at_ % kLoadBytes;
      const int wanted = int(std::min(toBorder, byte - at_));
      const int got = Load(file, bytes, wanted);
      State state = state_;
      codec_.Skip(state, bytes, got);
      Advance(state, got);
      if (got < wanted) return false;
    }
    return true;
  }

  Codec codec_;
  std::int64_t start_;        // of the run in the file
  std::int64_t at_ = 0;       // the byte that comes next, counted from the start of the run
  State state_;               // before it
  std::vector<State> marks_;  // before every kMarkBytes-th byte
  std::size_t reached_ = 1;   // how many of them are known
};
