#include "audiofile/TagsTest.h"
#include "audiofile/tags/LID3Tags.h"
#include "audiofile/tags/LTagGenres.h"
#include "audiofile/tags/LTagText.h"

namespace {

using namespace std::string_literals;

std::string Synchsafe(std::size_t value) {
  return {char(value >> 21 & 127), char(value >> 14 & 127), char(value >> 7 & 127), char(value & 127)};
}
std::string Tag(int minor, const std::string& frames, int flags = 0) {
  return "ID3"s + char(minor) + '\0' + char(flags) + Synchsafe(frames.size()) + frames;
}
std::string Frame(int minor, const std::string& id, const std::string& content, int flags = 0) {
  if (minor == 2) return id + Be(content.size(), 3) + content;
  return id + (minor == 3 ? Be(content.size(), 4) : Synchsafe(content.size())) + '\0' + char(flags) + content;
}
std::string Utf16(const std::u16string& text, bool big) {
  std::string bytes;
  for (const char16_t unit : text) bytes += big ? Be(unit, 2) : Le(unit, 2);
  return bytes;
}

class ID3 : public TagsTest {
 protected:
  std::string V1(const std::string& title, const std::string& comment, int genre) const {
    return "TAG" + Padded(title, 30) + Padded("Alt", 30, ' ') + Padded("", 30) + "1987" + Padded(comment, 30) +
           char(genre);
  }
};

TEST_F(ID3, TheNewerTagWinsAndTheOlderFillsItsGaps) {
  const std::string sound(500, '\x55');
  const std::string old = V1("Alter Titel", Padded("Bemerkung", 28) + "\0\x0C"s, 17);
  EXPECT_EQ(Tags("a.mp3", Tag(3, Frame(3, "TIT2", "\0Neu"s) + Frame(3, "TPE1", "\0 "s)) + sound + old),
            "ARTIST=Alt|COMMENT=Bemerkung|GENRE=Rock|TITLE=Neu|TRACKNUMBER=12|YEAR=1987");
  EXPECT_EQ(Tags("a.MP3", sound + old),
            "ARTIST=Alt|COMMENT=Bemerkung|GENRE=Rock|TITLE=Alter Titel|TRACKNUMBER=12|YEAR=1987");
  // Thirty letters of comment, no track; a genre beyond the table.
  EXPECT_EQ(Tags("a.mp3", V1("\xDC"
                             "ber 30 ohne Zahl",
                             "123456789012345678901234567890", 148)),
            "ARTIST=Alt|COMMENT=123456789012345678901234567890|TITLE=Über 30 ohne Zahl|YEAR=1987");
  EXPECT_EQ(Tags("a.mp3", sound), "-");
  EXPECT_EQ(Tags("a.mp3", old.substr(1)), "-");
}

TEST_F(ID3, ReadsFramesOfEveryVersion) {
  const std::string utf16 = "\1"s + "\xFE\xFF" + Utf16(u"Äö", true), utf8 = "\3Grüße 🎧"s;
  const struct {
    int minor;
    const char* id;
    std::string content;
    const char* expected;
  } rows[] = {
      {2, "TT2", "\0  Titel \0Rest"s, "TITLE=Titel"},
      {2, "TYE",
       "\0"
       "1999"s,
       "YEAR=1999"},
      {3, "TPE2", "\0Caf\xE9"s, "ALBUMARTIST=Café"},
      {3, "TALB", utf16, "ALBUM=Äö"},
      {3, "TALB", "\1\xFF\xFE"s + Utf16(u"Ab\0cd"s, false), "ALBUM=Ab"},
      {3, "TALB", "\1"s + Utf16(u"\xD83C\xDFA7 ohne Marke", false) + "x", "ALBUM=🎧 ohne Marke"},
      {4, "TALB", "\2"s + Utf16(u"Z\xD800!\xDC00", true), "ALBUM=Z\xEF\xBF\xBD!\xEF\xBF\xBD"},
      {4, "TCOM", utf8, "COMPOSER=Grüße 🎧"},
      {4, "TCOM", "\3\xE9"s, "COMPOSER=é"},
      {4, "TDRC",
       "\0"
       "2004-05-06"s,
       "YEAR=2004"},
      {3, "TLEN",
       "\0"
       "215000"s,
       "LENGTH=215000"},
      {3, "TCON", "\0(17)"s, "GENRE=Rock"},
      {3, "TCON", "\0(147)"s, "GENRE=Synthpop"},
      {3, "TCON", "\0(148)"s, "GENRE=(148)"},
      {3, "TCON", "\0(4)Eurodisco"s, "GENRE=(4)Eurodisco"},
      {3, "TCON", "\0(-1)"s, "GENRE=(-1)"},
      {3, "TCON", "\0()"s, "GENRE=()"},
      {2, "COM", "\0deu\0Text"s, "COMMENT=Text"},
      {3, "COMM", "\1deu"s + "\xFF\xFE" + Utf16(u"kurz\0"s, false) + "\xFE\xFF" + Utf16(u"läng", true), "COMMENT=läng"},
      {3, "COMM", "\0engiTunNORM\0 0000"s, ""},
      {3, "COMM", "\0deunie beendet"s, ""},
      {3, "POPM", "a@b.de\0\xC4\0\0\0\1"s, "RATING=196"},
      {3, "POPM", "a@b.de"s, ""},
      {3, "PCNT", "\0\0\1\2"s, "PLAYCOUNT=258"},
      {4, "PCNT", "\xFF\xFF\xFF\xFF"s, "PLAYCOUNT=4294967295"},
      {3, "WXXX", "\0Seite\0http://a.de/"s, "URL=http://a.de/"},
      {3, "WXXX", "\1\xFF\xFE"s + Utf16(u"S\0"s, false) + "http://b.de/", "URL=http://b.de/"},
      {3, "TXXX", "\0iTunNORM\0x"s, ""},
      {3, "TIT2", "", ""},
      {3, "TIT2", "\1\xFF"s, ""},
  };
  for (const auto& row : rows) {
    const std::string tag = Tag(row.minor, Frame(row.minor, row.id, row.content) + std::string(20, '\0') + "TIT2");
    EXPECT_EQ(Tags("a.mp3", tag), row.expected) << row.id << " " << row.content;
  }
}

TEST_F(ID3, UndoesUnsynchronisationAndPassesOverWhatItCannotRead) {
  const std::string plain = "\1\xFF\xFE"s + Utf16(u"\x00FFx", false);  // FF FE FF 00 78 00
  const std::string stuffed = "\1\xFF\0\xFE\xFF\0\0x\0"s;              // a zero behind every FF
  const std::string next3 = Frame(3, "TPE1", "\0ok"s), next4 = Frame(4, "TPE1", "\0ok"s);
  const struct {
    const char* what;
    std::string tag, expected;
  } rows[] = {
      // Before version 4 the frame's length counts the bytes without the stuffing.
      {"v3 whole", Tag(3, "TIT2" + Be(plain.size(), 4) + "\0\0"s + stuffed + next3, 0x80), "ARTIST=ok|TITLE=ÿx"},
      {"v4 frame", Tag(4, Frame(4, "TIT2", stuffed, 2) + next4), "ARTIST=ok|TITLE=ÿx"},
      {"v4 tag", Tag(4, Frame(4, "TIT2", stuffed) + next4, 0x80), "ARTIST=ok|TITLE=ÿx"},
      {"v4 length, group", Tag(4, Frame(4, "TIT2", "g\0\0\0\2\0Hi"s, 0x41) + next4), "ARTIST=ok|TITLE=Hi"},
      {"v4 compressed", Tag(4, Frame(4, "TIT2", "\0Hi"s, 8) + next4), "ARTIST=ok"},
      {"v4 encrypted", Tag(4, Frame(4, "TIT2", "\0Hi"s, 4) + next4), "ARTIST=ok"},
      {"v3 compressed", Tag(3, Frame(3, "TIT2", "\0Hi"s, 0x80) + next3), "ARTIST=ok"},
      {"v3 encrypted", Tag(3, Frame(3, "TIT2", "\0Hi"s, 0x40) + next3), "ARTIST=ok"},
      {"v3 group", Tag(3, Frame(3, "TIT2", "g\0Hi"s, 0x20) + next3), "ARTIST=ok|TITLE=Hi"},
      {"v3 extended", Tag(3, Be(6, 4) + std::string(6, '\0') + next3, 0x40), "ARTIST=ok"},
      {"v4 extended", Tag(4, Synchsafe(6) + "\1\0"s + next4, 0x40), "ARTIST=ok"},
      {"v2 compressed", Tag(2, Frame(2, "TT2", "\0Hi"s), 0x40), "-"},
      {"v5", Tag(5, next4), "-"},
      {"first of two", Tag(3, next3 + Frame(3, "TPE1", "\0anders"s)), "ARTIST=ok"},
      {"beyond the tag", Tag(3, next3 + "TIT2" + Be(0x7FFFFFFF, 4) + "\0\0\0Hi"s), "-ARTIST=ok"},
      {"negative", Tag(3, next3 + "TIT2\xFF\xFF\xFF\xFF\0\0\0Hi"s), "-ARTIST=ok"},
      {"synchsafe 128", Tag(4, Frame(4, "TIT2", "\0"s + std::string(199, 'a')) + next4),
       "ARTIST=ok|TITLE=" + std::string(199, 'a')},
  };
  for (const auto& row : rows) EXPECT_EQ(Tags("a.mp3", row.tag), row.expected) << row.what;
  EXPECT_EQ(Tags("a.mp3", "ID3\3\0\0\x7F\x7F\x7F\x7F"s + next3), "-ARTIST=ok");  // 256 MB in a file of 23 bytes
}

TEST_F(ID3, PutsAPictureIntoAFileOfItsKind) {
  const struct {
    int minor;
    std::string frame;
    const char* extension;  // null: no picture
  } rows[] = {
      {3, Frame(3, "APIC", "\0image/jpeg\0\3Bild\0DATA"s), ".jpg"},
      {3,
       Frame(3, "APIC",
             "\1image/PNG\0\3\xFF\xFE"
             "B\0\0\0DATA"s),
       ".png"},
      {4, Frame(4, "APIC", "\3image/bmp\0\0\0DATA"s), ".bmp"},
      {3, Frame(3, "APIC", "\0image/\0\0\0DATA"s), ".jpg"},
      {2, Frame(2, "PIC", "\0PNG\3x\0DATA"s), ".png"},
      {3, Frame(3, "APIC", "\0-->\0\3\0http://a.de/b.jpg"s), nullptr},
      {3, Frame(3, "APIC", "\0image/jpeg\0\3Bild\0"s), nullptr},
      {3, Frame(3, "APIC", "\0image/jpeg"s), nullptr},
  };
  for (const auto& row : rows) {
    LAudioTagData tags(LAudioTagData::WithPictures);
    EXPECT_TRUE(tags.ReadTags(Put("a.mp3", Tag(row.minor, row.frame + row.frame))));
    const std::string path = tags.GetParm("IMAGE", "");
    EXPECT_EQ(path.empty(), row.extension == nullptr);
    if (!row.extension) continue;
    EXPECT_EQ(LFile::ExtensionFromPath(path), row.extension);
    EXPECT_EQ(LFile::ReadAll(path), "DATA");
  }
  EXPECT_TRUE(LFile::NamesInFolder(platform_.folders.GetTempFolder()).empty());
  EXPECT_EQ(Tags("a.mp3", Tag(3, rows[0].frame)), "");
}

TEST(TagText, TellsUtf8FromLatin1) {
  const struct {
    const char *bytes, *text;
  } rows[] = {
      {"a", "a"},
      {"\xC3\xA9", "é"},
      {"\xE9", "é"},
      {"\xEF\xBB\xBF"
       "b",
       "b"},
      {"\xC0\x80", "À\xC2\x80"},
      {"\xED\xA0\x80", "í\xC2\xA0\xC2\x80"},
      {"\xF4\x90\x80\x80", "ô\xC2\x90\xC2\x80\xC2\x80"},
      {"\xE2\x82", "â\xC2\x82"},
      {"\xF0\x9F\x8E\xA7", "🎧"},
  };
  for (const auto& row : rows) EXPECT_EQ(TextToUtf8(row.bytes), row.text);
  std::string out;
  EXPECT_EQ(ReadID3String(out, lieUtf16,
                          "\xFF\xFE"
                          "a\0\0\0rest"s),
            6u);
  EXPECT_EQ(ReadID3String(out, lieLatin1, "ab\0c"s), 3u);
  EXPECT_EQ(ReadID3String(out, lieLatin1, "ab"), 2u);
  EXPECT_EQ(ReadID3String(out, lieUtf16, ""), 0u);
}

TEST(Genres, AreAllThereAndEachIsUtf8) {
  std::vector<std::string> seen;
  for (const char* const name : Genres) {
    ASSERT_NE(name, nullptr);
    EXPECT_TRUE(IsUtf8(name) && *name) << name;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), name), 0) << name;
    seen.emplace_back(name);
  }
  // Spot checks at the ends and the seams of the list's editions.
  for (const auto& [number, name] : {std::pair{0, "Blues"},
                                     {1, "Klassischer Rock"},
                                     {17, "Rock"},
                                     {79, "Hard Rock"},
                                     {80, "Folk"},
                                     {126, "Goa"},
                                     {137, "Heavy Metal"},
                                     {147, "Synthpop"}})
    EXPECT_EQ(GenreName(number), name);
}

}  // namespace
