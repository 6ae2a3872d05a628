#include "audiofile/tags/LMP4Tags.h"

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LTagGenres.h"
#include "audiofile/tags/LTagText.h"

namespace {

constexpr int kNameBytes = 4;

// visit(name, content) tells whether to go on. A size of 1 announces 64 bits, one of 0 the rest of the parent.
template <class Visit>
void WalkAtoms(const LTagBlock& parent, Visit visit) {
  constexpr int kHeaderBytes = 8, kLongHeaderBytes = 16;
  std::int64_t at = 0;
  for (int piece = 0; piece < LTagBlock::kMaxPieces; ++piece) {
    unsigned char header[kLongHeaderBytes];
    if (!parent.Get(header, kHeaderBytes, at)) return;
    std::uint64_t bytes = GetBe32(header);
    const int headerBytes = bytes == 1 ? kLongHeaderBytes : kHeaderBytes;
    if (bytes == 1) {
      if (!parent.Get(header, kLongHeaderBytes, at)) return;
      bytes = std::uint64_t{GetBe32(header + 8)} << 32 | GetBe32(header + 12);
    } else if (bytes == 0) {
      bytes = std::uint64_t(parent.GetSize() - at);
    }
    if (bytes < std::uint64_t(headerBytes) || bytes > std::uint64_t(parent.GetSize() - at)) return;
    const std::string_view name(reinterpret_cast<const char*>(header) + 4, kNameBytes);
    if (!visit(name, parent.Part(at + headerBytes, std::int64_t(bytes) - headerBytes))) return;
    at += std::int64_t(bytes);
  }
}

enum DataType : std::uint32_t { dtUtf8 = 1, dtUtf16 = 2, dtPng = 14 };

struct ItemRow {
  const char *atom, *field;
  void (*add)(LAudioTagData& tags, const char* field, std::uint32_t type, const LTagBlock& value);
};

void AddText(LAudioTagData& tags, const char* field, std::uint32_t type, const LTagBlock& value) {
  const std::string bytes = value.Read();
  std::string text;
  if (type == dtUtf16) {
    ReadID3String(text, lieUtf16BigEndian, bytes);
  } else {
    text = TextToUtf8(bytes);
  }
  tags.SetTag(field, text, false);
}

std::optional<int> GetNumber16(const LTagBlock& value, std::int64_t at) {
  unsigned char bytes[2];
  if (!value.Get(bytes, sizeof bytes, at)) return std::nullopt;
  return GetBe16(bytes);
}

// A number of how many: two bytes of nothing, then both with two bytes each.
void AddPlace(LAudioTagData& tags, const char* field, std::uint32_t, const LTagBlock& value) {
  const auto number = GetNumber16(value, 2);
  if (number && *number > 0) tags.SetNumber(field, *number, false);
}

void AddGenre(LAudioTagData& tags, const char* field, std::uint32_t, const LTagBlock& value) {
  tags.SetTag(field, GenreName(GetNumber16(value, 0).value_or(0) - 1), false);
}

// Big-endian, as many bytes as the writer liked.
void AddNumber(LAudioTagData& tags, const char* field, std::uint32_t, const LTagBlock& value) {
  constexpr std::int64_t kMaxBytes = 4;
  if (value.GetSize() < 1 || value.GetSize() > kMaxBytes) return;
  long long number = 0;
  for (const char byte : value.Read()) number = number << 8 | static_cast<unsigned char>(byte);
  tags.SetNumber(field, number, false);
}

void AddCover(LAudioTagData& tags, const char*, std::uint32_t type, const LTagBlock& value) {
  tags.AddPicture(value, type == dtPng ? ".png" : ".jpg");
}

// A name's first letter is the copyright sign of Latin-1 and MacRoman alike.
constexpr ItemRow kItems[] = {
    {"\251nam", "TITLE", AddText},   {"\251ART", "ARTIST", AddText},    {"aART", "ALBUMARTIST", AddText},
    {"\251alb", "ALBUM", AddText},   {"\251wrt", "COMPOSER", AddText},  {"\251grp", "CATEGORY", AddText},
    {"\251day", "YEAR", AddText},    {"\251cmt", "COMMENT", AddText},   {"\251gen", "GENRE", AddText},
    {"\251too", "ENCODER", AddText}, {"\251enc", "ENCODEDBY", AddText}, {"catg", "CATEGORY", AddText},
    {"cprt", "COPYRIGHT", AddText},  {"trkn", "TRACKNUMBER", AddPlace}, {"disk", "DISKNUMBER", AddPlace},
    {"gnre", "GENRE", AddGenre},     {"tmpo", "BPM", AddNumber},        {"rtng", "RATING", AddNumber},
    {"covr", "IMAGE", AddCover},
};

const ItemRow* FindItem(std::string_view atom) {
  for (const ItemRow& row : kItems)
    if (atom == row.atom) return &row;
  return nullptr;
}

// An item's value stands in an atom of its own, behind the type and a language.
bool AddItem(LAudioTagData& tags, std::string_view atom, const LTagBlock& item) {
  constexpr int kValueAt = 8;
  const ItemRow* row = FindItem(atom);
  const auto data = row ? FindM4AAtom("data", item) : std::nullopt;
  unsigned char type[4];
  if (data && data->GetSize() >= kValueAt && data->Get(type, sizeof type, 0))
    row->add(tags, row->field, GetBe32(type) & 0xFFFFFF, data->Part(kValueAt));
  return true;
}

// Four bytes of version stand in front of its atoms; some writers leave them out.
LTagBlock ContentOfMeta(const LTagBlock& meta) {
  constexpr int kVersionBytes = 4;
  unsigned char start[8];
  const bool bare = meta.Get(start, sizeof start, 0) && IsId(start + 4, "hdlr");
  return bare ? meta : meta.Part(kVersionBytes);
}

}  // namespace

std::optional<LTagBlock> FindM4AAtom(std::string_view name, const LTagBlock& parent) {
  std::optional<LTagBlock> found;
  WalkAtoms(parent, [&](std::string_view atom, const LTagBlock& content) {
    if (atom == name) found = content;
    return !found;
  });
  return found;
}

std::string_view MapiTunesTagToHashTag(std::string_view atom) {
  const ItemRow* row = FindItem(atom);
  return row && row->add == AddText ? row->field : std::string_view();
}

bool ReadTagsM4A(LAudioTagData& tags, const LTagBlock& file) {
  unsigned char start[8];
  if (!file.Get(start, sizeof start, 0) || !IsId(start + 4, "ftyp")) return false;
  std::optional<LTagBlock> atom = FindM4AAtom("moov", file);
  if (atom) atom = FindM4AAtom("udta", *atom);
  if (atom) atom = FindM4AAtom("meta", *atom);
  if (atom) atom = FindM4AAtom("ilst", ContentOfMeta(*atom));
  if (!atom) return false;
  WalkAtoms(*atom, [&](std::string_view name, const LTagBlock& item) { return AddItem(tags, name, item); });
  return true;
}
