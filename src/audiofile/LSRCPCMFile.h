// The samples of a wave file, which may still be growing: a writer that is at work leaves a length above every real
// one, and this source then follows the file's size until the writer has put the final length in front of the data.
// Units    frames
// Threads  one thread at a time; the writer may be in another thread or program.
// Failure  past what a growing file holds, Read gives silence and the position stays.
#pragma once
#include "audiofile/LRawFileDataSoundSource.h"

class LSRCPCMFileBase : public LRawFileDataSoundSourceBase {
 public:
  int GetEndSample() const override;  // of a growing file: what it holds now
  bool IsStreaming() const override { return end_ < 0; }

 protected:
  using LRawFileDataSoundSourceBase::LRawFileDataSoundSourceBase;
};

template <class Storage>
class LSRCPCMFile final : public LSRCPCMFileBase {
 public:
  LSRCPCMFile(LPCMData&& data, bool growing)
      : LSRCPCMFileBase(std::move(data), Storage::kBytes, kFilePeak<Storage>, ConvertSamplesIn<Storage>, growing) {}
};

// Doubles lie 16 bytes apart; the second half of each slot is not looked at.
template <>
class LSRCPCMFile<LSFF64> final : public LSRCPCMFileBase {
 public:
  static constexpr int kStrideBytes = 16;
  LSRCPCMFile(LPCMData&& data, bool growing)
      : LSRCPCMFileBase(std::move(data), kStrideBytes, kFilePeak<LSFF64>, Convert, growing) {}

 private:
  static void Convert(int* out, const unsigned char* in, int samples);
};
