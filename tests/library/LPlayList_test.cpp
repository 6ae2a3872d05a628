#include "library/LPlayList.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "foundation/LFile.h"
#include "library/LHttpFetcher.h"
#include "support/LTestPlatform.h"

namespace {

std::string PathsOf(const LPlayList& list) {
  std::string all;
  for (int place = 0; place < list.Count(); ++place) all += list.At(place).path + "|";
  return all;
}

std::string OrderOf(const LPlayList& list) {
  std::string all;
  for (int place = 0; place < list.Count(); ++place)
    all += list.At(place).path + std::to_string(list.At(place).index) + " ";
  return all;
}

struct LPlayListTest : testing::Test {
  std::string Write(const std::string& name, const std::string& content) {
    const std::string path = machine.TempPath(name);
    EXPECT_TRUE(LFile::WriteReplacing(path, content));
    return path;
  }
  std::string Load(const std::string& name, const std::string& content, LHttpFetcher* fetcher = nullptr) {
    LPlayList list;
    list.Load(nobody, Write(name, content), fetcher);
    return PathsOf(list);
  }
  std::string Saved(const LPlayList& list, const std::string& name, bool extended = false) {
    EXPECT_TRUE(list.Save(nobody, machine.TempPath(name), extended));
    return LFile::ReadAll(machine.TempPath(name)).value_or("");
  }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
  const std::string folder = LFile::FolderFromPath(machine.TempPath("x"));
};

TEST_F(LPlayListTest, IndexesAreIdentitiesUntilReOrderNumbersThePlaces) {
  LPlayList list;
  for (const char* path : {"a", "b", "c", "d"}) list.AddSingleTrack(path);
  EXPECT_TRUE(list.MoveSingleItem(3, 0));
  EXPECT_TRUE(list.MoveSingleItem(1, 2));
  EXPECT_EQ(OrderOf(list), "d3 b1 a0 c2 ");
  EXPECT_FALSE(list.MoveSingleItem(0, 4));
  EXPECT_TRUE(list.Arrange({2, 3}));  // c and d exchange the places they hold
  EXPECT_EQ(OrderOf(list), "c2 b1 a0 d3 ");
  EXPECT_FALSE(list.Arrange({2, 2}));
  EXPECT_FALSE(list.Arrange({2, 9}));
  EXPECT_TRUE(list.RemoveSingleItem(1));
  EXPECT_FALSE(list.RemoveSingleItem(1));
  EXPECT_EQ(list.AddSingleTrack("e").index, 3);  // the count; d has it, too, and is the one found by it
  EXPECT_EQ(list.Find(3)->path, "d");
  list.ReOrder();
  EXPECT_EQ(OrderOf(list), "c0 a1 d2 e3 ");
  list.Sort([](const LPlayItem& a, const LPlayItem& b) { return a.path < b.path; });
  EXPECT_EQ(OrderOf(list), "a1 c0 d2 e3 ");
  list.SetPath(*list.FindPath("d"), "a");
  EXPECT_EQ(list.FindPath("d"), nullptr);
  EXPECT_TRUE(list.RemoveSingleItem(1));
  EXPECT_EQ(list.FindPath("a")->index, 2);
}

TEST_F(LPlayListTest, ReadsLinesOfPls) {
  EXPECT_EQ(Load("p.pls",
                 "[playlist]\r\n  file1=/a/b.mp3 \r\nFILE2=x\nTitle1=y\nLength1=3\nFile3 = c d.mp3\n"
                 "File4\nFile5=C:\\e.mp3\nFile6=\\\\f\\g\nNumberOfEntries=4"),
            "/a/b.mp3|" + folder + "/ c d.mp3||C:\\e.mp3|\\\\f\\g|");
}

TEST_F(LPlayListTest, CutsLongLinesAndSkipsZeroBytes) {
  const std::string longName = "/" + std::string(5000, 'x');
  EXPECT_EQ(Load("l.m3u", longName + "\n/b\n/c" + std::string(1, '\0') + "d\n/e"),
            longName.substr(0, 4096) + "|/b|/e|");
}

TEST_F(LPlayListTest, ReadsLinesOfM3uAndFetchesOnlyWhatIsNotThere) {
  struct Fetcher : LHttpFetcher {
    int Fetch(LProcessInterface&, const std::string& url, const std::string& file) override {
      urls += url + " ";
      files.push_back(file);
      return url.find("bad") == std::string::npos ? 0 : 7;
    }
    std::string urls;
    std::vector<std::string> files;
  } fetcher;
  Write("my http song.mp3", "x");
  const std::string text =
      "\xEF\xBB\xBF#EXTM3U\n\n   # a comment between blanks\n#EXTINF:3,x\nsub/ä.mp3\nmy http song.mp3\n"
      "HTTP://host/one.mp3?x=/y.z\nhttp://host/bad.ogg\n";
  const std::string local = folder + "/sub/ä.mp3|" + folder + "/my http song.mp3|";
  EXPECT_EQ(Load("m.m3u", text), local);
  const std::string loaded = Load("m.M3U", text, &fetcher);
  EXPECT_EQ(fetcher.urls, "HTTP://host/one.mp3?x=/y.z http://host/bad.ogg ");
  ASSERT_EQ(fetcher.files.size(), 2u);
  EXPECT_EQ(loaded, local + fetcher.files[0] + "|");
  EXPECT_EQ(LFile::ExtensionFromPath(fetcher.files[0]), ".mp3");
  EXPECT_TRUE(LFile::Exists(fetcher.files[0]));
  EXPECT_FALSE(LFile::Exists(fetcher.files[1]));
}

TEST_F(LPlayListTest, ReadsMediaOfWplButDoesNotSaveIt) {
  EXPECT_EQ(
      Load("w.wpl",
           "<?wpl version=\"1.0\"?><smil><head><media src=\"no\"/></head><body><seq><media src=\"a &amp; b.mp3\"/>"
           "<media/><other src=\"no\"/><media src=\"/c.mp3\"/></seq></body></smil>"),
      folder + "/a & b.mp3|/c.mp3|");
  LPlayList list;
  list.AddSingleTrack("/a");
  EXPECT_FALSE(list.Save(nobody, machine.TempPath("n.wpl"), false));
  EXPECT_FALSE(LPlayList::IsPlayListFile("a.wpl"));
  for (const char* name : {"a.pls", "a.M3U", "/x/b.xml"}) EXPECT_TRUE(LPlayList::IsPlayListFile(name)) << name;
}

TEST_F(LPlayListTest, ShortensOnlyPathsThatLeadBack) {
  const struct {
    const char *path, *list, *relative;
  } rows[] = {
      {"/m/a/b.mp3", "/m/l.pls", "a/b.mp3"},
      {"/n/b.mp3", "/m/l.pls", "/n/b.mp3"},
      {"/m", "/m/l.pls", "/m"},
      {"/music/b.mp3", "/m/l.pls", "/music/b.mp3"},
      {"/x/m/b.mp3", "/m/l.pls", "/x/m/b.mp3"},
      {"/m//b.mp3", "/m/l.pls", "/m//b.mp3"},
      {"/b.mp3", "/l.pls", "b.mp3"},
  };
  for (const auto& row : rows) {
    std::string out;
    MakePathRelative(out, row.path, row.list);
    EXPECT_EQ(out, row.relative) << row.path;
  }
}

TEST_F(LPlayListTest, WritesTitlesAndLengthsWhenExtended) {
  // Silence of 2.6 s at 8000 Hz, 8 bits, without tags: the title is the file's name.
  const unsigned frames = 20800;
  std::string wave = "RIFF....WAVEfmt ";
  const auto put = [&wave](unsigned value, int bytes) {
    for (int i = 0; i < bytes; ++i) wave += char(value >> 8 * i & 255);
  };
  for (const auto& [value, bytes] : {std::pair(16u, 4), {1u, 2}, {1u, 2}, {8000u, 4}, {8000u, 4}, {1u, 2}, {8u, 2}})
    put(value, bytes);
  wave += "data";
  put(frames, 4);
  wave += std::string(frames, '\x80');
  const std::string size = {char((wave.size() - 8) & 255), char((wave.size() - 8) >> 8), 0, 0};
  wave.replace(4, 4, size);
  const std::string path = Write("ton.wav", wave);

  LPlayList list;
  list.AddSingleTrack(path);
  list.AddSingleTrack("/no\nline.mp3");
  list.AddSingleTrack(folder + "/#5.mp3");  // relative it would be a comment
  const std::string hash = folder + "/#5.mp3";
  EXPECT_EQ(Saved(list, "e.pls", true), "[playlist]\nFile1=ton.wav\nTitle1=ton.wav\nLength1=3\nFile2=" + hash +
                                            "\nTitle2=#5.mp3\nLength2=0\nNumberOfEntries=2\n\nVersion=2");
  EXPECT_EQ(Saved(list, "e.m3u", true), "#EXTM3U\n#EXTINF:3,ton.wav\nton.wav\n#EXTINF:0,#5.mp3\n" + hash + "\n");
  EXPECT_EQ(Saved(list, "p.m3u"), "ton.wav\n" + hash + "\n");
}

TEST_F(LPlayListTest, AnOddNameSurvivesEveryFormatThatCanHoldIt) {
  const std::string names[] = {
      "quote\"'s.mp3",
      "umlaut äöüß.mp3",
      "decomposed u\u0308.mp3",
      "emoji \U0001F3A7.mp3",
      std::string(251, 'x') + ".mp3",
      "amp &amp; <b>.mp3",
      "100%.mp3",
      "bad \xFF\xC3.mp3",
      "=equals#.mp3",
      "tab\tin.mp3",
  };
  LPlayList list;
  for (const std::string& name : names) {
    list.AddSingleTrack(folder + "/" + name);
    list.AddSingleTrack("/elsewhere/" + name);
  }
  for (const char* file : {"r.pls", "r.m3u", "r.xml"}) {
    LPlayList again;
    Saved(list, file);
    again.Load(nobody, machine.TempPath(file));
    EXPECT_EQ(PathsOf(again), PathsOf(list)) << file;
  }
  for (const char* ending : {"\nfirst", "last\n", "in\nside", "cr\r", "\r\n\r", " blank "}) list.AddSingleTrack(ending);
  LPlayList again;
  Saved(list, "lines.xml");
  again.Load(nobody, machine.TempPath("lines.xml"));
  EXPECT_EQ(PathsOf(again), PathsOf(list));
}

TEST_F(LPlayListTest, LockedAndMissingFilesAddNothing) {
  for (const char* name : {"k.pls", "k.m3u", "k.xml"}) {
    LPlayList list, free;
    const std::string path = machine.TempPath(name);
    list.AddSingleTrack("/a.mp3");
    Saved(list, name);
    {
      const LFileHandle held = LFileHandle::OpenRead(path);
      ASSERT_EQ(::flock(held.Get(), LOCK_EX), 0);
      free.Load(nobody, path);
      EXPECT_TRUE(free.IsEmpty()) << name;
    }
    free.Load(nobody, path);
    EXPECT_EQ(PathsOf(free), "/a.mp3|") << name;
    free.Load(nobody, machine.TempPath(std::string("no-") + name));
    EXPECT_EQ(free.Count(), 1);
  }
}

}  // namespace
