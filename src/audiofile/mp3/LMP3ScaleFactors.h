// The scale factors of a granule's channel: how many bits each has, and which are taken over from the granule before.
// Law      ISO/IEC 11172-3, 2.4.2.7; 13818-3, 2.4.3.2
// Units    scale factors as they are in the stream; those of short blocks by band and window
// Threads  [any]; no allocation
#pragma once
#include "audiofile/mp3/LMP3BandTables.h"
#include "audiofile/mp3/LMP3SideInfo.h"

struct LMP3ScaleFactors {
  unsigned char longBands[LMP3BandTables::kLongBands] = {};       // the last one stays 0
  unsigned char shortBands[LMP3BandTables::kShortBands][3] = {};  // the same
  // Lower rates: the largest value there is stands for "not coded by intensity" in the right channel; where no bits are
  // spent on values, there is none such.
  unsigned char longLimits[LMP3BandTables::kLongBands] = {};
  unsigned char shortLimits[LMP3BandTables::kShortBands][3] = {};
  bool hasPreflag = false;  // lower rates take it from the lengths

  // `shares` is null in the first granule. At most kMaxBits are taken.
  static constexpr int kMaxBits = 240;
  void Read(LMP3BitReader& bits, const LMP3Granule& granule, const bool* shares);
  void ReadLowRate(LMP3BitReader& bits, const LMP3Granule& granule, bool isIntensity);
};
