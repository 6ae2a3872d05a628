#include "library/TLibraryAdding.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "library/TTrackFields.h"
#include "support/LTestPlatform.h"

namespace {

// Files ending in ".mp3" and ".flac" are sounds, the second kind is converted; one with "bad" in its name does not open.
struct Reader : TTrackReader {
  bool IsSupported(const std::string& path) override { return path.ends_with(".mp3") || NeedConvert(path); }
  bool NeedConvert(const std::string& path) override { return path.ends_with(".flac"); }
  std::string CachedPath(const std::string& path) override { return path + ".cached"; }
  bool Open(LProcessInterface&, const std::string& path, TTrackFacts& facts) override {
    facts.endSample = 1000;
    facts.sampleRate = 48000;
    return path.find("bad") == std::string::npos && LFile::Exists(path);
  }
  void ReadTags(const std::string& path, TTrackFacts& facts) override {
    if (path.find("tagged") != std::string::npos) facts = {facts.endSample, facts.sampleRate, "T", "A", "L", "K"};
  }
};

struct Host : TLibraryHost {
  LProcessResult Convert(LProcessInterface&, const std::string& path) override {
    if (path.find("broken") != std::string::npos) return lprFailed;
    return LFile::WriteReplacing(path + ".cached", "wave") ? lprDone : lprStopped;
  }
  bool FindTempo(const std::string& path, int sampleRate, TTrackTempo& tempo) override {
    tempo = {125, sampleRate / 2};
    return path.find("tagged") != std::string::npos;
  }
  void Tell(const char* what, const std::string& path) { told += what + LFile::NameFromPath(path) + " "; }
  void TellDuplicate(const std::string& path) override { Tell("duplicate ", path); }
  void TellNotLoaded(const std::string& path) override { Tell("refused ", path); }
  void TellNoTracks(const std::string& path) override { Tell("empty ", path); }
  std::string told;
};

struct TLibraryAddingTest : testing::Test {
  std::string Write(const std::string& name, const std::string& content = "x") {
    const std::string path = machine.TempPath(name);
    LFile::CreateFolder(LFile::FolderFromPath(path), 0700);
    EXPECT_TRUE(LFile::WriteReplacing(path, content));
    return path;
  }
  template <class Job>
  LProcessResult Run(Job job) {
    return Process(nobody, job);
  }
  std::string Names() const {
    std::string all;
    for (int place = 0; place < library.List().Count(); ++place)
      all += LFile::NameFromPath(library.List().At(place).path) + " ";
    return all;
  }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
  TAudioLibrary library{machine.TempPath("library.xml")};
  Reader reader;
  Host host;
  TLibraryAdding adding{library, reader, host};
};

TEST_F(TLibraryAddingTest, ATrackGetsItsFieldsFromTagsFileAndTempoRecord) {
  Run(DJAddFile{adding, Write("plain.mp3")});
  Run(DJAddFile{adding, Write("tagged.flac")});
  const char* const plain[] = {"title",      "plain.mp3", "artist",        "Unbekannt", "album",      "Unbekannt",
                               "comment",    "",          "bpm",           "--",        "beatoffset", "0",
                               "playtimes",  "0",         "version",       "1",         "length",     "1000",
                               "samplerate", "48000",     "filepathvalid", "1",         "feedto",     "Deck A"};
  const char* const tagged[] = {
      "title", "T",      "artist",     "A",     "album",  "L",      "comment",          "K",
      "bpm",   "125.00", "beatoffset", "24000", "feedto", "Deck B", "originalfilepath", nullptr};
  ASSERT_EQ(Names(), "plain.mp3 tagged.flac.cached ");
  for (std::size_t i = 0; i < std::size(plain); i += 2)
    EXPECT_STREQ(library.List().At(0).fields.GetParm(plain[i], "none"), plain[i + 1]);
  for (std::size_t i = 0; i < std::size(tagged); i += 2)
    EXPECT_EQ(library.List().At(1).fields.GetParm(tagged[i], "none"),
              tagged[i + 1] ? std::string(tagged[i + 1]) : machine.TempPath("tagged.flac"));
  EXPECT_EQ(library.List().At(0).fields.GetCount(), 12u);
}

TEST_F(TLibraryAddingTest, DuplicatesAndWhatCannotBePlayedAreToldAndLeftOut) {
  const std::string flac = Write("a.flac");
  for (const std::string& path : {Write("a.mp3"), flac, Write("a.mp3"), flac, Write("bad.mp3"), Write("broken.flac"),
                                  Write("a.txt"), Write("none.m3u", "#EXTM3U\n"), machine.TempPath("gone.mp3")})
    EXPECT_EQ(Run(DJAddFile{adding, path}), lprDone);
  EXPECT_EQ(Names(), "a.mp3 a.flac.cached ");
  EXPECT_EQ(host.told,
            "duplicate a.mp3 duplicate a.flac refused bad.mp3 refused broken.flac empty none.m3u refused gone.mp3 ");
}

TEST_F(TLibraryAddingTest, FoldersAreWalkedOnceWithoutResourceForks) {
  for (const char* name :
       {"f/b.mp3", "f/a.mp3", "f/x.txt", "f/list.m3u", "f/__MACOSX/no.mp3", "f/s/c.mp3", "f/s/__MACOSX/no.mp3"})
    Write(name, "/elsewhere.mp3\n");
  const std::string folder = machine.TempPath("f");
  ASSERT_EQ(::symlink(folder.c_str(), (folder + "/s/loop").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (folder + "/dangling.mp3").c_str()), 0);
  ASSERT_EQ(::mkfifo((folder + "/pipe.mp3").c_str(), 0600), 0);
  EXPECT_EQ(Run(DJAddFolder{adding, folder}), lprDone);
  EXPECT_EQ(Names(), "a.mp3 b.mp3 c.mp3 ");

  std::string deep = machine.TempPath("d");
  for (int i = 0; i < 70; ++i) {
    deep += "/x";
    Write(deep.substr(machine.TempPath("").size()) + "/" + std::to_string(i) + ".mp3");
  }
  Run(DJAddFolder{adding, machine.TempPath("d")});
  EXPECT_EQ(library.List().Count(), 3 + 64);
}

TEST_F(TLibraryAddingTest, ListsWithinListsEndAndDiscTracksAreMarked) {
  Write("x.mp3");
  Write("self.m3u", "self.m3u\nother.pls\nx.mp3\n");
  Write("other.pls", "File1=self.m3u\nFile2=y.mp3\n");
  Write("y.mp3");
  for (int i = 0; i < 12; ++i) {
    Write("l" + std::to_string(i) + ".m3u", LText::Format("l%d.m3u\n%d.mp3\n", i + 1, i));
    Write(std::to_string(i) + ".mp3");
  }
  DJAddDroppedFileData job{adding, {machine.TempPath("self.m3u"), "/cd/Track01.CDA", machine.TempPath("l0.m3u")}};
  EXPECT_EQ(Process(nobody, job), lprDone);
  EXPECT_TRUE(job.hasDiscTrack);
  EXPECT_EQ(Names(), "y.mp3 x.mp3 7.mp3 6.mp3 5.mp3 4.mp3 3.mp3 2.mp3 1.mp3 0.mp3 ");
}

TEST_F(TLibraryAddingTest, ItemsOfAnXmlListKeepTheirFieldsEvenWhenLost) {
  const std::string here = Write("here.mp3"), flac = Write("there.flac");
  LPlayList list;
  for (const std::string& path : {here, std::string("/lost.mp3"), flac, here})
    list.AddSingleTrack(path).fields.SetString("cue", "keep");
  ASSERT_TRUE(list.Save(nobody, machine.TempPath("l.xml"), false));
  EXPECT_EQ(Run(DJAddPlayList{adding, machine.TempPath("l.xml")}), lprDone);
  EXPECT_EQ(Names(), "here.mp3 lost.mp3 there.flac.cached ");
  EXPECT_EQ(host.told, "");
  const bool valid[] = {true, false, true};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(IsTrackValid(library.List().At(i)), valid[i]) << i;
    EXPECT_STREQ(library.List().At(i).fields.GetParm("cue"), "keep");
  }
  EXPECT_EQ(TrackOriginalPath(library.List().At(2)), flac);
}

}  // namespace
