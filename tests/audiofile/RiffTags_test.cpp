#include "audiofile/TagsTest.h"
#include "audiofile/tags/LRiffTags.h"

namespace {

using namespace std::string_literals;

class RiffTags : public TagsTest {
 protected:
  std::string Cart(const std::string& title) const {
    std::string cart = "0101" + Padded(title, 64, 'x') + Padded("Künstler", 64);
    for (const char* const text : {"C1", "C2", "C3", "C4", "C5"}) cart += Padded(text, 64);
    cart += "2024-01-0210:11:122024-02-0313:14:15" + Padded("Prog", 64) + Padded("1.2", 64) + Padded("U", 64);
    cart += Le(unsigned(-5), 4) + "INT1" + Le(1000, 4) + "EOD" + '\0' + Le(0xFFFFFFFF, 4);
    return Padded(cart, 748) + std::string(276, '\7') + Padded("http://a.de", 1024) + "Ende\r\n";
  }
  std::string Bext(const std::string& description) const {
    return Padded(description, 256) + Padded("Sender", 32) + std::string(32, 'r') + "2020-12-3123:59:59" + Le(7, 4) +
           Le(0x80000000, 4) + Le(0x1F, 2) + Padded("\1\xFF", 64) + std::string(190, '\0') + "A=PCM,F=48000\r\n";
  }
};

TEST_F(RiffTags, TakeEachKindAloneOrAllInOrder) {
  const std::string info = Chunk("LIST", "INFO" + Chunk("INAM", "Aus INFO\0"s) + Chunk("IART", "Mot\xF6r") +
                                             Chunk("ICRD", "1999") + Chunk("XXXX", "?") + Chunk("ISFT", "Prög"));
  const std::string display = Chunk("DISP", Le(1, 4) + "Aus DISP\0"s);
  const std::string sound = Chunk("fmt ", std::string(16, '\0')) + Chunk("data", std::string(99, '\1'));
  const std::string wave = Wave(sound + Chunk("LIST", "adtl") + info + display + Chunk("bext", Bext("Text")) +
                                Chunk("cart", Cart("Aus cart")));
  EXPECT_EQ(Tags("a.wav", wave, LAudioTagData::ltkWave), "ARTIST=Motör|ENCODER=Prög|TITLE=Aus INFO|YEAR=1999");
  EXPECT_EQ(Tags("a.wav", Wave(display + info), 0), "ARTIST=Motör|ENCODER=Prög|TITLE=Aus DISP|YEAR=1999");
  EXPECT_EQ(Tags("a.wav", Wave(Chunk("DISP", Le(8, 4) + "bitmap")), 0), "-");
  std::string umid = "1,255,";
  for (int i = 0; i < 62; ++i) umid += "0,";
  EXPECT_EQ(Tags("a.wav", wave, LAudioTagData::ltkBroadcast),
            "BWFVERSION=1f|CODINGHISTORY=A=PCM,F=48000|COMMENT=Text|DATE=2020-12-31|ORIGINATOR=Sender|REFERENCE=" +
                std::string(32, 'r') + "|TIME=23:59:59|TIMEREFHIGH=-2147483648|TIMEREFLOW=7|UMID=" + umid);
  LAudioTagData tags;
  EXPECT_TRUE(tags.ReadTags(Path("a.wav"), LAudioTagData::ltkCart));
  const struct {
    const char *field, *value;
  } rows[] = {
      {"CARTVERSION", "0101"},
      {"ARTIST", "Künstler"},
      {"CUTID", "C1"},
      {"CLIENTID", "C2"},
      {"CATEGORY", "C3"},
      {"CLASSIFICATION", "C4"},
      {"OUTCUE", "C5"},
      {"STARTDATE", "2024-01-02"},
      {"STARTTIME", "10:11:12"},
      {"ENDDATE", "2024-02-03"},
      {"ENDTIME", "13:14:15"},
      {"PRODUCER", "Prog"},
      {"PRODUCERAPPVERSION", "1.2"},
      {"USERDEF", "U"},
      {"LEVELREFERENCE", "-5"},
      {"POSTTIMER1USAGE", "INT1"},
      {"POSTTIMER1VALUE", "1000"},
      {"POSTTIMER2USAGE", "EOD"},
      {"POSTTIMER2VALUE", "-1"},
      {"POSTTIMER8VALUE", "0"},
      {"URL", "http://a.de"},
      {"TAGTEXT", "Ende"},
  };
  for (const auto& row : rows) EXPECT_STREQ(tags.GetParm(row.field, ""), row.value) << row.field;
  EXPECT_EQ(tags.GetParm("POSTTIMER3USAGE"), nullptr);

  LAudioTagData all;
  EXPECT_TRUE(all.ReadTags(Path("a.wav")));
  EXPECT_EQ(std::string(all.GetParm("TITLE", "")), Padded("Aus cart", 64, 'x'));  // fills its place, no terminator
  EXPECT_STREQ(all.GetParm("COMMENT", ""), "Text");
  EXPECT_STREQ(all.GetParm("YEAR", ""), "1999");
}

TEST_F(RiffTags, SizesThatLieEndTheWalkAndKeepWhatWasRead) {
  const std::string title = Chunk("INAM", "Titel");
  const std::string info = Chunk("LIST", "INFO" + title);
  const struct {
    const char* what;
    std::string wave, expected;
  } rows[] = {
      {"no wave", "RIFF\0\0\0\0AVI "s + info, "-"},
      {"form size 0", "RIFF\0\0\0\0WAVE"s + info, "TITLE=Titel"},
      {"64 bits", "RF64\xFF\xFF\xFF\xFFWAVE"s + info + "data\xFF\xFF\xFF\xFFxx", "TITLE=Titel"},
      {"growing", Wave(info + "data\xFE\xFF\xFF\xFFxx"), "TITLE=Titel"},
      {"behind a lie", Wave("data\xFE\xFF\xFF\xFFxx" + info), "-"},
      {"entry beyond its list", Wave(Chunk("LIST", "INFO" + title + "IART" + Le(100, 4) + "Band") + info),
       "TITLE=Titel"},
      {"list beyond the file", Wave("LIST" + Le(1000, 4) + "INFO" + title), "-"},
      {"empty chunks", Wave("LIST\0\0\0\0LIST\0\0\0\0"s + info), "TITLE=Titel"},
      {"short bext", Wave(Chunk("bext", "Kurz")), "COMMENT=Kurz"},
      {"short cart", Wave(Chunk("cart", "0101Kurz")), "CARTVERSION=0101|TITLE=Kurz"},
  };
  for (const auto& row : rows) EXPECT_EQ(Tags("a.wav", row.wave), row.expected) << row.what;
}

}  // namespace
