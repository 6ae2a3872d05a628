#include "audiofile/TagsTest.h"
#include "audiofile/tags/LMP4Tags.h"

namespace {

using namespace std::string_literals;

class MP4Tags : public TagsTest {
 protected:
  static std::string Item(const std::string& name, int type, const std::string& value) {
    return Atom(name, Atom("data", Be(unsigned(type), 4) + std::string(4, '\0') + value));
  }
  static std::string Movie(const std::string& items, const std::string& version = std::string(4, '\0')) {
    const std::string meta = version + Atom("hdlr", "x") + Atom("ilst", items);
    return Atom("moov", Atom("mvhd", "12345678") + Atom("udta", Atom("name", "") + Atom("meta", meta)));
  }
  static std::string File(const std::string& atoms) { return Atom("ftyp", "M4A ") + atoms; }
};

TEST_F(MP4Tags, ReadTextsNumbersAndThePicture) {
  const std::string items =
      Item("\251nam", 1, "Tïtel") + Item("\251nam", 1, "Zweiter") + Item("\251ART", 2, "\0A\xD8\x3C\xDF\xA7"s) +
      Item("aART", 1, "AA") +
      Item("\251alb", 1,
           "Alb\xFC"
           "m") +
      Item("\251wrt", 1, "W") + Item("\251grp", 1, "G") + Item("catg", 1, "C") + Item("\251day", 1, "2001-02-03") +
      Item("\251cmt", 1, " c ") + Item("\251too", 1, "T") + Item("\251enc", 1, "E") + Item("cprt", 1, "R") +
      Item("trkn", 0, "\0\0\0\7\0\x0C\0\0"s) + Item("disk", 0, "\0\0\0\1\0\2"s) + Item("gnre", 0, "\0\x12"s) +
      Item("tmpo", 21, "\0\x80"s) + Item("rtng", 21, "\4") + Item("covr", 14, "PNG") + Item("----", 1, "frei");
  const char* const expected =
      "ALBUM=Albüm|ALBUMARTIST=AA|ARTIST=A🎧|BPM=128|CATEGORY=G|COMMENT=c|COMPOSER=W|COPYRIGHT=R|DISKNUMBER=1|ENCODEDBY="
      "E|"
      "ENCODER=T|GENRE=Rock|RATING=4|TITLE=Tïtel|TRACKNUMBER=7|YEAR=2001-02-03";
  EXPECT_EQ(Tags("a.m4a", File(Movie(items))), expected);
  EXPECT_EQ(Tags("a.M4R", File(Movie(items, "") + Atom("mdat", "xx"))), expected);  // no version in meta
  EXPECT_EQ(Tags("a.mp4", File(Be(1, 4) + "mdat" + Be(20, 8) + "1234" + Movie(items))), expected);
  std::string openEnded = Movie(items);
  openEnded.replace(0, 4, Be(0, 4));
  EXPECT_EQ(Tags("a.mp4", File(openEnded)), expected);
  LAudioTagData tags(LAudioTagData::WithPictures);
  EXPECT_TRUE(tags.ReadTags(Path("a.mp4")));
  const std::string path = tags.GetParm("IMAGE", "");
  EXPECT_EQ(LFile::ExtensionFromPath(path), ".png");
  EXPECT_EQ(LFile::ReadAll(path), "PNG");
}

TEST_F(MP4Tags, SizesThatLieEndTheWalk) {
  const std::string movie = Movie(Item("\251nam", 1, "T"));
  const struct {
    const char* what;
    std::string file, expected;
  } rows[] = {
      {"no ftyp", movie, "-"},
      {"no movie", File(Atom("mdat", movie)), "-"},
      {"size 7", File(Be(7, 4) + "free" + movie), "-"},
      {"64 bits, 15", File(Be(1, 4) + "free" + Be(15, 8) + movie), "-"},
      {"64 bits, all ones", File(Be(1, 4) + "free" + Be(UINT64_MAX, 8) + movie), "-"},
      {"beyond the file", File(Be(0x7FFFFFFF, 4) + "free" + movie), "-"},
      {"item beyond the list", File(Movie(Item("\251nam", 1, "T") + Be(99, 4) + "\251ART")), "TITLE=T"},
      {"data beyond its item", File(Movie(Atom("\251ART", Be(99, 4) + "data12345678Band") + Item("\251nam", 1, "T"))),
       "TITLE=T"},
      {"short values",
       File(Movie(Atom("\251ART", Atom("data", "1234567")) + Item("trkn", 0, "\0\0\0"s) + Item("gnre", 0, "\1") +
                  Item("tmpo", 0, "") + Item("gnre", 0, "\0\0"s) + Item("gnre", 0, "\xFF\xFF") +
                  Item("tmpo", 0, "12345") + Item("\251nam", 1, "T"))),
       "TITLE=T"},
  };
  for (const auto& row : rows) EXPECT_EQ(Tags("a.m4a", row.file), row.expected) << row.what;
}

}  // namespace
