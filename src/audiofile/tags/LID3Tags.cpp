#include "audiofile/tags/LID3Tags.h"

#include <algorithm>

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LTagGenres.h"
#include "audiofile/tags/LTagText.h"
#include "foundation/LText.h"

namespace {

enum TagFlag : unsigned char { tfUnsynchronised = 0x80, tfExtendedHeader = 0x40, tfCompressed2 = 0x40 };

struct ID3v2Tag {
  int minor;  // 2, 3 or 4
  unsigned char flags;
  LTagBlock frames;
};

struct ID3v2Frame {
  std::string id;
  LTagBlock content;
  std::int64_t end = 0;         // in the tag
  int extraBytes = 0;           // in front of the content
  bool unsynchronised = false;  // this frame alone
  bool readable = true;         // neither compressed nor encrypted
};

// Seven bits a byte, so that no length looks like the start of a sound frame.
std::uint32_t GetSynchsafe(const unsigned char* at) {
  return (at[0] & 0x7Fu) << 21 | (at[1] & 0x7Fu) << 14 | (at[2] & 0x7Fu) << 7 | (at[3] & 0x7Fu);
}

// Unsynchronisation puts a zero behind every 0xFF.
std::string Resynchronised(const std::string& bytes) {
  std::string plain;
  plain.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    plain += bytes[i];
    if (bytes[i] == '\xFF' && i + 1 < bytes.size() && bytes[i + 1] == 0) ++i;
  }
  return plain;
}

// ---- What each frame holds ----

using AddFrame = void (*)(LAudioTagData& tags, const char* field, std::string_view content, int minor);

std::string_view From(std::string_view text, std::size_t at) { return text.substr(std::min(at, text.size())); }
unsigned char First(std::string_view text) { return text.empty() ? 0 : static_cast<unsigned char>(text[0]); }

std::string GenericText(std::string_view content) {
  std::string text;
  ReadID3String(text, First(content), From(content, 1));
  return text;
}

void AddTagID3v2_GenericTBlock(LAudioTagData& tags, const char* field, std::string_view content, int) {
  tags.SetTag(field, GenericText(content), false);
}

void AddYear(LAudioTagData& tags, const char* field, std::string_view content, int) {
  tags.SetTag(field, LText::CutUtf8(GenericText(content), 4), false);
}

// "(17)" is a number of the table, anything else a genre's name.
void AddGenre(LAudioTagData& tags, const char* field, std::string_view content, int) {
  const std::string text = GenericText(content);
  std::string_view genre = LText::Trim(text);
  if (genre.size() > 2 && genre.front() == '(' && genre.back() == ')') {
    const std::string_view name = GenreName(LText::ToInt(genre.substr(1, genre.size() - 2)).value_or(-1));
    if (!name.empty()) genre = name;
  }
  tags.SetTag(field, genre, false);
}

// Encoding, language of three letters, description, text. One program keeps numbers of its own in comments.
void AddComment(LAudioTagData& tags, const char* field, std::string_view content, int) {
  constexpr std::size_t kTextAt = 4;
  std::string description, text;
  const std::size_t used = ReadID3String(description, First(content), From(content, kTextAt));
  for (const char* const number : {"iTunNORM", "iTunSMPB", "iTunes_CDDB_IDs", "iTunPGAP"})
    if (description == number) return;
  ReadID3String(text, First(content), From(content, kTextAt + used));
  tags.SetTag(field, text, false);
}

void AddRating(LAudioTagData& tags, const char* field, std::string_view content, int) {
  std::string mail;
  const std::string_view rest = From(content, ReadID3String(mail, lieLatin1, content));
  if (!rest.empty()) tags.SetNumber(field, First(rest), false);
}

void AddCounter(LAudioTagData& tags, const char* field, std::string_view content, int) {
  constexpr std::size_t kMaxBytes = 7;  // what a signed number of 64 bits surely holds
  if (content.empty() || content.size() > kMaxBytes) return;
  long long count = 0;
  for (const char byte : content) count = count << 8 | static_cast<unsigned char>(byte);
  tags.SetNumber(field, count, false);
}

void AddUserLink(LAudioTagData& tags, const char* field, std::string_view content, int) {
  std::string description, link;
  const std::size_t used = ReadID3String(description, First(content), From(content, 1));
  ReadID3String(link, lieLatin1, From(content, 1 + used));
  tags.SetTag(field, link, false);
}

// Encoding, format (a MIME type, or three letters in version 2), kind of picture, description, picture.
void AddPicture(LAudioTagData& tags, const char*, std::string_view content, int minor) {
  constexpr std::size_t kFormatLetters2 = 3;
  std::string format, description;
  const std::string_view rest = From(content, 1);
  std::size_t at = 1 + ReadID3String(format, lieLatin1, minor == 2 ? rest.substr(0, kFormatLetters2) : rest);
  at = (minor == 2 ? 1 + kFormatLetters2 : at) + 1;
  at += ReadID3String(description, First(content), From(content, at));
  if (format == "-->") return;  // only a link to a picture
  format = LText::LowerCase(format);
  const char* const extension = format.find("png") != std::string::npos   ? ".png"
                                : format.find("bmp") != std::string::npos ? ".bmp"
                                                                          : ".jpg";
  tags.AddPicture(LTagBlock(From(content, at)), extension);
}

struct FrameRow {
  const char* id2;  // in version 2
  const char* id;
  const char* field;
  AddFrame add;
};

constexpr FrameRow kFrames[] = {
    {"PIC", "APIC", "IMAGE", AddPicture},
    {"TT2", "TIT2", "TITLE", AddTagID3v2_GenericTBlock},
    {"TP1", "TPE1", "ARTIST", AddTagID3v2_GenericTBlock},
    {"TP2", "TPE2", "ALBUMARTIST", AddTagID3v2_GenericTBlock},
    {"TAL", "TALB", "ALBUM", AddTagID3v2_GenericTBlock},
    {"TRK", "TRCK", "TRACKNUMBER", AddTagID3v2_GenericTBlock},
    {"TPA", "TPOS", "DISKNUMBER", AddTagID3v2_GenericTBlock},
    {"TCO", "TCON", "GENRE", AddGenre},
    {"TLE", "TLEN", "LENGTH", AddTagID3v2_GenericTBlock},
    {"TBP", "TBPM", "BPM", AddTagID3v2_GenericTBlock},
    {"CNT", "PCNT", "PLAYCOUNT", AddCounter},
    {"TT1", "TIT1", "CATEGORY", AddTagID3v2_GenericTBlock},
    {"TYE", "TYER", "YEAR", AddTagID3v2_GenericTBlock},
    {"", "TDRC", "YEAR", AddYear},  // version 4: "2004-05-06T07:08:09", or a part of it
    {"TDA", "TDAT", "DATE", AddTagID3v2_GenericTBlock},
    {"TIM", "TIME", "TIME", AddTagID3v2_GenericTBlock},
    {"POP", "POPM", "RATING", AddRating},
    {"COM", "COMM", "COMMENT", AddComment},
    {"TPB", "TPUB", "PRODUCER", AddTagID3v2_GenericTBlock},
    {"TCR", "TCOP", "COPYRIGHT", AddTagID3v2_GenericTBlock},
    {"TSS", "TSSE", "ENCODER", AddTagID3v2_GenericTBlock},
    {"TEN", "TENC", "ENCODEDBY", AddTagID3v2_GenericTBlock},
    {"WXX", "WXXX", "URL", AddUserLink},
    {"TCM", "TCOM", "COMPOSER", AddTagID3v2_GenericTBlock},
};

const FrameRow* FindFrame(std::string_view id, const char* FrameRow::*column) {
  for (const FrameRow& row : kFrames)
    if (!id.empty() && id == row.*column) return &row;
  return nullptr;
}

// ---- The walk ----

// What stands between a frame's header and its content, by its second byte of flags.
void ApplyFrameFlags(ID3v2Frame& frame, int minor, unsigned flags) {
  const bool four = minor == 4;
  const unsigned grouped = four ? 0x40 : 0x20, withLength = four ? 0x01 : 0;
  frame.readable = (flags & (four ? 0x0Cu : 0xC0u)) == 0;  // compressed, encrypted
  frame.unsynchronised = four && (flags & 0x02);
  frame.extraBytes = (flags & grouped ? 1 : 0) + (flags & withLength ? 4 : 0);
}

// False: no frame fits in there.
bool GetID3v2FrameDescription(const ID3v2Tag& tag, std::int64_t at, ID3v2Frame& frame) {
  const bool two = tag.minor == 2;
  const int idBytes = two ? 3 : 4, headerBytes = two ? 6 : 10;
  unsigned char header[10] = {};
  if (!tag.frames.Get(header, std::size_t(headerBytes), at)) return false;
  frame = ID3v2Frame();
  frame.id.assign(reinterpret_cast<const char*>(header), std::size_t(idBytes));
  const std::uint32_t bytes = two              ? GetBe32(header + 2) & 0xFFFFFF
                              : tag.minor == 3 ? GetBe32(header + 4)
                                               : GetSynchsafe(header + 4);
  if (!tag.frames.Has(at + headerBytes, bytes)) return false;
  frame.content = tag.frames.Part(at + headerBytes, bytes);
  frame.end = at + headerBytes + bytes;
  if (!two) ApplyFrameFlags(frame, tag.minor, header[9]);
  if (tag.minor == 4 && (tag.flags & tfUnsynchronised)) frame.unsynchronised = true;
  return true;
}

void AddTagID3v2(LAudioTagData& tags, const ID3v2Frame& frame, int minor) {
  const std::string_view id = minor == 2 ? MapHashTagToID3v2Minor2ToMinor3Tag(frame.id) : frame.id;
  const FrameRow* row = FindFrame(id, &FrameRow::id);
  if (!row || !frame.readable) return;
  const bool picture = row->add == AddPicture;
  constexpr std::int64_t kPictureHeaderBytes = 4096;
  const std::int64_t limit = picture ? LTagBlock::kMaxPictureBytes + kPictureHeaderBytes : LTagBlock::kMaxTextBytes;
  if (picture && (!tags.WantsPicture() || frame.content.GetSize() > limit)) return;
  std::string content = frame.content.Read(limit);
  if (frame.unsynchronised) content = Resynchronised(content);
  row->add(tags, row->field, From(content, std::size_t(frame.extraBytes)), minor);
}

bool WalkFrames(LAudioTagData& tags, const ID3v2Tag& tag) {
  std::int64_t at = 0;
  for (int piece = 0; piece < LTagBlock::kMaxPieces; ++piece) {
    char first = 0;  // a zero begins the padding, if the tag has not ended before
    if (!tag.frames.Get(&first, 1, at) || first == 0) return true;
    ID3v2Frame frame;
    if (!GetID3v2FrameDescription(tag, at, frame)) return false;
    AddTagID3v2(tags, frame, tag.minor);
    at = frame.end;
  }
  return false;
}

// Its length counts itself in version 4 alone.
std::int64_t ExtendedHeaderBytes(const ID3v2Tag& tag) {
  unsigned char length[4];
  if (tag.minor == 2 || !(tag.flags & tfExtendedHeader) || !tag.frames.Get(length, sizeof length, 0)) return 0;
  return tag.minor == 3 ? std::int64_t{GetBe32(length)} + 4 : GetSynchsafe(length);
}

// A field of fixed width, filled up with zeros or blanks.
std::string FixedText(const char* at, std::size_t width) { return Latin1ToUtf8({at, width}); }

}  // namespace

std::string_view MapHashTagToID3v2Minor2ToMinor3Tag(std::string_view id) {
  const FrameRow* row = FindFrame(id, &FrameRow::id2);
  return row ? row->id : std::string_view();
}

std::string_view MapID3v2TagToHashTag(std::string_view id) {
  const FrameRow* row = FindFrame(id, &FrameRow::id);
  return row ? row->field : std::string_view();
}

bool ReadTagsID3v2(LAudioTagData& tags, const LTagBlock& file) {
  constexpr int kHeaderBytes = 10;
  unsigned char header[kHeaderBytes];
  if (!file.Get(header, sizeof header, 0) || std::memcmp(header, "ID3", 3) != 0) return false;
  const std::uint32_t bytes = GetSynchsafe(header + 6);
  ID3v2Tag tag{header[3], header[5], file.Part(kHeaderBytes, bytes)};
  if (tag.minor < 2 || tag.minor > 4) return false;
  if (tag.minor == 2 && (tag.flags & tfCompressed2)) return false;  // nobody defined how
  std::string plain;  // before version 4 the tag as a whole is unsynchronised
  if (tag.minor < 4 && (tag.flags & tfUnsynchronised)) {
    constexpr std::int64_t kMaxTagBytes = 2 * LTagBlock::kMaxPictureBytes;
    plain = Resynchronised(tag.frames.Read(kMaxTagBytes));
    tag.frames = LTagBlock(plain);
  }
  tag.frames = tag.frames.Part(ExtendedHeaderBytes(tag));
  return WalkFrames(tags, tag) && file.Has(kHeaderBytes, bytes);
}

bool ReadTagsID3v1(LAudioTagData& tags, const LTagBlock& file) {
  constexpr std::int64_t kBytes = 128;
  struct {
    char mark[3], title[30], artist[30], album[30], year[4], comment[30];
    unsigned char genre;
  } tag;
  static_assert(sizeof tag == kBytes);
  if (!file.Get(&tag, sizeof tag, file.GetSize() - kBytes) || std::string_view(tag.mark, 3) != "TAG") return false;
  tags.SetTag("TITLE", FixedText(tag.title, sizeof tag.title), false);
  tags.SetTag("ARTIST", FixedText(tag.artist, sizeof tag.artist), false);
  tags.SetTag("ALBUM", FixedText(tag.album, sizeof tag.album), false);
  tags.SetTag("YEAR", FixedText(tag.year, sizeof tag.year), false);
  tags.SetTag("COMMENT", FixedText(tag.comment, sizeof tag.comment), false);
  // Version 1.1: a zero, which ends the comment, and the track's number in its last two bytes.
  if (tag.comment[28] == 0 && tag.comment[29] != 0)
    tags.SetNumber("TRACKNUMBER", static_cast<unsigned char>(tag.comment[29]), false);
  tags.SetTag("GENRE", GenreName(tag.genre), false);
  return true;
}

bool ReadTagsMP3(LAudioTagData& tags, const LTagBlock& file) {
  const bool newer = ReadTagsID3v2(tags, file);
  return ReadTagsID3v1(tags, file) || newer;
}
