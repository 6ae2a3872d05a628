#include "audiofile/TagsTest.h"
#include "audiofile/tags/LFlacTags.h"
#include "audiofile/tags/LOggTags.h"

namespace {

using namespace std::string_literals;

class VorbisTags : public TagsTest {
 protected:
  // One page; a packet that ends on it ends with a segment below 255.
  static std::string Page(unsigned serial, std::uint64_t position, const std::string& lacing, const std::string& body,
                          int flags = 0) {
    return "OggS\0"s + char(flags) + Le(position, 8) + Le(serial, 4) + std::string(8, '\0') + char(lacing.size()) +
           lacing + body;
  }
  static std::string Whole(unsigned serial, std::uint64_t position, const std::string& body, int flags = 0) {
    return Page(serial, position, std::string(body.size() / 255, '\xFF') + char(body.size() % 255), body, flags);
  }
  static std::string Id(int rate) { return "\1vorbis\0\0\0\0\2"s + Le(unsigned(rate), 4) + std::string(14, '\0'); }
  static std::string Block(int type, const std::string& content, bool last = false) {
    return char(type | (last ? 128 : 0)) + Be(content.size(), 3) + content;
  }
  static std::string StreamInfo(std::uint64_t rate, std::uint64_t frames) {
    return std::string(10, '\0') + Be(rate << 44 | std::uint64_t{0x1F0} << 32 | frames, 8) + std::string(16, '\0');
  }
};

TEST_F(VorbisTags, OggNamesItsFieldsItself) {
  const std::string comment =
      "\3vorbis" + VorbisComment("Lib 1", {"title=  Eins ", "ARTIST=a=b", "Title=Zwei", "leer=", "ohne", "=x",
                                           "DISCNUMBER=2", "image=/etc/passwd", "LENGTH=5", "GENRE=Caf\xE9"});
  const char* const expected = "ARTIST=a=b|COMMENT=Lib 1|DISCNUMBER=2|GENRE=Café|LENGTH=2500|TITLE=Zwei";
  const std::string first = Whole(9, 0, Id(44100), 2), last = Whole(9, 110250, "end", 4);
  EXPECT_EQ(Tags("a.ogg", first + Whole(9, 0, comment) + last), expected);
  EXPECT_EQ(Tags("a.oga", first + Whole(9, 0, comment) + last), expected);
  // Its own comment replaces the vendor's.
  EXPECT_EQ(Tags("a.ogg", first + Whole(9, 0, "\3vorbis" + VorbisComment("Lib 1", {"COMMENT=Mein"}))),
            "COMMENT=Mein|LENGTH=0");
  // Another stream's pages in between, a page without the end of a packet, and a stream chained behind.
  const std::string other = Whole(1, 0, "fishead", 2);
  const std::string full(255, 'v'), vendor = "\3vorbis" + Le(600, 4) + full + full + std::string(90, 'v') + Le(0, 4);
  const std::string split = Page(9, UINT64_MAX, "\xFF", vendor.substr(0, 255)) + Whole(1, 77, "x") +
                            Page(9, 0, "\xFF"s + char(vendor.size() - 510), vendor.substr(255));
  EXPECT_EQ(Tags("a.ogg", other + first + split + last + Page(9, UINT64_MAX, "\xFF", full) + Whole(1, 99999, "x")),
            "COMMENT=" + std::string(600, 'v') + "|LENGTH=2500");
}

TEST_F(VorbisTags, OpusCountsAt48000AndSkipsItsStart) {
  const std::string head = "OpusHead\1\2"s + Le(312, 2) + Le(44100, 4) + std::string(3, '\0');
  EXPECT_EQ(Tags("a.ogg", Whole(9, 0, head, 2) + Whole(9, 0, "OpusTags" + VorbisComment("opus", {"TITLE=O"})) +
                              Whole(9, 48000 + 312, "x")),
            "COMMENT=opus|LENGTH=1000|TITLE=O");
}

TEST_F(VorbisTags, CountsAndLengthsThatLieKeepWhatWasRead) {
  const std::string good = VorbisComment("v", {"TITLE=T"});
  const struct {
    const char* what;
    std::string comment, expected;
  } rows[] = {
      {"count", Le(1, 4) + "v" + Le(0xFFFFFFFF, 4) + Le(7, 4) + "TITLE=T", "-COMMENT=v|LENGTH=1000|TITLE=T"},
      {"vendor", Le(0xFFFFFFFF, 4) + "v", "-LENGTH=1000"},
      {"comment", Le(1, 4) + "v" + Le(2, 4) + Le(7, 4) + "TITLE=T" + Le(0x80000000, 4),
       "-COMMENT=v|LENGTH=1000|TITLE=T"},
      {"none", "", "-LENGTH=1000"},
      {"no count", Le(1, 4) + "v", "-COMMENT=v|LENGTH=1000"},
  };
  for (const auto& row : rows) {
    const std::string ogg = Whole(1, 0, Id(1000), 2) + Whole(1, 0, "\3vorbis" + row.comment) + Whole(1, 1000, "x");
    EXPECT_EQ(Tags("a.ogg", ogg), row.expected) << row.what;
    const std::string flac = "fLaC" + Block(0, StreamInfo(1000, 1000)) + Block(4, row.comment) + Block(1, "", true);
    EXPECT_EQ(Tags("a.flac", flac), row.expected) << row.what;
  }
  EXPECT_EQ(Tags("a.ogg", Whole(1, 0, Id(0), 2) + Whole(1, 0, "\3vorbis" + good) + Whole(1, 1000, "x")),
            "COMMENT=v|TITLE=T");
  EXPECT_EQ(Tags("a.ogg", Whole(1, 0, Id(1), 2) + Whole(1, 0, "\3vorbis" + good) + Whole(1, 1ull << 63, "x")),
            "COMMENT=v|TITLE=T");
  EXPECT_EQ(Tags("a.ogg", Whole(1, 0, "\1video", 2) + Whole(1, 0, "\3vorbis" + good)), "-");
  std::string many = Le(0, 4) + Le(1000000, 4);
  for (int i = 0; i < 20000; ++i) many += Le(2, 4) + "A=";
  EXPECT_EQ(Tags("a.flac", "fLaC" + Block(4, many, true)), "-");
}

TEST_F(VorbisTags, FlacMapsFourNamesAndHasLengthAndPicture) {
  const auto picture = [](const std::string& type, unsigned bytes, const std::string& data) {
    return Be(3, 4) + Be(type.size(), 4) + type + Be(4, 4) + "Bild" + std::string(16, '\1') + Be(bytes, 4) + data;
  };
  const std::string comment = VorbisComment("v", {"discnumber=1", "DATE=1991", "date-ext=0405", "PUBLISHER=P", "X=y"});
  const std::string flac = "fLaC" + Block(0, StreamInfo(96000, 0xFFFFFFFFFull)) +
                           Block(6, picture("image/gif", 3, "GIF")) + Block(6, picture("image/png", 99, "PNG")) +
                           Block(6, picture("image/jpeg", 3, "JPG")) + Block(4, comment, true);
  // 68719476735 frames at 96000 Hz
  EXPECT_EQ(Tags("a.FLAC", flac), "COMMENT=v|DATE=0405|DISKNUMBER=1|LENGTH=715827882|PRODUCER=P|X=y|YEAR=1991");
  LAudioTagData tags(LAudioTagData::WithPictures);
  EXPECT_TRUE(tags.ReadTags(Path("a.FLAC")));
  EXPECT_EQ(LFile::ReadAll(tags.GetParm("IMAGE", "")), "JPG");
  EXPECT_EQ(Tags("a.flac", "fLaC" + Block(0, StreamInfo(0, 5), true)), "");
  EXPECT_EQ(Tags("a.flac", "fLaC" + Block(4, comment) + "\x84\xFF\xFF\xFF"),
            "-COMMENT=v|DATE=0405|DISKNUMBER=1|PRODUCER=P|X=y|YEAR=1991");
  EXPECT_EQ(Tags("a.flac", "ID3" + flac), "-");
}

}  // namespace
