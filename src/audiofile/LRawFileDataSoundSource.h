// Uncompressed samples lying in a row in a file, whatever the container around them.
// Signal   frames before 0, behind the end, and what a shortened file no longer holds read as zeros.
// Units    frames; offsets and lengths in bytes
// Threads  one thread at a time. Read makes one system call per kMaxBlockFrames and allocates nothing.
// Failure  the end stays what the header says, even if the file is shorter; a failed read is silence.
#pragma once
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "audiofile/LPositionedSource.h"
#include "foundation/LFile.h"
#include "sound/LSampleFormats.h"
#include "sound/LSoundSource.h"

// What an opener knows once it has read the header.
struct LPCMData {
  LFileHandle file;
  std::int64_t start = 0;    // first byte of the samples
  std::uint32_t length = 0;  // bytes; kUnknownLength and more: not known
  int rate = 0;
  unsigned char channels = 0;
  std::uint32_t frames = 0;  // of a block codec whose last block is not full; 0: not told

  static constexpr std::uint32_t kUnknownLength = 0xFFFFFF01;
  bool HasUnknownLength() const { return length >= kUnknownLength; }
  std::int64_t BytesInFile() const { return std::max<std::int64_t>(file.Size() - start, 0); }
};

inline constexpr int kPeakG711 = 0x7e000;
inline constexpr int kPeakFloat = 0x1000a8;  // twice full scale and what rounding adds

// The largest magnitude that a reader declares for a storage class.
template <class Storage>
inline constexpr int kFilePeak = kPeak16;
template <>
inline constexpr int kFilePeak<LSFULAW> = kPeakG711;
template <>
inline constexpr int kFilePeak<LSFALAW> = kPeakG711;
template <>
inline constexpr int kFilePeak<LSFF32> = kPeakFloat;
template <>
inline constexpr int kFilePeak<LSFFRE32> = kPeakFloat;

class LRawFileDataSoundSourceBase : public LPositionedSource {
 public:
  using Converter = void (*)(int* out, const unsigned char* in, int samples);

  void Read(int* out, int frames) override;
  int GetEndSample() const override { return end_; }

 protected:
  // `growing`: the length is not known, and somebody still writes.
  LRawFileDataSoundSourceBase(LPCMData&& data, int sampleBytes, int peak, Converter convert, bool growing = false);
  int FramesOf(std::int64_t bytes) const;
  int FramesInFile() const;

  mutable LFileHandle file_;
  std::int64_t dataStart_;  // bytes
  mutable int end_;         // -1 while somebody still writes the file

 private:
  int ReadFrames(int* out, int frames);  // as many as the file gives

  int frameBytes_;
  Converter convert_;
  std::vector<unsigned char> buffer_;
  int bufferFrames_;
};

template <class Storage>
class LRawFileDataSoundSource final : public LRawFileDataSoundSourceBase {
 public:
  explicit LRawFileDataSoundSource(LPCMData&& data)
      : LRawFileDataSoundSourceBase(std::move(data), Storage::kBytes, kFilePeak<Storage>, ConvertSamplesIn<Storage>) {}
};
