// The side information of a frame, and the bits it is read from.
// Law      ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7
// Units    lengths of main data in bits; bigValues and region ends in spectral lines
// Threads  [any]; no allocation
// Failure  Parse refuses what no encoder may write: more lines than there are, tables not in use, a block type of 0 where
//          a window is switched
#pragma once
#include "audiofile/mp3/LMP3Header.h"

// Bits from the front of a byte to its end, first byte first. The caller answers for the bytes being there.
class LMP3BitReader {
 public:
  LMP3BitReader(const unsigned char* bytes, int position) : bytes_(bytes), position_(position) {}
  int Position() const { return position_; }
  unsigned Take(int count) {  // 0..16
    if (count == 0) return 0;
    const unsigned char* const at = bytes_ + (position_ >> 3);
    const unsigned window = unsigned(at[0]) << 24 | unsigned(at[1]) << 16 | unsigned(at[2]) << 8;
    const unsigned value = window << (position_ & 7) >> (32 - count);
    position_ += count;
    return value;
  }
  bool Flag() { return Take(1) != 0; }

 private:
  const unsigned char* bytes_;
  int position_;
};

struct LMP3Granule {  // of one channel
  int dataBits;       // scale factors and Huffman bits
  int bigValues;
  int globalGain;
  int scaleFactorBits;   // scalefac_compress
  int blockType;         // 0 normal, 1 start, 2 three short, 3 stop
  bool isSwitchedAbove;  // only above the lowest subbands, which keep the normal window whatever the type
  int tables[3];
  int regionEnds[3];
  int subblockGains[3];
  bool hasPreflag, hasLargeSteps;
  int quadTable;

  bool IsShort() const { return blockType == 2; }
  bool IsMixed() const { return IsShort() && isSwitchedAbove; }
};

struct LMP3SideInfo {
  static constexpr int kMaxBytes = 32;
  static constexpr int kReadBytes = 2;  // that the reader may look at behind the last one

  int mainDataBegin;              // bytes in front of the frame's own
  bool sharesScaleFactors[2][4];  // of the second granule with the first, by group of bands
  LMP3Granule granules[2][2];     // [granule][channel]

  bool Parse(const LMP3Header& header, const unsigned char* bytes);
};
