#include "audiofile/LIMAFile.h"

#include "audiofile/LDecodedSource.h"
#include "audiofile/LHeaderBytes.h"

namespace {

constexpr int kSteps = 89;
constexpr int kStepWidths[kSteps] = {
    7,    8,     9,     10,    11,    12,    13,    14,    16,    17,    19,    21,    23,    25,   28,
    31,   34,    37,    41,    45,    50,    55,    60,    66,    73,    80,    88,    97,    107,  118,
    130,  143,   157,   173,   190,   209,   230,   253,   279,   307,   337,   371,   408,   449,  494,
    544,  598,   658,   724,   796,   876,   963,   1060,  1166,  1282,  1411,  1552,  1707,  1878, 2066,
    2272, 2499,  2749,  3024,  3327,  3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845, 8630,
    9493, 10442, 11487, 12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
constexpr int kStepChange[8] = {-1, -1, -1, -1, 2, 4, 6, 8};  // by magnitude

constexpr int kStartBytes = 4;                    // a channel, at the beginning of a block
constexpr int kGroupBytes = 4, kGroupFrames = 8;  // a channel

struct Channel {
  int value, step;

  explicit Channel(const unsigned char* start)
      : value(std::int16_t(GetLe16(start))), step(std::min<int>(start[2], kSteps - 1)) {}
  int Decode(int code) {
    const int width = kStepWidths[step], magnitude = code & 7;
    int difference = width >> 3;
    if (magnitude & 4) difference += width;
    if (magnitude & 2) difference += width >> 1;
    if (magnitude & 1) difference += width >> 2;
    value = std::clamp(code & 8 ? value - difference : value + difference, -32768, 32767);
    step = std::clamp(step + kStepChange[magnitude], 0, kSteps - 1);
    return value * 16;
  }
};

int FramesIn(std::int64_t blockBytes, int channels) {
  const std::int64_t start = std::int64_t{kStartBytes} * channels;
  return blockBytes < start ? 0 : int(1 + (blockBytes - start) / (kGroupBytes * channels) * kGroupFrames);
}

std::int64_t FramesIn(const LPCMData& data, int blockAlign) {
  const std::int64_t bytes = data.HasUnknownLength() ? data.BytesInFile() : data.length;
  const std::int64_t frames =
      bytes / blockAlign * FramesIn(blockAlign, data.channels) + FramesIn(bytes % blockAlign, data.channels);
  return data.frames > 0 ? std::min<std::int64_t>(frames, data.frames) : frames;
}

class LIMAWaveSource final : public LBlockSource {
 public:
  LIMAWaveSource(LPCMData&& data, int blockAlign, std::int64_t frames)
      : LBlockSource(std::move(data), kPeak16, blockAlign, FramesIn(blockAlign, data.channels), frames),
        blockFrames_(FramesIn(blockAlign, GetChannels())) {}

 private:
  void DecodeBlock(int* out, int /*block*/, const unsigned char* bytes, int size) override {
    const int channels = GetChannels();
    const int frames = FramesIn(size, channels);
    for (int channel = 0; channel < channels && frames > 0; ++channel)
      DecodeChannel(out + channel, bytes + std::ptrdiff_t{kStartBytes} * channel, frames);
    std::fill_n(out + std::ptrdiff_t{frames} * channels, std::ptrdiff_t{blockFrames_ - frames} * channels, 0);
  }

  void DecodeChannel(int* out, const unsigned char* start, int frames) const {
    const std::ptrdiff_t channels = GetChannels();
    Channel channel(start);
    *out = channel.value * 16;
    const unsigned char* group = start;
    for (int frame = 1; frame < frames; frame += kGroupFrames) {
      group += kGroupBytes * channels;
      for (int i = 0; i < kGroupFrames; ++i) *(out += channels) = channel.Decode(group[i / 2] >> (i % 2 * 4) & 15);
    }
  }

  int blockFrames_;
};

}  // namespace

LSoundSource LIMAWaveOpenSource(LPCMData&& data, int blockAlign) {
  const int smallest = kStartBytes * data.channels;
  if (blockAlign < smallest) return LSoundSource(lseDamaged);
  const std::int64_t frames = FramesIn(data, blockAlign);
  // Of a file that is shorter than one block there is no more to keep than it has.
  const int kept = int(std::clamp<std::int64_t>(data.BytesInFile(), smallest, blockAlign));
  return LSoundSource::Make<LIMAWaveSource>(std::move(data), kept, frames);
}
