// The computed tables of Layer III: powers, windows, stereo ratios and what the Huffman codes look like when they are
// read by several bits at once.
// Law      ISO/IEC 11172-3, 2.4.3.4, and 13818-3, 2.4.3.2; the formulas stand where the tables are filled.
// Threads  [any]; filled once, at the first use (a few milliseconds, memory of the program's lifetime), then constant.
#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "audiofile/mp3/LMP3BandTables.h"

// Reads words of a Huffman code together with the signs that follow them. The first kFirstBits bits choose an entry:
//   a pair     kSpecial clear: bits 0..5 length with signs; bits 8..12 and 16..20 x and y, each + kZero, signed
//   a link     kSpecial: bits 0..3 how many bits choose among the entries from index (bits 16..31) on
//   an escape  kSpecial and kEscape: bits 0..5 length without signs; bits 8..12 and 16..20 x and y, either of them 15
struct LMP3PairLookup {
  static constexpr int kFirstBits = 9, kZero = 15;
  static constexpr std::uint32_t kSpecial = 0x80, kEscape = 0x40, kLengthMask = 0x3f, kLinkMask = 0xf;
  const std::uint32_t* entries = nullptr;  // null: every pair is 0
  int linbits = 0;
};

// Length << 8 | index into `quads`, chosen by kQuadBits bits.
using LMP3QuadLookup = std::uint16_t;

class LMP3LookupTables {
 public:
  static constexpr int kQuadBits = 10;
  static constexpr int kQuads = 81;              // (v, w, x, y), each of -1, 0, 1
  static constexpr int kPowers = 8191 + 15 + 1;  // of the largest value with 13 linbits
  static constexpr int kLeastGain = -420;        // in steps of a quarter of a power of 2, below every sum of gains
  static constexpr int kGains = 512;
  static constexpr int kAliasLines = 8;
  static constexpr int kNoPosition = 7;  // MPEG-1: this band is not coded by intensity

  // 2^(quarters / 4)
  float Gain(int quarters) const { return gains_[quarters - kLeastGain]; }

  LMP3PairLookup pairs[32];
  const LMP3QuadLookup* quadTables[2];
  alignas(16) float quads[kQuads][4];
  float powers[kPowers];                              // n^(4/3)
  float signedPowers[2 * LMP3PairLookup::kZero + 2];  // of n - kZero, with the sign of n
  alignas(32) float Cs[kAliasLines], Ca[kAliasLines];
  // Of the long block types 0, 1 and 3: what the output of the 18-point transform is multiplied with to give each of 36
  // samples, its sign and the last division of the transform included. Of the short ones the same for 12 samples.
  float longWindows[4][36];
  float shortWindow[12];
  float Kl[7], Kr[7];          // MPEG-1, by position
  float lowRateRatios[2][32];  // by scale and position: of the channel that is attenuated; 1 for position 0

 private:
  friend const LMP3LookupTables& GetMp3LookUpTable();
  LMP3LookupTables() { InitTables(); }
  void InitTables();
  void InitPowers();
  void InitWindows();
  void InitStereo();
  void InitHuffman();
  std::uint32_t AddPairTable(int table);

  std::array<float, kGains> gains_;
  std::vector<std::uint32_t> pairEntries_;
  std::vector<LMP3QuadLookup> quadEntries_;
};

const LMP3LookupTables& GetMp3LookUpTable();
