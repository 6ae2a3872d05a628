#include "audiofile/LWaveHeader.h"

#include "audiofile/LChunkReader.h"
#include "audiofile/LPCMLimits.h"

namespace {

constexpr int kMaxChunksBeforeRiff = 64;
constexpr std::uint32_t kMinFormatBytes = 16, kMaxFormatBytes = 8192;
constexpr std::uint32_t kExtensibleBytes = 40;  // with the 22 bytes behind the extra size
constexpr int kExtraSizeOffset = 16, kSubFormatOffset = 24;

// A subtype is its tag and this tail (KSDATAFORMAT_SUBTYPE of the published headers).
constexpr unsigned char kSubFormatTail[14] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
constexpr std::uint16_t kSubTags[] = {lwtPcm, lwtAdpcm, lwtFloat, lwtALaw, lwtMuLaw};

// Where the chunks of the RIFF form begin; -1 if there is none. Other chunks may stand before it.
std::int64_t FindRiff(LFileHandle& file) {
  std::int64_t at = 0;
  for (int chunk = 0; chunk <= kMaxChunksBeforeRiff; ++chunk) {
    unsigned char header[12];
    if (file.ReadAt(header, sizeof header, at) != sizeof header) return -1;
    if (IsId(header, "RIFF") && IsId(header + 8, "WAVE")) return at + 12;
    const std::int64_t length = GetLe32(header + 4);
    const std::int64_t rounded = length + (length & 1);
    if (rounded <= 4) return -1;
    at += 8 + rounded;
  }
  return -1;
}

std::uint16_t TagOf(const unsigned char* format, std::uint32_t length) {
  const std::uint16_t tag = GetLe16(format);
  if (tag != lwtExtensible || length < kExtensibleBytes || GetLe16(format + kExtraSizeOffset) < 22) return tag;
  if (std::memcmp(format + kSubFormatOffset + 2, kSubFormatTail, sizeof kSubFormatTail) != 0) return tag;
  for (const std::uint16_t known : kSubTags)
    if (GetLe16(format + kSubFormatOffset) == known) return known;
  return tag;
}

// The format chunk; `chunks` stands behind it then.
bool ReadFormat(LFileHandle& file, LChunkReader& chunks, LWaveFormatEx& format) {
  const auto fmt = chunks.Find("fmt ");
  if (!fmt || fmt->length < kMinFormatBytes || fmt->length > kMaxFormatBytes) return false;
  unsigned char bytes[kMaxFormatBytes];
  if (file.ReadAt(bytes, fmt->length, fmt->start) != std::int64_t{fmt->length}) return false;
  format = {TagOf(bytes, fmt->length), GetLe16(bytes + 2),  GetLe32(bytes + 4),
            GetLe32(bytes + 8),        GetLe16(bytes + 12), GetLe16(bytes + 14)};
  return true;
}

// The number of frames that a "fact" chunk between format and data tells; 0 if there is none.
std::uint32_t ReadFact(LFileHandle& file, LChunkReader chunks, std::int64_t dataStart) {
  const auto fact = chunks.Find("fact");
  unsigned char frames[4];
  if (!fact || fact->start > dataStart || file.ReadAt(frames, sizeof frames, fact->start) != sizeof frames) return 0;
  return GetLe32(frames);
}

}  // namespace

bool LWaveFormatEx::Load(const std::string& path, LWaveFormatEx& format) {
  LFileHandle file = LFileHandle::OpenRead(path);
  const std::int64_t first = file.IsOpen() ? FindRiff(file) : -1;
  if (first < 0) return false;
  LChunkReader chunks(file, LChunkReader::Little, first);
  return ReadFormat(file, chunks, format);
}

LSoundError ReadWaveHeader(LPCMData& data, LWaveFormatEx& format) {
  const std::int64_t first = FindRiff(data.file);
  if (first < 0) return lseDamaged;
  LChunkReader chunks(data.file, LChunkReader::Little, first);
  if (!ReadFormat(data.file, chunks, format)) return lseDamaged;
  const LChunkReader behindFormat = chunks;
  const auto samples = chunks.Find("data");
  if (!samples || !IsPlayableFormat(format.rate, format.channels)) return lseDamaged;
  data.start = samples->start;
  data.length = samples->length;
  data.rate = int(format.rate);
  data.channels = static_cast<unsigned char>(format.channels);
  if (format.tag == lwtImaAdpcm || format.tag == lwtGsm) data.frames = ReadFact(data.file, behindFormat, data.start);
  return lseNone;
}

LHeaderBytes WriteHeaderWave(const LSinkHeader& about, LWaveTag tag) {
  const unsigned bits = unsigned(about.SampleBits());
  const unsigned rate = unsigned(about.rate);
  LHeaderBytes header;
  header.Text("RIFF").Le32(about.final ? about.DataBytes() + 38 : kGrowingRiffLength).Text("WAVE");
  header.Text("fmt ").Le32(18).Le16(tag).Le16(about.channels).Le32(rate);
  header.Le32(rate * about.channels * bits / 8).Le16(unsigned(about.frameBytes)).Le16(bits).Le16(0);
  header.Text("data").Le32(about.final ? about.DataBytes() : kGrowingDataLength);
  return header;
}

// Byte rate and block align are those of one channel of 8 bits, and 8, as readers of these files expect.
LHeaderBytes WriteHeaderWaveG711(const LSinkHeader& about, LWaveTag tag) {
  LHeaderBytes header;
  header.Text("RIFF").Le32(about.DataBytes() + 50).Text("WAVE");
  header.Text("fmt ").Le32(18).Le16(tag).Le16(about.channels).Le32(unsigned(about.rate));
  header.Le32(unsigned(about.rate)).Le16(8).Le16(8).Le16(0);
  header.Text("fact").Le32(4).Le32(std::uint32_t(about.frames));
  header.Text("data").Le32(about.DataBytes());
  return header;
}

LHeaderBytes WriteHeaderWaveGSM(int rate, std::uint32_t frames, std::uint32_t dataBytes) {
  constexpr unsigned kBlockBytes = 65, kBlockFrames = 320;
  LHeaderBytes header;
  header.Text("RIFF").Le32(dataBytes + (dataBytes & 1) + kGsmWaveHeaderBytes - 8).Text("WAVE");
  header.Text("fmt ").Le32(20).Le16(lwtGsm).Le16(1).Le32(unsigned(rate));
  header.Le32(unsigned(rate) * kBlockBytes / kBlockFrames).Le16(kBlockBytes).Le16(0).Le16(2).Le16(kBlockFrames);
  header.Text("fact").Le32(4).Le32(frames).Text("data").Le32(dataBytes);
  return header;
}
