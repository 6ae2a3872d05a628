#include "audiofile/tags/LVorbisComment.h"

#include <algorithm>
#include <optional>

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LTagText.h"

namespace {

// A length of 32 bits and as many bytes; goes on behind them.
std::optional<LTagBlock> NextText(const LTagBlock& block, std::int64_t& at) {
  unsigned char length[4];
  if (!block.Get(length, sizeof length, at)) return std::nullopt;
  const std::int64_t bytes = GetLe32(length), start = at + std::int64_t{sizeof length};
  if (!block.Has(start, bytes)) return std::nullopt;
  at = start + bytes;
  return block.Part(start, bytes);
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = char(c - ('a' - 'A'));
  return upper;
}

// Fields of which a file's text must not tell: paths and lengths are ours, and pictures in letters are no text.
bool IsRefused(std::string_view name) {
  for (const char* const refused : {"", "IMAGE", "LENGTH", "METADATA_BLOCK_PICTURE", "COVERART"})
    if (name == refused) return true;
  return false;
}

void AddComment(LAudioTagData& tags, const std::string& comment, std::span<const LVorbisName> names) {
  const std::size_t equals = comment.find('=');
  if (equals == std::string::npos) return;
  std::string name = UpperCase(TextToUtf8(std::string_view(comment).substr(0, equals)));
  if (IsRefused(name)) return;
  const auto row = std::find_if(names.begin(), names.end(), [&](const LVorbisName& r) { return r.name == name; });
  if (row != names.end()) name = row->field;
  tags.SetTag(name, TextToUtf8(std::string_view(comment).substr(equals + 1)), true);
}

}  // namespace

bool ReadVorbisComment(LAudioTagData& tags, const LTagBlock& block, std::span<const LVorbisName> names) {
  std::int64_t at = 0;
  const auto vendor = NextText(block, at);
  unsigned char count[4];
  if (!vendor) return false;
  tags.SetTag("COMMENT", TextToUtf8(vendor->Read()), true);
  if (!block.Get(count, sizeof count, at)) return false;
  at += std::int64_t{sizeof count};
  for (std::uint32_t left = GetLe32(count), piece = 0; left > 0; --left, ++piece) {
    const auto comment = NextText(block, at);
    if (!comment || piece == LTagBlock::kMaxPieces) return false;
    AddComment(tags, comment->Read(), names);
  }
  return true;
}
