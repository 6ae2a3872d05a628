#include "audiofile/mp3/LMP3ScaleFactors.h"

#include <algorithm>

using namespace LMP3BandTables;

namespace {

constexpr int kMixedLongBands = 8, kMixedLongBandsLowRate = 6;
constexpr int kShortBandsOfFirst = 6;  // have slen1, the others slen2

struct Lengths {
  unsigned char bits[4];
  int row;  // of sfb_nr_table
};

Lengths LowRateLengths(int compress, bool isIntensity) {
  const auto lengths = [](int a, int b, int c, int d, int row) {
    return Lengths{{static_cast<unsigned char>(a), static_cast<unsigned char>(b), static_cast<unsigned char>(c),
                    static_cast<unsigned char>(d)},
                   row};
  };
  if (isIntensity) {
    const int half = compress >> 1;
    if (half < 180) return lengths(half / 36, half % 36 / 6, half % 6, 0, 3);
    if (half < 244) return lengths((half - 180) >> 4, (half - 180) >> 2 & 3, (half - 180) & 3, 0, 4);
    return lengths((half - 244) / 3, (half - 244) % 3, 0, 0, 5);
  }
  if (compress < 400) return lengths((compress >> 4) / 5, (compress >> 4) % 5, compress >> 2 & 3, compress & 3, 0);
  if (compress < 500) return lengths(((compress - 400) >> 2) / 5, ((compress - 400) >> 2) % 5, compress & 3, 0, 1);
  return lengths((compress - 500) / 3, (compress - 500) % 3, 0, 0, 2);
}

}  // namespace

void LMP3ScaleFactors::Read(LMP3BitReader& bits, const LMP3Granule& granule, const bool* shares) {
  const int first = slen1_table[granule.scaleFactorBits], second = slen2_table[granule.scaleFactorBits];
  hasPreflag = granule.hasPreflag;
  const auto take = [&bits](int length) { return static_cast<unsigned char>(bits.Take(length)); };
  if (granule.IsShort()) {
    if (granule.IsMixed())
      for (int band = 0; band < kMixedLongBands; ++band) longBands[band] = take(first);
    for (int band = granule.IsMixed() ? kMixedFirstShortBand : 0; band < kShortBands - 1; ++band)
      for (unsigned char& factor : shortBands[band]) factor = take(band < kShortBandsOfFirst ? first : second);
    return;
  }
  constexpr int kGroupEnds[4] = {6, 11, 16, 21};
  for (int group = 0, band = 0; group < 4; ++group) {
    const bool isShared = shares && shares[group];
    for (; band < kGroupEnds[group]; ++band)
      if (!isShared) longBands[band] = take(group < 2 ? first : second);
  }
}

void LMP3ScaleFactors::ReadLowRate(LMP3BitReader& bits, const LMP3Granule& granule, bool isIntensity) {
  const Lengths lengths = LowRateLengths(granule.scaleFactorBits, isIntensity);
  hasPreflag = lengths.row == 2;
  const int kind = granule.IsMixed() ? 2 : granule.IsShort() ? 1 : 0;
  const int longs = granule.IsMixed() ? kMixedLongBandsLowRate : granule.IsShort() ? 0 : kLongBands - 1;
  int number = 0;  // of the factor: those of long bands, then of short ones, a window after the other
  for (int part = 0; part < 4; ++part) {
    const int length = lengths.bits[part];
    const auto limit = static_cast<unsigned char>(length == 0 ? 255 : (1 << length) - 1);
    for (int left = sfb_nr_table[lengths.row][kind][part]; left > 0; --left, ++number) {
      const auto factor = static_cast<unsigned char>(bits.Take(length));
      if (number < longs) {
        longBands[number] = factor;
        longLimits[number] = limit;
      } else {
        const int place = number - longs + (granule.IsMixed() ? 3 * kMixedFirstShortBand : 0);
        shortBands[place / 3][place % 3] = factor;
        shortLimits[place / 3][place % 3] = limit;
      }
    }
  }
}
