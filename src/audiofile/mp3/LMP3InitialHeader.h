// What the start of a file tells about all of it: where the sound begins, how long it is, whether the bit rate varies, and
// what the encoder put in front and behind.
// Law      a first frame that holds a tag block ("Xing", "Info", "VBRI") is never sound. Its count of frames is believed
//          only if it fits the size of the file. Without a count, the bit rates of the first kScanFrames frames and of some
//          places further on tell a mean length.
// Units    offsets and lengths in bytes, delay and padding in frames of sound
// Threads  [main, worker]; no allocation
// Failure  Read is false where no stream is found
#pragma once
#include "audiofile/mp3/LMP3FrameSearch.h"

struct LMP3InitialHeader {
  static constexpr int kScanFrames = 50;

  LMP3Header header;
  std::int64_t firstAudioOffset = 0;
  int endFrame = -1;           // frames in the file; -1: not known
  bool hasFrameCount = false;  // from a tag block
  bool isVariable = false;
  double averageFrameBytes = 0;
  int encoderDelay = 0, encoderPadding = 0;

  bool Read(LMP3ReadFile& file);

 private:
  struct Tag {
    bool isTag = false, isInfo = false, isVariable = false;
    std::int64_t frames = 0;  // 0: not told
    int delay = 0, padding = 0;
  };
  static Tag ReadTag(const unsigned char* frame, const LMP3Header& header);
  static void ReadEncoder(const unsigned char* frame, int bytes, int offset, Tag& tag);
  void ScanBitRates(LMP3ReadFile& file);
  void TakeCount(const LMP3ReadFile& file, const Tag& tag);
};
