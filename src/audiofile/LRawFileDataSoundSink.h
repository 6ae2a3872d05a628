// Writes uncompressed samples behind a container's header, block by block straight into the file.
// Signal   a rewindable tape: Seek goes back only, and what lies behind the head is gone.
// Units    frames; offsets and lengths in bytes
// Threads  one thread at a time.
// Failure  a block that could not be written, or a file at its container's limit, sets the error bit; what was written
//          stays and is what the final header counts. A program that dies leaves a file that plays to its last block.
#pragma once
#include <cstdint>
#include <utility>
#include <vector>

#include "audiofile/LHeaderBytes.h"
#include "foundation/LFile.h"
#include "sound/LSampleFormats.h"
#include "sound/LSoundSink.h"

// What a header tells of its file.
struct LSinkHeader {
  int rate;  // Hz
  unsigned char channels;
  int frameBytes;
  std::int64_t frames;
  bool final;  // the sink is being closed

  std::uint32_t DataBytes() const { return std::uint32_t(frames * frameBytes); }
  int SampleBits() const { return frameBytes / channels * 8; }
};

struct LSinkContainer {
  LHeaderBytes (*header)(const LSinkHeader& about);
  std::int64_t maxDataBytes;
  bool marksGrowing;  // else the header tells true lengths and is written anew behind every block
  bool padsToEven;
};

inline constexpr std::int64_t kMaxWaveDataBytes = 0xFFFFF000;  // lengths just below 2^32 read as "growing"
inline constexpr std::int64_t kMaxAiffDataBytes = 0x7FFFF000;  // others take these lengths as signed

class LRawFileDataSoundSinkBase : public LSoundSinkBase {
 public:
  using Converter = void (*)(unsigned char* out, const int* in, int samples);

  ~LRawFileDataSoundSinkBase() override;
  void Write(const int* samples, int frames) override;
  void Seek(int frame) override;
  void Truncate(int frames) override { Seek(frames); }

 protected:
  LRawFileDataSoundSinkBase(LFileHandle&& file, const LSinkContainer& container, int rate, unsigned char channels,
                            int sampleBytes, Converter convert, int startFrame);

 private:
  void WriteBlock(const int* samples, int frames);
  void WriteHeader(bool final);
  std::int64_t OffsetOf(std::int64_t frame) const { return headerBytes_ + frame * frameBytes_; }
  std::int64_t FramesInFile() const;

  int frameBytes_;
  LFileHandle file_;
  LSinkContainer container_;
  int headerBytes_;
  Converter convert_;
  std::vector<unsigned char> buffer_;  // one block
};

template <class Storage>
class LRawFileDataSoundSink final : public LRawFileDataSoundSinkBase {
 public:
  LRawFileDataSoundSink(LFileHandle&& file, const LSinkContainer& container, int rate, unsigned char channels)
      : LRawFileDataSoundSinkBase(std::move(file), container, rate, channels, Storage::kBytes,
                                  ConvertSamplesOut<Storage>, 0) {}
};
