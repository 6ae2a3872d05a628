#include "library/TLibraryFile.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/LFile.h"
#include "foundation/LLockFile.h"
#include "support/LTestPlatform.h"

namespace {

using State = LPlayListXmlState;

struct TLibraryFileTest : testing::Test {
  // Tracks "/0" to "/n-1", each with this comment.
  static void Fill(LPlayList& list, int count, const std::string& comment) {
    list.Clear();
    for (int i = 0; i < count; ++i) list.AddSingleTrack("/" + std::to_string(i)).fields.SetString("comment", comment);
  }
  int CountIn(const std::string& file) {
    LPlayList list;
    return LoadXml(nobody, file, list) == State::Complete ? list.Count() : -1;
  }
  void Save(int count, const std::string& comment) {
    LPlayList list;
    TLibraryFile file(path);
    file.Load(nobody, list);
    Fill(list, count, comment);
    ASSERT_EQ(file.Save(nobody, list).result, TLibrarySaved::Written);
  }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
  const std::string path = LFile::MakePath(machine.TempPath("Library"), "library.xml");
};

TEST_F(TLibraryFileTest, KeepsTheOneBeforeAndFollowsLinks) {
  Save(1, "a");
  EXPECT_FALSE(LFile::Exists(path + ".bak"));
  Save(2, "b");
  Save(3, "c");
  EXPECT_EQ(CountIn(path), 3);
  EXPECT_EQ(CountIn(path + ".bak"), 2);
  EXPECT_FALSE(LFile::Exists(path + ".new"));
  EXPECT_FALSE(LFile::Exists(path + ".lock"));
  const std::string real = machine.TempPath("real.xml");
  ASSERT_EQ(std::rename(path.c_str(), real.c_str()), 0);
  ASSERT_EQ(::symlink("../real.xml", path.c_str()), 0);
  Save(4, "d");
  struct stat info {};
  ASSERT_EQ(::lstat(path.c_str(), &info), 0);
  EXPECT_TRUE(S_ISLNK(info.st_mode));
  EXPECT_EQ(CountIn(real), 4);
}

TEST_F(TLibraryFileTest, ADamagedFileIsSetAsideAndTheMostOfItAndItsBackupIsThereAgain) {
  Save(3, "backup");
  Save(5, "now");
  const std::string whole = LFile::ReadAll(path).value_or("");
  const struct {
    std::string content;
    int tracks;
    const char* comment;
    const char* aside;
  } rows[] = {
      {whole.substr(0, whole.size() - 30), 5, "now", ".damaged"},  // cut within the fifth
      {whole.substr(0, whole.size() / 3), 3, "backup", ".damaged1"},
      {"", 3, "backup", ".damaged2"},
      {"SQLite format 3", 3, "backup", ".damaged3"},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(LFile::WriteReplacing(path, row.content));
    TLibraryFile file(path);
    LPlayList list;
    const TLibraryLoaded loaded = file.Load(nobody, list);
    EXPECT_EQ(loaded.state, State::Damaged);
    EXPECT_EQ(loaded.setAside, path + row.aside);
    EXPECT_EQ(LFile::ReadAll(path + row.aside), row.content);
    EXPECT_EQ(list.Count(), row.tracks);
    EXPECT_EQ(CountIn(path), row.tracks);
    EXPECT_EQ(list.At(0).fields.GetParm("comment", ""), std::string(row.comment));
    EXPECT_EQ(CountIn(path + ".bak"), 3);
  }
  // A file that is gone comes from the backup.
  LFile::Remove(path);
  TLibraryFile file(path);
  LPlayList list;
  EXPECT_TRUE(file.Load(nobody, list).isFromBackup);
  EXPECT_EQ(list.Count(), 3);
}

TEST_F(TLibraryFileTest, TwoCopiesKeepEachOthersTracksAndEdits) {
  Save(4, "old");
  TLibraryFile first(path), second(path);
  LPlayList one, two;
  first.Load(nobody, one);
  second.Load(nobody, two);
  one.AddSingleTrack("/one");
  one.Find(0)->fields.SetString("comment", "by one");
  one.Find(1)->fields.SetString("comment", "by one");
  one.RemoveSingleItem(3);
  two.AddSingleTrack("/two");
  two.Find(1)->fields.SetString("comment", "by two");
  EXPECT_FALSE(first.Save(nobody, one).isMerged);
  EXPECT_TRUE(second.Save(nobody, two).isMerged);
  EXPECT_TRUE(first.Save(nobody, one).isMerged);
  EXPECT_FALSE(first.Save(nobody, one).isMerged);
  // What one deleted two still had: it is there again, rather than that either loses a track.
  LPlayList both;
  first.Load(nobody, both);
  std::string all;
  for (int place = 0; place < both.Count(); ++place)
    all += both.At(place).path + "=" + both.At(place).fields.GetParm("comment", "") + " ";
  EXPECT_EQ(all, "/0=by one /1=by two /2=old /one= /3=old /two= ");
}

TEST_F(TLibraryFileTest, AFullDiskOrALockLeavesTheOldFile) {
  Save(2, "old");
  LPlayList list;
  TLibraryFile file(path);
  file.Load(nobody, list);
  Fill(list, 5000, "new");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100000, 100000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(file.Save(nobody, list).result == TLibrarySaved::Failed ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(CountIn(path), 2);
  EXPECT_FALSE(LFile::Exists(path + ".new"));
  LLockFile held;
  ASSERT_TRUE(held.Lock(path + ".lock"));
  EXPECT_EQ(file.Save(nobody, list).result, TLibrarySaved::Locked);
  EXPECT_EQ(CountIn(path), 2);
  held.Unlock();
  EXPECT_EQ(file.Save(nobody, list).result, TLibrarySaved::Written);
  EXPECT_EQ(CountIn(path), 5000);
}

// A child saves lists of growing length and tells each that Save has confirmed, until it is killed anywhere.
TEST_F(TLibraryFileTest, AKillAtAnyMomentLosesNoConfirmedSave) {
  constexpr int kRounds = 60;
  int confirmed = 0;
  for (int round = 0; round < kRounds; ++round) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      LPlayList list;
      TLibraryFile file(path);
      file.Load(nobody, list);
      for (;;) {
        list.AddSingleTrack("/" + std::to_string(list.Count()));
        const int count = list.Count();
        if (file.Save(nobody, list).result != TLibrarySaved::Written) ::_exit(1);
        if (::write(pipe[1], &count, sizeof count) != sizeof count) ::_exit(1);
      }
    }
    ::close(pipe[1]);
    int count = 0;
    ASSERT_EQ(::read(pipe[0], &count, sizeof count), ssize_t(sizeof count));
    ::usleep(unsigned(round * 977 % 6000));
    ::kill(child, SIGKILL);
    do confirmed = count;
    while (::read(pipe[0], &count, sizeof count) == ssize_t(sizeof count));
    ::close(pipe[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    const int found = CountIn(path);
    ASSERT_TRUE(found == confirmed || found == confirmed + 1) << found << " of " << confirmed;
  }
}

}  // namespace
