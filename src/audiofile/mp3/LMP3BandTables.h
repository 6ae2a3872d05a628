// The figures of Layer III that depend on the sample rate or on the kind of block (ISO/IEC 11172-3, tables B.6 and B.8;
// 13818-3, 2.4.3.2; the rates below 16 kHz as every encoder and decoder of theirs has them).
// Units    bands in spectral lines (0..576; of one window of a short block 0..192); lengths of scale factors in bits.
// Threads  [any]; constant.
#pragma once

namespace LMP3BandTables {

inline constexpr int kLines = 576;              // of a channel in a granule
inline constexpr int kSubbands = 32;            //
inline constexpr int kSubbandLines = 18;        // kLines / kSubbands
inline constexpr int kLongBands = 22;           // the last one has no scale factor
inline constexpr int kShortBands = 13;          // the same
inline constexpr int kMixedFirstShortBand = 3;  // of a mixed block: what lies below are long bands

// The first index is 3 * version + rate index: 44100, 48000, 32000, 22050, 24000, 16000, 11025, 12000, 8000 Hz.
extern const short sfb_start_long[9][kLongBands + 1];
extern const short sfb_start_short[9][kShortBands + 1];
// Lines of the long part of a mixed block: two subbands, at 8000 Hz four.
inline int MixedLongLines(int table) { return 3 * sfb_start_short[table][kMixedFirstShortBand]; }
extern const unsigned char pretab[kLongBands];

// MPEG-1: by scalefac_compress.
extern const unsigned char slen1_table[16];
extern const unsigned char slen2_table[16];
// Lower rates: by the range of scalefac_compress, then long, short, mixed: scale factors in each of four parts.
extern const unsigned char sfb_nr_table[6][3][4];

}  // namespace LMP3BandTables
