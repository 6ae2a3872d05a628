#include "audiofile/tags/LAudioTagData.h"

#include <sys/resource.h>

#include "audiofile/TagsTest.h"

namespace {

using namespace std::string_literals;

class AudioTagData : public TagsTest {};

TEST_F(AudioTagData, TheFirstSourceWinsUnlessItIsToBeReplaced) {
  LAudioTagData tags;
  tags.SetTag("TITLE", " \t Eins\r\n", false);
  tags.SetTag("TITLE", "Zwei", false);
  tags.SetTag("ARTIST", "   ", false);
  EXPECT_EQ(Line(tags), "TITLE=Eins");
  tags.SetTag("TITLE", "Drei", true);
  EXPECT_EQ(Line(tags), "TITLE=Drei");
  tags.SetTag("TITLE", " ", true);
  EXPECT_EQ(Line(tags), "");
}

TEST_F(AudioTagData, APictureFileLivesAsLongAsItsOwnerUnlessTaken) {
  const std::string folder = platform_.folders.GetTempFolder(), bytes(LTagBlock::kMaxPictureBytes + 1, 'x');
  std::string taken;
  {
    LAudioTagData tags(LAudioTagData::WithPictures), other(LAudioTagData::WithPictures), without;
    without.AddPicture(LTagBlock("x"), ".jpg");
    tags.AddPicture(LTagBlock(bytes), ".jpg");
    tags.AddPicture(LTagBlock(""), ".jpg");
    EXPECT_EQ(tags.TakeImage(), "");
    EXPECT_TRUE(LFile::NamesInFolder(folder).empty());
    tags.AddPicture(LTagBlock(std::string_view(bytes).substr(1)), ".jpg");
    tags.AddPicture(LTagBlock("second"), ".jpg");
    other.AddPicture(LTagBlock("other"), ".png");
    ASSERT_EQ(LFile::NamesInFolder(folder).size(), 2u);
    taken = other.TakeImage();
    EXPECT_EQ(taken, other.GetParm("IMAGE", ""));
    EXPECT_EQ(LFile::NameFromPath(taken).size(), std::size("0XXXXXX.png") - 1);
    EXPECT_EQ(LFile::NameFromPath(taken)[0], '0');
  }
  EXPECT_EQ(LFile::NamesInFolder(folder), std::vector<std::string>{LFile::NameFromPath(taken)});
  EXPECT_EQ(LFile::ReadAll(taken), "other");
}

TEST_F(AudioTagData, OnlyKnownFilesAreRead) {
  const std::string tag = "ID3\3\0\0\0\0\0\x0ETIT2\0\0\0\4\0\0\0abc"s;
  EXPECT_EQ(Tags("a.mp3", tag), "TITLE=abc");
  EXPECT_EQ(Tags("a.mp3", tag.substr(0, tag.size() - 1)), "-");
  EXPECT_EQ(Tags("a.txt", tag), "-");
  EXPECT_EQ(Tags("mp3", tag), "-");
  EXPECT_EQ(TagsOf(Path("missing.mp3")), "-");
  std::filesystem::create_directory(Path("folder.mp3"));
  EXPECT_EQ(TagsOf(Path("folder.mp3")), "-");
  EXPECT_EQ(Tags("empty.flac", ""), "-");
}

// Each by the program that its users have; Ä is what a wrong encoding spoils.
struct ToolRow {
  const char *name, *command, *expected;
};
const ToolRow kTools[] = {
    {"a.mp3",
     "lame --quiet --tt Tägel --ta Künstler --tl Album --ty 1998 --tn 3/9 --tg 17 --tc Wort --id3v2-utf16 in.wav",
     "ALBUM=Album|ARTIST=Künstler|COMMENT=Wort|ENCODER=*|GENRE=Rock|LENGTH=1500|TITLE=Tägel|TRACKNUMBER=3/9|YEAR=1998"},
    {"a.mp3", "lame --quiet --id3v1-only --tt Titel --ta Band --tg 18 --tn 4 in.wav",
     "ARTIST=Band|GENRE=Techno|TITLE=Titel|TRACKNUMBER=4"},
    {"a.mp3", "lame --quiet in.wav a.mp3 && id3v2 -2 -t Titel -a Band -A Album -g 5 -y 2003 -T 1/2 -c kurz:Text:deu",
     "ALBUM=Album|ARTIST=Band|COMMENT=Text|GENRE=Funk|TITLE=Titel|TRACKNUMBER=1/2|YEAR=2003"},
    {"a.mp3",
     "ffmpeg -v error -y -i in.wav -metadata title=Tägel -metadata date=2011 -metadata genre=Pop -metadata TBPM=90 "
     "-id3v2_version 4 -bitexact",
     "BPM=90|GENRE=Pop|TITLE=Tägel|YEAR=2011"},
    {"a.wav",
     "ffmpeg -v error -y -i in.wav -metadata title=Tägel -metadata artist=Künstler -metadata date=2012 -bitexact",
     "ARTIST=Künstler|TITLE=Tägel|YEAR=2012"},
    {"a.wav",
     "ffmpeg -v error -y -i in.wav -metadata description=Worte -metadata originator=Wir -metadata "
     "time_reference=5 -write_bext 1 -bitexact",
     nullptr},
    {"a.ogg", "oggenc -Q -t Tägel -a Künstler -c DATE=2013 in.wav -o",
     "ARTIST=Künstler|COMMENT=*|DATE=2013|LENGTH=1500|TITLE=Tägel"},
    {"a.ogg", "opusenc --quiet --title Tägel --artist Künstler in.wav",
     "ARTIST=Künstler|COMMENT=*|ENCODER=*|LENGTH=1500|TITLE=Tägel"},
    {"a.flac", "flac --silent -f -T TITLE=Tägel -T DATE=2014 -T DISCNUMBER=2 -T COMMENT=gut in.wav -o",
     "COMMENT=gut|DISKNUMBER=2|LENGTH=1500|TITLE=Tägel|YEAR=2014"},
    {"a.m4a",
     "ffmpeg -v error -y -i in.wav -c:a aac -metadata title=Tägel -metadata artist=Künstler -metadata track=3/7 "
     "-metadata disc=1/2 -metadata genre=Pop -metadata date=2015 -metadata composer=K -bitexact",
     "ARTIST=Künstler|COMPOSER=K|DISKNUMBER=1|GENRE=Pop|TITLE=Tägel|TRACKNUMBER=3|YEAR=2015"},
    {"a.m4a", "ffmpeg -v error -y -i in.wav -c:a alac -movflags +faststart -metadata title=Tägel -bitexact",
     "TITLE=Tägel"},
};

bool Matches(const std::string& text, const std::string& pattern) {
  const auto star = pattern.find('*');
  if (star == std::string::npos) return text == pattern;
  const auto next = pattern.substr(star + 1, pattern.find('*', star + 1) - star - 1);
  const auto at = next.empty() ? text.size() : text.find(next, star);
  return text.substr(0, star) == pattern.substr(0, star) && at != std::string::npos &&
         Matches(text.substr(at), pattern.substr(star + 1));
}

TEST_F(AudioTagData, ReadsWhatOtherProgramsWrite) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(Run("sox -n -r 48000 -c 2 -b 16 in.wav synth 1.5 sine 440"));
  std::string missing;
  for (const ToolRow& row : kTools) {
    const std::string tool = std::string(row.command).substr(0, std::string(row.command).find(' '));
    if (!Run("command -v " + tool)) {
      missing += " " + tool;
      continue;
    }
    std::filesystem::remove(Path(row.name));
    ASSERT_TRUE(Run("LC_ALL=C.UTF-8 " + std::string(row.command) + " " + row.name)) << Bytes("log");
    if (row.expected) {
      const std::string line = TagsOf(Path(row.name));
      EXPECT_TRUE(Matches(line, row.expected)) << row.command << "\n" << line;
    } else {
      LAudioTagData tags;
      EXPECT_TRUE(tags.ReadTags(Path(row.name), LAudioTagData::ltkBroadcast));
      EXPECT_STREQ(tags.GetParm("COMMENT", ""), "Worte");
      EXPECT_STREQ(tags.GetParm("ORIGINATOR", ""), "Wir");
      EXPECT_EQ(tags.GetInt("TIMEREFLOW", -1), 5);
    }
  }
  if (!missing.empty()) GTEST_SKIP() << "not installed:" << missing;
}

TEST_F(AudioTagData, AFileCutAnywhereIsReadWithoutHarm) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(
      Run("sox -n -r 8000 -b 16 in.wav synth 0.01 sine 440 && "
          "ffmpeg -v error -y -f lavfi -i color=red:s=2x2 -frames:v 1 p.png"));
  const char* const commands[] = {
      "lame --quiet --add-id3v2 --tt T --ta B --tc C --ti p.png in.wav a.mp3", "oggenc -Q -t T in.wav -o a.ogg",
      "flac --silent -T TITLE=T --picture=p.png in.wav -o a.flac", "ffmpeg -v error -i in.wav -metadata title=T a.m4a",
      "ffmpeg -v error -i in.wav -metadata title=T -write_bext 1 a.wav"};
  for (const char* const command : commands) {
    if (!Run("command -v " + std::string(command, std::strcspn(command, " ")))) continue;
    ASSERT_TRUE(Run(command)) << command << Bytes("log");
    const std::string name = "a" + LFile::ExtensionFromPath(command), bytes = Bytes(name);
    ASSERT_EQ(LAudioTagData().ReadTags(Path(name)), true) << name;
    for (std::size_t size = 0; size < std::min<std::size_t>(bytes.size(), 1500); ++size) {
      Put(name, bytes.substr(0, size));
      LAudioTagData tags(LAudioTagData::WithPictures);
      tags.ReadTags(Path(name));
      for (const auto& [field, value] : tags) ASSERT_FALSE(value.empty()) << field;
    }
  }
  EXPECT_TRUE(LFile::NamesInFolder(platform_.folders.GetTempFolder()).empty());
}

// Sizes of 5 GB, with holes: reading them whole would take seconds and memory.
TEST_F(AudioTagData, OnlyTagBytesOfAHugeFileAreRead) {
  const std::int64_t huge = 5'000'000'000;
  const auto put = [&](const std::string& name, const std::string& start, const std::string& end) {
    Put(name, start);
    std::filesystem::resize_file(Path(name), std::uintmax_t(huge));
    std::ofstream(Path(name), std::ios::binary | std::ios::app) << end;
    return Path(name);
  };
  struct rusage before, after;
  ::getrusage(RUSAGE_SELF, &before);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(TagsOf(put("a.mp3", "", "TAG" + Padded("Ende", 124) + '\x11')), "GENRE=Rock|TITLE=Ende");
  const std::string item = Atom("\251nam", Atom("data", Be(1, 4) + "\0\0\0\0T"s));
  const std::string movie = Atom("moov", Atom("udta", Atom("meta", "\0\0\0\0"s + Atom("ilst", item))));
  EXPECT_EQ(TagsOf(put("a.m4a", Atom("ftyp", "M4A ") + Be(1, 4) + "mdat" + Be(huge - 12, 8), movie)), "TITLE=T");
  EXPECT_EQ(TagsOf(put("a.wav", Wave(Chunk("LIST", "INFO" + Chunk("INAM", "T")) + "data\xFF\xFF\xFF\xFF"), "")),
            "TITLE=T");
  EXPECT_EQ(TagsOf(put("b.wav", Wave("data" + Le(0xE0000000, 4)), "")), "-");
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 1);
  ::getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 20000);  // kB
}

}  // namespace
