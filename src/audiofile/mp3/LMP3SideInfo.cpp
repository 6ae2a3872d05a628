#include "audiofile/mp3/LMP3SideInfo.h"

#include <algorithm>

#include "audiofile/mp3/LMP3BandTables.h"
#include "audiofile/mp3/LMP3HuffmanTables.h"

namespace {

using LMP3BandTables::kLines;

void ReadSwitchedWindow(LMP3BitReader& bits, const LMP3Header& header, LMP3Granule& granule) {
  granule.blockType = int(bits.Take(2));
  granule.isSwitchedAbove = bits.Flag();
  for (int region = 0; region < 2; ++region) granule.tables[region] = int(bits.Take(5));
  granule.tables[2] = 0;
  for (int& gain : granule.subblockGains) gain = int(bits.Take(3));
  constexpr int kBandsOfFirst = 8;
  const int table = header.BandTable();
  granule.regionEnds[0] =
      granule.IsShort() ? LMP3BandTables::MixedLongLines(table) : LMP3BandTables::sfb_start_long[table][kBandsOfFirst];
  granule.regionEnds[1] = kLines;
}

void ReadNormalWindow(LMP3BitReader& bits, const LMP3Header& header, LMP3Granule& granule) {
  granule.blockType = 0;
  granule.isSwitchedAbove = false;
  for (int& table : granule.tables) table = int(bits.Take(5));
  std::fill_n(granule.subblockGains, 3, 0);
  const short* const starts = LMP3BandTables::sfb_start_long[header.BandTable()];
  const int first = int(bits.Take(4)) + 1;
  const int second = first + int(bits.Take(3)) + 1;
  granule.regionEnds[0] = starts[std::min(first, LMP3BandTables::kLongBands)];
  granule.regionEnds[1] = starts[std::min(second, LMP3BandTables::kLongBands)];
}

bool ReadGranule(LMP3BitReader& bits, const LMP3Header& header, LMP3Granule& granule) {
  granule.dataBits = int(bits.Take(12));
  granule.bigValues = 2 * int(bits.Take(9));
  granule.globalGain = int(bits.Take(8));
  granule.scaleFactorBits = int(bits.Take(header.IsLowRate() ? 9 : 4));
  const bool isSwitched = bits.Flag();
  if (isSwitched)
    ReadSwitchedWindow(bits, header, granule);
  else
    ReadNormalWindow(bits, header, granule);
  granule.hasPreflag = !header.IsLowRate() && bits.Flag();
  granule.hasLargeSteps = bits.Flag();
  granule.quadTable = int(bits.Take(1));
  if (granule.bigValues > kLines || (isSwitched && granule.blockType == 0)) return false;
  granule.regionEnds[2] = granule.bigValues;
  for (int region = 0; region < 3; ++region) {
    granule.regionEnds[region] = std::min(granule.regionEnds[region], granule.bigValues);
    const int start = region == 0 ? 0 : granule.regionEnds[region - 1];
    if (start < granule.regionEnds[region] && !LMP3HuffmanTables::IsInUse(granule.tables[region])) return false;
  }
  return true;
}

}  // namespace

bool LMP3SideInfo::Parse(const LMP3Header& header, const unsigned char* bytes) {
  // The reader may look at two bytes behind those it takes.
  unsigned char padded[kMaxBytes + kReadBytes] = {};
  std::copy_n(bytes, header.SideInfoBytes(), padded);
  LMP3BitReader bits(padded, 0);
  const bool isMono = header.mode == LMP3Header::kMono;
  if (header.IsLowRate()) {
    mainDataBegin = int(bits.Take(8));
    bits.Take(isMono ? 1 : 2);
  } else {
    mainDataBegin = int(bits.Take(9));
    bits.Take(isMono ? 5 : 3);
    for (int channel = 0; channel < header.Channels(); ++channel)
      for (bool& shares : sharesScaleFactors[channel]) shares = bits.Flag();
  }
  bool isSound = true;
  for (int granule = 0; granule < header.Granules(); ++granule)
    for (int channel = 0; channel < header.Channels(); ++channel)
      isSound &= ReadGranule(bits, header, granules[granule][channel]);
  return isSound;
}
