// Writes valid Layer III streams of random content that use everything the format has: all Huffman tables with their
// escapes, all kinds of blocks, scale factors, joint stereo, the reservoir.
// Units    values are quantised lines; a stream holds kFrames frames
#pragma once
#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "audiofile/mp3/LMP3BandTables.h"
#include "audiofile/mp3/LMP3HuffmanTables.h"
#include "audiofile/mp3/LMP3SideInfo.h"

struct LMP3StreamKind {
  int version, rateIndex, mode, modeExtension;
  bool isProtected;
};

class LMP3StreamWriter {
 public:
  static constexpr int kFrames = 40;

  LMP3StreamWriter(const LMP3StreamKind& kind, unsigned seed) : kind_(kind), random_(seed) {}

  std::string Make() {
    // Each frame's main data is written in one row; it may begin in the room the frames before left over.
    std::string stream;
    int spare = 0;  // bytes at the end of `main_` that were left over
    for (int frame = 0; frame < kFrames; ++frame) {
      const std::string header = Header();
      LMP3Header parsed;
      LMP3Header::Parse(reinterpret_cast<const unsigned char*>(header.data()), parsed);
      const int room = parsed.FrameBytes() - parsed.MainDataOffset();
      const int begin = std::min(spare, kind_.version == 0 ? 511 : 255);
      bits_.clear();
      MakeFrame(parsed, 8 * (room + begin), begin);
      main_.resize(main_.size() - std::size_t(begin));
      const std::size_t start = main_.size();
      for (std::size_t i = 0; i < data_.size(); i += 8) {
        int byte = 0;
        for (std::size_t k = i; k < i + 8; ++k) byte = byte * 2 + (k < data_.size() && data_[k]);
        main_ += char(byte);
      }
      spare = room + begin - int(main_.size() - start);
      main_.append(std::size_t(spare), '\0');
      Append(stream, header + (kind_.isProtected ? std::string(2, '\x5a') : ""), room);
    }
    // The main data fills the room of the frames in their order.
    std::size_t at = 0;
    for (const auto& [place, room] : rooms_) {
      stream.replace(place, std::size_t(room), main_.substr(at, std::size_t(room)));
      at += std::size_t(room);
    }
    return stream;
  }

 private:
  int Random(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  void Put(std::vector<bool>& to, int value, int count) {
    for (int bit = count - 1; bit >= 0; --bit) to.push_back((value >> bit & 1) != 0);
  }

  std::string Header() {
    const int versionBits[3] = {3, 2, 0};
    const int bitRateIndex = Random(12, 14);
    return {char(0xff), char(0xe0 | versionBits[kind_.version] << 3 | 1 << 1 | !kind_.isProtected),
            char(bitRateIndex << 4 | kind_.rateIndex << 2 | Random(0, 1) << 1),
            char(kind_.mode << 6 | kind_.modeExtension << 4)};
  }

  void Append(std::string& stream, const std::string& header, int room) {
    stream += header;
    for (std::size_t i = 0; i < bits_.size(); i += 8) {
      int byte = 0;
      for (std::size_t k = i; k < i + 8; ++k) byte = byte * 2 + (k < bits_.size() && bits_[k]);
      stream += char(byte);
    }
    rooms_.emplace_back(stream.size(), room);
    stream.append(std::size_t(room), '\0');
  }

  void MakeFrame(const LMP3Header& header, int roomBits, int begin) {
    const bool isLow = header.IsLowRate();
    const int channels = header.Channels(), parts = channels * header.Granules();
    Put(bits_, begin, isLow ? 8 : 9);
    Put(bits_, 0, isLow ? channels : channels == 1 ? 5 : 3);
    data_.clear();
    const int kind = BlockKind();
    int shares[2] = {};
    for (int channel = 0; channel < channels && !isLow; ++channel)
      Put(bits_, shares[channel] = (kind & 3) == 2 ? 0 : Random(0, 15), 4);
    for (int granule = 0; granule < header.Granules(); ++granule)
      for (int channel = 0; channel < channels; ++channel)
        MakeGranule(header, channel, kind, granule == 1 ? shares[channel] : 0, std::min(4000, roomBits / parts - 8));
  }

  // Of all granules of a frame, as intensity wants: 0 to 3, + 4 with the lowest subbands left out.
  int BlockKind() {
    constexpr int kKinds[] = {0, 0, 0, 1, 2, 2, 3, 5, 6, 6, 7};
    return kKinds[Random(0, 10)];
  }

  void MakeGranule(const LMP3Header& header, int channel, int kind, int shares, int roomBits) {
    const bool isLow = header.IsLowRate(), isRight = channel == 1 && header.HasIntensity();
    const int type = kind & 3;
    // Decoders do not agree on mixed blocks below 16 kHz, and at the lower rates together with intensity.
    const bool isMixed = kind > 3 && header.version < 2 && !(isLow && header.HasIntensity());
    std::vector<bool> data;
    const int compress = isLow ? Random(0, 511) : Random(0, 15);
    PutScaleFactors(data, header, compress, type, isMixed, isRight, shares);

    int tables[3], ends[3];
    for (int& table : tables) do
        table = Random(0, 31);
      while (!LMP3HuffmanTables::IsInUse(table));
    const int first = Random(0, 15), second = Random(0, 7);
    const short* const starts = LMP3BandTables::sfb_start_long[header.BandTable()];
    int bigValues = 2 * Random(0, isRight ? 20 : 140);
    ends[0] = type == 0   ? starts[std::min(22, first + 1)]
              : type == 2 ? LMP3BandTables::MixedLongLines(header.BandTable())
                          : starts[8];
    ends[1] = type == 0 ? starts[std::min(22, first + second + 2)] : 576;
    ends[2] = 576;
    int largest = 1, line = 0;
    for (int region = 0; region < 3; ++region)
      for (; line < std::min(bigValues, ends[region]); line += 2) {
        if (int(data.size()) > roomBits - 140) {
          bigValues = line;
          break;
        }
        largest = std::max(largest, PutPair(data, tables[region]));
      }
    const int quadTable = Random(0, 1);
    for (int quads = Random(0, 30); quads > 0 && line <= 572 && int(data.size()) < roomBits - 20; --quads, line += 4)
      PutQuad(data, quadTable);

    Put(bits_, int(data.size()), 12);
    Put(bits_, bigValues / 2, 9);
    const double loudest = std::pow(largest, 4.0 / 3);
    Put(bits_, std::clamp(int(210 + 4 * std::log2(0.05 / loudest)) + Random(0, 6), 0, 255), 8);
    Put(bits_, compress, isLow ? 9 : 4);
    Put(bits_, type != 0, 1);
    if (type != 0) {
      Put(bits_, type << 1 | isMixed, 3);
      for (int region = 0; region < 2; ++region) Put(bits_, tables[region], 5);
      for (int window = 0; window < 3; ++window) Put(bits_, Random(0, 3), 3);
    } else {
      for (const int table : tables) Put(bits_, table, 5);
      Put(bits_, first << 3 | second, 7);
    }
    if (!isLow) Put(bits_, Random(0, 1), 1);
    Put(bits_, Random(0, 1) << 1 | quadTable, 2);
    data_.insert(data_.end(), data.begin(), data.end());
  }

  void PutScaleFactors(std::vector<bool>& data, const LMP3Header& header, int compress, int type, bool isMixed,
                       bool isRight, int shares) {
    using namespace LMP3BandTables;
    const bool isShort = type == 2;
    const auto put = [&](int length, int count) {
      // Decoders do not agree on which positions of intensity are none.
      const int most = (1 << length) - 1;
      for (; count > 0; --count) Put(data, Random(0, isRight ? std::clamp(most - 1, 0, 6) : most), length);
    };
    if (!header.IsLowRate()) {
      const int one = slen1_table[compress], two = slen2_table[compress];
      if (isShort) {
        put(one, isMixed ? 8 + 9 : 18);
        put(two, 18);
        return;
      }
      const int counts[4] = {6, 5, 5, 5};
      for (int group = 0; group < 4; ++group)
        if (!(shares >> (3 - group) & 1)) put(group < 2 ? one : two, counts[group]);
      return;
    }
    const int half = compress / 2, upper = compress / 16;
    int lengths[4] = {upper / 5, upper % 5, compress / 4 % 4, compress % 4}, row = 0;
    const auto set = [&](int a, int b, int c, int newRow) {
      const int all[4] = {a, b, c, 0};
      std::copy_n(all, 4, lengths);
      row = newRow;
    };
    if (isRight && half < 180)
      set(half / 36, half / 6 % 6, half % 6, 3);
    else if (isRight && half < 244)
      set((half - 180) / 16, (half - 180) / 4 % 4, (half - 180) % 4, 4);
    else if (isRight)
      set((half - 244) / 3, (half - 244) % 3, 0, 5);
    else if (compress >= 500)
      set((compress - 500) / 3, (compress - 500) % 3, 0, 2);
    else if (compress >= 400)
      set((compress - 400) / 20, (compress - 400) / 4 % 5, compress % 4, 1);
    for (int part = 0; part < 4; ++part) put(lengths[part], sfb_nr_table[row][isShort ? (isMixed ? 2 : 1) : 0][part]);
  }

  // The word of a value: as long codes are complete, words follow from the lengths of those before.
  void PutWord(std::vector<bool>& data, std::span<const std::uint16_t> code, int value) {
    std::uint64_t word = 0;
    for (const std::uint16_t figure : code) {
      if ((figure & 255) == value) return Put(data, int(word >> (32 - (figure >> 8))), figure >> 8);
      word += std::uint64_t{1} << (32 - (figure >> 8));
    }
  }

  int PutPair(std::vector<bool>& data, int table) {
    const LMP3HuffmanTables::PairTable figures = LMP3HuffmanTables::Pairs(table);
    if (figures.code.empty()) return 0;
    // Any entry of the code, so that rare words come as often as others.
    const int value = figures.code[std::size_t(Random(0, int(figures.code.size()) - 1))] & 255;
    PutWord(data, figures.code, value);
    int largest = 0;
    for (const int part : {value >> 4, value & 15}) {
      int whole = part;
      if (figures.linbits > 0 && part == LMP3HuffmanTables::kMaxValue) {
        const int more = Random(0, (1 << figures.linbits) - 1);
        Put(data, more, figures.linbits);
        whole += more;
      }
      if (whole > 0) Put(data, Random(0, 1), 1);
      largest = std::max(largest, whole);
    }
    return largest;
  }

  void PutQuad(std::vector<bool>& data, int table) {
    const int value = Random(0, 15);
    PutWord(data, LMP3HuffmanTables::Quads(table), value);
    for (int line = 0; line < 4; ++line)
      if ((value >> line & 1) != 0) Put(data, Random(0, 1), 1);
  }

  LMP3StreamKind kind_;
  std::mt19937 random_;
  std::vector<bool> bits_, data_;
  std::string main_;
  std::vector<std::pair<std::size_t, int>> rooms_;
};
