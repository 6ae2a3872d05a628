// Writes GSM 06.10 into a wave file, two frames in a block.
// Signal   a rewindable tape, as every sink. What lies in a block that is gone into again is known only by what its
//          decoder gives, so a rewind codes up to 319 samples a second time.
// Units    frames, mono
// Threads  one thread at a time; Seek allocates.
// Failure  a block that could not be written sets the error bit. The header behind every block tells what the file
//          holds; the samples of a block that is not full are lost with a program that dies.
#pragma once
#include <gsm.h>

#include <cstdint>
#include <string>

#include "audiofile/LGSMDecoder.h"
#include "foundation/LFile.h"
#include "sound/LSoundSink.h"

class LGSMWaveSink final : public LSoundSinkBase {
 public:
  LGSMWaveSink(const std::string& path, int rate);
  ~LGSMWaveSink() override;
  void Write(const int* samples, int frames) override;
  void Seek(int frame) override;
  void Truncate(int frames) override { Seek(frames); }

 private:
  static constexpr int kBlockBytes = kGsmWave.blockBytes, kBlockFrames = kGsmWave.blockFrames;

  void ResetEncoder();
  void Encode(unsigned char* bytes);  // pending_
  void WriteBlock(int block);
  void WriteHeader();
  void Rewind(int block);

  LFileHandle file_;
  gsm encoder_ = nullptr;           // null without memory
  int pending_[kBlockFrames] = {};  // the block that position_ lies in
  int blocks_ = 0;                  // written
};
