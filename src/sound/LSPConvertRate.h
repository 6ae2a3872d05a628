// Another sample rate, pulled: a polyphase filter of 63 taps over blocks of the input.
// Signal   block floating point: the peak of a block and of the 63 frames before it sets a common shift that brings
//          them to 16 bits, so that every product fits 32 bits and levels above full scale keep their headroom.
// Law      see LConvertRateBase for the filter, kernels/LRateKernels for the sum.
// Units    positions in frames of the target rate, block indices in frames of the input.
// Threads  LSPConvertRate [main, worker]; LSRCConvertRate [player], Read allocates nothing.
// Failure  a target below 1 gives lseDamaged at 44100 Hz; without memory for its rows a converter has lseDamaged, and is
//          silent.
#pragma once
#include <cstdint>
#include <vector>

#include "sound/LConvertRateBase.h"
#include "sound/LRateRows.h"
#include "sound/LSoundProcess.h"

class LSPConvertRate final : public LSoundProcess {
 public:
  explicit LSPConvertRate(int targetRate, bool fast = false) : targetRate_(targetRate), fast_(fast) {}
  LSoundSource OpenSource(LSoundSource& input) override;  // the input itself if nothing is to be converted

 private:
  int targetRate_;
  bool fast_;  // at most 255 phases, the rate met nearly
};

class LSRCConvertRate final : public LSoundProcessBase, public LConvertRateBase {
 public:
  LSRCConvertRate(const LSoundSource& input, int targetRate, bool wideTransition, bool approximate);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override;
  int GetEndSample() const override;
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;

  int BlockShift() const { return shift_; }  // of the present block

 private:
  static constexpr int kBufferFrames = 32768;  // what the fill count wraps at
  static constexpr int kCentre = 32;           // index of the first output in a fresh buffer

  void ReadBuffer();
  int FramesToRead() const;
  void KeepOverlap();
  void ScaleBlock(int frames);
  int Convert(int* out, int frames);
  int ConvertWide(int* out, int frames);

  LRateRows rows_;
  std::vector<int> block_;             // overlap and block, interleaved
  std::vector<std::int16_t> planes_;   // the same, one channel after the other, if narrow_
  bool narrow_ = true;                 // the kernels can have the block: it fits 16 bits
  int fill_ = 0;                       // frames since the count last wrapped: decides where blocks end
  int blockFrames_ = 0;                // without the overlap
  int shift_ = 0;                      // the block was scaled down by it
  LRateCursor cursor_{kCentre, 0, 0};  // index relative to the block's overlap
};
