#include "audiofile/LAifHeader.h"

#include <algorithm>
#include <bit>

#include "audiofile/LChunkReader.h"
#include "audiofile/LPCMLimits.h"

namespace {

constexpr std::uint32_t kCommonBytes = 18;      // channels, frames, bits, rate
constexpr std::uint32_t kMaxCommonBytes = 282;  // with a compression type and the longest name
constexpr int kSampleBitsAifc = 16;             // what the samples are once expanded

}  // namespace

LSoundError AIFFOpenHeader(LPCMData& data, LAifFormat& format) {
  unsigned char form[12];
  if (data.file.ReadAt(form, sizeof form, 0) != sizeof form || !IsId(form, "FORM")) return lseDamaged;
  const bool compressed = IsId(form + 8, "AIFC");
  if (!compressed && !IsId(form + 8, "AIFF")) return lseDamaged;

  LChunkReader chunks(data.file, LChunkReader::Big, sizeof form);
  const auto common = chunks.Find("COMM");
  if (!common || (compressed && common->length > kMaxCommonBytes)) return lseDamaged;
  unsigned char bytes[kMaxCommonBytes] = {};
  const std::uint32_t wanted = compressed ? common->length : std::min(common->length, kCommonBytes);
  if (data.file.ReadAt(bytes, wanted, common->start) < std::int64_t{kCommonBytes}) return lseDamaged;
  if (compressed) std::memcpy(format.compression, bytes + kCommonBytes, 4);
  format.bits = GetBe16(bytes + 6);

  const auto sound = chunks.Find("SSND");
  const std::int64_t rate = RateFromExtended(bytes + 8);
  if (!sound || !IsPlayableFormat(rate, GetBe16(bytes))) return lseDamaged;
  data.rate = int(rate);
  data.channels = static_cast<unsigned char>(GetBe16(bytes));
  data.start = sound->start + 8;  // behind offset and block size, which nobody uses
  data.length = sound->length < 8 ? 0 : sound->length - 8;
  return lseNone;
}

// Mantissa and exponent are enough for whole rates below 2^31; the last bit shifted out rounds up.
std::int64_t RateFromExtended(const unsigned char* tenBytes) {
  const std::uint64_t mantissa = GetBe32(tenBytes + 2);
  const unsigned shift = (30u - tenBytes[1]) & 255;
  if (shift == 0) return std::int64_t(mantissa);
  if (shift >= 32) return 0;
  return std::int64_t((mantissa >> shift) + (mantissa >> (shift - 1) & 1));
}

void WriteRateAsExtended(LHeaderBytes& header, std::uint32_t rate) {
  const int topBit = int(std::bit_width(rate)) - 1;
  header.Byte(0x40).Byte(unsigned(topBit - 1)).Be32(std::uint32_t(std::uint64_t{rate} << (31 - topBit))).Be32(0);
}

LHeaderBytes WriteHeaderAIFF(const LSinkHeader& about, int bits) {
  LHeaderBytes header;
  header.Text("FORM").Be32(about.DataBytes() + 46).Text("AIFF");
  header.Text("COMM").Be32(18).Be16(about.channels).Be32(std::uint32_t(about.frames)).Be16(unsigned(bits));
  WriteRateAsExtended(header, std::uint32_t(about.rate));
  header.Text("SSND").Be32(about.final ? about.DataBytes() + 8 : kGrowingSoundLength).Be32(0).Be32(0);
  return header;
}

LHeaderBytes WriteHeaderAIFC(const LSinkHeader& about, AIFFFormatType type) {
  const std::string_view name = AIFFCompressionName[type];
  const std::uint32_t nameBytes = std::uint32_t(name.size() + 2) & ~1u;  // with its length, even
  const std::uint32_t soundBytes = about.DataBytes() + (about.DataBytes() & 1) + 8;
  LHeaderBytes header;
  // The form size counts four bytes more than follow.
  header.Text("FORM").Be32(22 + nameBytes + soundBytes + 36).Text("AIFC");
  header.Text("FVER").Be32(4).Be32(kAifcVersion);
  header.Text("COMM").Be32(22 + nameBytes).Be16(about.channels).Be32(std::uint32_t(about.frames));
  header.Be16(kSampleBitsAifc);
  WriteRateAsExtended(header, std::uint32_t(about.rate));
  header.Text(AIFFCompressionType[type]).Byte(unsigned(name.size())).Text(name);
  if (name.size() % 2 == 0) header.Byte(0);
  header.Text("SSND").Be32(soundBytes).Be32(0).Be32(0);
  return header;
}
