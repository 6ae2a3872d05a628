// Base of sources that decode what lies in a file: positions, and the silence around the sound.
// Signal   frames before 0 and from the end on read as zeros; the position counts on.
// Units    frames
// Threads  one thread at a time; Read allocates nothing.
// Failure  what the file no longer holds is silence.
#pragma once
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "audiofile/LPositionedSource.h"
#include "audiofile/LRawFileDataSoundSource.h"
#include "foundation/LFile.h"
#include "sound/LSoundSource.h"

class LDecodedSource : public LPositionedSource {
 public:
  void Read(int* out, int frames) override;
  int GetEndSample() const override { return end_; }

 protected:
  LDecodedSource(int rate, unsigned char channels, int peak, std::int64_t frames)
      : LPositionedSource(rate, channels, peak), end_(int(std::clamp<std::int64_t>(frames, 0, kEndless - 1))) {}
  virtual void Decode(int* out, int frame, int frames) = 0;  // all within 0..end

 private:
  int end_;
};

// Of a codec that works in blocks of a fixed number of frames: keeps the block that is being read.
class LBlockSource : public LDecodedSource {
 protected:
  LBlockSource(LPCMData&& data, int peak, int blockBytes, int blockFrames, std::int64_t frames);
  // blockFrames * channels samples from the bytes of a block, of which the file may hold only the first.
  virtual void DecodeBlock(int* out, int block, const unsigned char* bytes, int size) = 0;
  int BlockOf(int frame) const { return frame / blockFrames_; }
  int LoadBlock(int block);  // into bytes_; how many there are

  std::vector<unsigned char> bytes_;  // of one block

 private:
  void Decode(int* out, int frame, int frames) override;

  LFileHandle file_;
  std::int64_t dataStart_;
  int blockFrames_;
  int held_ = -1;  // the block in samples_
  std::vector<int> samples_;
};
