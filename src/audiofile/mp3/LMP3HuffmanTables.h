// The Huffman codes of Layer III as they are published in ISO/IEC 11172-3, table B.7.
// Law      every code is complete, so the words need not be written down: in ascending order of the words, the word of
//          an entry is the sum of 2^-length of all entries before it.
// Units    an entry is length << 8 | value; a value is x << 4 | y of a pair, or v << 3 | w << 2 | x << 1 | y of a quad.
// Threads  [any]; constant.
#pragma once
#include <cstdint>
#include <span>

namespace LMP3HuffmanTables {

inline constexpr int kTables = 32;    // that a region can name
inline constexpr int kMaxValue = 15;  // of a word; in a table with linbits it announces more bits

struct PairTable {
  std::span<const std::uint16_t> code;  // empty: every pair is 0; tables 4 and 14 are not in use
  int linbits;
};

PairTable Pairs(int table);                       // 0..31
std::span<const std::uint16_t> Quads(int table);  // 0 is A, 1 is B
inline bool IsInUse(int table) { return table != 4 && table != 14; }

}  // namespace LMP3HuffmanTables
