#include "audiofile/tags/LFlacTags.h"

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LVorbisComment.h"

namespace {

constexpr LVorbisName kNames[] = {
    {"DISCNUMBER", "DISKNUMBER"}, {"DATE", "YEAR"}, {"DATE-EXT", "DATE"}, {"PUBLISHER", "PRODUCER"}};

constexpr struct {
  const char *type, *extension;
} kPictures[] = {{"image/jpeg", ".jpg"}, {"image/png", ".png"}, {"image/bmp", ".bmp"}};

// A length of 32 bits and as many bytes; goes on behind them.
LTagBlock NextBytes(const LTagBlock& block, std::int64_t& at) {
  unsigned char length[4];
  if (!block.Get(length, sizeof length, at)) return {};
  at += std::int64_t{sizeof length};
  const LTagBlock bytes = block.Has(at, GetBe32(length)) ? block.Part(at, GetBe32(length)) : LTagBlock();
  at += GetBe32(length);
  return bytes;
}

// Kind, type, description, four numbers about the picture, the picture.
void AddPicture(LAudioTagData& tags, const LTagBlock& block) {
  std::int64_t at = 4;
  const std::string type = NextBytes(block, at).Read();
  NextBytes(block, at);
  at += 4 * 4;
  const LTagBlock picture = NextBytes(block, at);
  for (const auto& row : kPictures)
    if (type == row.type) tags.AddPicture(picture, row.extension);
}

}  // namespace

std::optional<std::int64_t> GetFlacAudioLength(const LTagBlock& streamInfo) {
  constexpr int kRateAt = 10;  // 20 bits of rate, 8 of channels and width, 36 of frames
  unsigned char at[8];
  if (!streamInfo.Get(at, sizeof at, kRateAt)) return std::nullopt;
  const std::uint32_t rate = GetBe32(at) >> 12;
  const std::int64_t frames = std::int64_t{at[3] & 15} << 32 | GetBe32(at + 4);
  if (rate == 0 || frames == 0) return std::nullopt;
  return frames * 1000 / rate;
}

bool ReadTagsFLAC(LAudioTagData& tags, const LTagBlock& file) {
  enum BlockType { StreamInfo = 0, VorbisComment = 4, Picture = 6 };
  constexpr int kHeaderBytes = 4;
  unsigned char header[kHeaderBytes];
  if (!file.Get(header, sizeof header, 0) || !IsId(header, "fLaC")) return false;
  std::int64_t at = kHeaderBytes;
  bool found = false, intact = true;
  for (int piece = 0; piece < LTagBlock::kMaxPieces; ++piece) {
    if (!file.Get(header, sizeof header, at)) return false;
    const bool last = header[0] & 0x80;
    const int type = header[0] & 0x7F;
    const std::int64_t bytes = GetBe32(header) & 0xFFFFFF;
    at += kHeaderBytes;
    if (!file.Has(at, bytes)) return false;
    const LTagBlock block = file.Part(at, bytes);
    at += bytes;
    if (type == StreamInfo) {
      if (const auto lengthMs = GetFlacAudioLength(block)) tags.SetNumber("LENGTH", *lengthMs, true);
      found = true;
    } else if (type == VorbisComment) {
      intact = ReadVorbisComment(tags, block, kNames) && intact;
      found = true;
    } else if (type == Picture && tags.WantsPicture()) {
      AddPicture(tags, block);
    }
    if (last) return found && intact;
  }
  return false;
}
