#include "audiofile/mp3/LMP3LookupTables.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "audiofile/mp3/LMP3HuffmanTables.h"

using std::numbers::pi;

namespace {

// A word of a code, with or without signs, left-aligned in 32 bits.
struct Word {
  std::uint32_t bits;
  int length;
  std::uint32_t entry;
};

std::uint32_t PairEntry(int length, int x, int y) {
  return std::uint32_t(length) | std::uint32_t(x) << 8 | std::uint32_t(y) << 16;
}

// The words of a code with every choice of signs.
std::vector<Word> PairWords(const LMP3HuffmanTables::PairTable& table) {
  constexpr int kZero = LMP3PairLookup::kZero;
  std::vector<Word> words;
  std::uint64_t next = 0;
  for (const std::uint16_t figure : table.code) {
    const int length = figure >> 8, x = figure >> 4 & 15, y = figure & 15;
    const auto word = std::uint32_t(next);
    next += std::uint64_t{1} << (32 - length);
    if (table.linbits > 0 && (x == LMP3HuffmanTables::kMaxValue || y == LMP3HuffmanTables::kMaxValue)) {
      words.push_back({word, length, PairEntry(length, x, y) | LMP3PairLookup::kSpecial | LMP3PairLookup::kEscape});
      continue;
    }
    const int signsX = x > 0, signsY = y > 0;
    const int whole = length + signsX + signsY;
    for (int signs = 0; signs < 1 << (signsX + signsY); ++signs) {
      const bool minusX = signsX && (signs >> signsY & 1), minusY = signsY && (signs & 1);
      words.push_back({word | std::uint32_t(signs) << (32 - whole), whole,
                       PairEntry(whole, kZero + (minusX ? -x : x), kZero + (minusY ? -y : y))});
    }
  }
  return words;
}

}  // namespace

const LMP3LookupTables& GetMp3LookUpTable() {
  static const LMP3LookupTables tables;
  return tables;
}

void LMP3LookupTables::InitTables() {
  InitPowers();
  InitWindows();
  InitStereo();
  InitHuffman();
}

void LMP3LookupTables::InitPowers() {
  for (int i = 0; i < kGains; ++i) gains_[i] = float(std::exp2((i + kLeastGain) / 4.0));
  for (int i = 0; i < kPowers; ++i) powers[i] = float(std::pow(i, 4.0 / 3.0));
  for (int i = 0; i <= LMP3PairLookup::kZero; ++i) {
    signedPowers[LMP3PairLookup::kZero + i] = powers[i];
    signedPowers[LMP3PairLookup::kZero - i] = -powers[i];
  }
  signedPowers[LMP3PairLookup::kZero] = 0;
}

void LMP3LookupTables::InitWindows() {
  constexpr double kAliasFactors[kAliasLines] = {-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037};
  for (int i = 0; i < kAliasLines; ++i) {
    const double c = kAliasFactors[i];
    Cs[i] = float(1 / std::sqrt(1 + c * c));
    Ca[i] = float(c / std::sqrt(1 + c * c));
  }
  const auto sine = [](int points, int i) { return std::sin(pi / points * (i + 0.5)); };
  // Sample i of the transform of N lines is point j of a DCT-IV of N, mirrored at both its ends.
  const auto factor = [](int lines, int i) {
    const int half = lines / 2;
    const int j = i < half ? i + half : i < 3 * half ? 3 * half - 1 - i : i - 3 * half;
    return (i < half ? 0.5 : -0.5) / std::cos(pi * (2 * j + 1) / (4 * lines));
  };
  for (int i = 0; i < 36; ++i) {
    const double normal = sine(36, i);
    const double start = i < 18 ? normal : i < 24 ? 1 : i < 30 ? sine(12, i - 18) : 0;
    const double stop = i < 6 ? 0 : i < 12 ? sine(12, i - 6) : i < 18 ? 1 : normal;
    longWindows[0][i] = longWindows[2][i] = float(normal * factor(18, i));
    longWindows[1][i] = float(start * factor(18, i));
    longWindows[3][i] = float(stop * factor(18, i));
  }
  for (int i = 0; i < 12; ++i) shortWindow[i] = float(sine(12, i) * factor(6, i));
}

void LMP3LookupTables::InitStereo() {
  for (int position = 0; position < kNoPosition; ++position) {
    // tan of position * pi / 12 is infinite at 6: all of it is left then.
    const double left = position == 6 ? 1 : std::tan(position * pi / 12) / (1 + std::tan(position * pi / 12));
    Kl[position] = float(left);
    Kr[position] = float(1 - left);
  }
  for (int scale = 0; scale < 2; ++scale)
    for (int position = 0; position < 32; ++position) {
      const int steps = (position + 1) / 2;
      lowRateRatios[scale][position] = float(std::exp2((scale == 0 ? -0.25 : -0.5) * steps));
    }
}

void LMP3LookupTables::InitHuffman() {
  std::uint32_t offsets[32] = {};
  for (const int table : {1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 24}) offsets[table] = AddPairTable(table);
  for (int table = 0; table < 32; ++table) {
    const LMP3HuffmanTables::PairTable figures = LMP3HuffmanTables::Pairs(table);
    const int shared = table < 16 ? table : table < 24 ? 16 : 24;
    pairs[table].linbits = figures.linbits;
    pairs[table].entries = figures.code.empty() ? nullptr : pairEntries_.data() + offsets[shared];
  }

  constexpr int kWordBits = kQuadBits;
  quadEntries_.resize(2 << kWordBits);
  for (int table = 0; table < 2; ++table) {
    LMP3QuadLookup* const entries = quadEntries_.data() + (table << kWordBits);
    quadTables[table] = entries;
    for (int at = 0; const std::uint16_t figure : LMP3HuffmanTables::Quads(table)) {
      for (const int end = at + (1 << (kWordBits - (figure >> 8))); at < end; ++at) {
        int bits = figure >> 8, index = 0;
        for (int line = 3; line >= 0; --line) {
          const int value = figure >> line & 1;
          index = index * 3 + (value == 0 ? 1 : at >> (kWordBits - ++bits) & 1 ? 0 : 2);
        }
        entries[at] = LMP3QuadLookup(bits << 8 | index);
      }
    }
  }
  for (int index = 0; index < kQuads; ++index)
    for (int line = 0, rest = index; line < 4; ++line, rest /= 3) quads[index][3 - line] = float(rest % 3 - 1);
}

std::uint32_t LMP3LookupTables::AddPairTable(int table) {
  constexpr int kFirst = LMP3PairLookup::kFirstBits;
  const auto start = std::uint32_t(pairEntries_.size());
  pairEntries_.resize(start + (1U << kFirst));
  const std::vector<Word> words = PairWords(LMP3HuffmanTables::Pairs(table));
  for (std::size_t i = 0; i < words.size();) {
    const std::uint32_t prefix = words[i].bits >> (32 - kFirst);
    if (words[i].length <= kFirst) {
      std::fill_n(pairEntries_.begin() + start + prefix, 1 << (kFirst - words[i].length), words[i].entry);
      ++i;
      continue;
    }
    std::size_t end = i;
    int longest = words[i].length;
    for (; end < words.size() && words[end].bits >> (32 - kFirst) == prefix; ++end)
      longest = std::max(longest, words[end].length);
    const int more = longest - kFirst;
    const auto second = std::uint32_t(pairEntries_.size());
    pairEntries_[start + prefix] = LMP3PairLookup::kSpecial | std::uint32_t(more) | (second - start) << 16;
    pairEntries_.resize(second + (1U << more));
    for (; i < end; ++i)
      std::fill_n(pairEntries_.begin() + second + (words[i].bits << kFirst >> (32 - more)),
                  1 << (longest - words[i].length), words[i].entry);
  }
  return start;
}
