#include "platform/sqlite/LSqlitePreferences.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <thread>
#include <vector>

#include "foundation/LFile.h"
#include "support/LTestPlatform.h"

namespace {

constexpr int kKills = 12;

std::string File(const LTestPlatform& platform) { return LSqlitePreferences::PathIn(platform.folder); }

TEST(LSqlitePreferences, KeepsEverythingFromOneRunToTheNext) {
  LTestPlatform platform;
  const std::string value = std::string("ä'\"; --\0\n", 10) + std::string(100000, 'x');
  {
    LSqlitePreferences preferences(File(platform));
    preferences.Set("Settings/Long", value);
    preferences.Set("Settings/Empty", "");
    preferences.Set("Settings/Twice", "1");
    preferences.Set("Settings/Twice", "2");
    preferences.Set("Settings/Gone", "1");
    preferences.Delete("Settings/Gone");
    preferences.Set("col/A", "1");
    preferences.Set("COL/b", "1");
    preferences.Set("col2/A", "1");
    preferences.DeleteSection("Col/");
    preferences.SetForApplication("relayo", "Settings/Runs", "1");
  }
  LSqlitePreferences again(File(platform));
  EXPECT_EQ(again.Get("Settings/Long"), value);
  EXPECT_EQ(again.Get("Settings/Empty"), "");
  EXPECT_EQ(again.Get("Settings/Twice"), "2");
  for (const char* gone : {"Settings/Gone", "col/A", "COL/b", "Settings/Runs", "settings/Twice"})
    EXPECT_FALSE(again.Get(gone)) << gone;
  EXPECT_EQ(again.Get("col2/A"), "1");
  EXPECT_EQ(LSqlitePreferences(LSqlitePreferences::PathIn(platform.folder, "relayo")).Get("Settings/Runs"), "1");
}

TEST(LSqlitePreferences, ServesThreadsAndSeesTheChangesOfAnotherCopy) {
  LTestPlatform platform;
  LSqlitePreferences mine(File(platform)), others(File(platform));
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      LSqlitePreferences& store = t % 2 ? mine : others;
      for (int i = 0; i < 25; ++i) {
        store.Set("T" + std::to_string(t) + "/" + std::to_string(i), "1");
        store.Get("T0/0");
      }
    });
  for (std::thread& thread : threads) thread.join();
  others.Set("Settings/New", "1");
  EXPECT_TRUE(platform.WaitUntil([&] { return mine.Get("Settings/New") == "1"; }));
  for (int t = 0; t < 4; ++t)
    for (int i = 0; i < 25; ++i) EXPECT_EQ(mine.Get("T" + std::to_string(t) + "/" + std::to_string(i)), "1");
}

TEST(LSqlitePreferences, SetsADamagedFileAsideAndKeepsWhatCanBeRead) {
  LTestPlatform platform;
  const std::string path = File(platform);
  std::string good;
  {
    LSqlitePreferences preferences(path);
    for (int i = 0; i < 200; ++i) preferences.Set("S/" + std::to_string(i), std::string(200, 'v'));
  }
  good = LFile::ReadAll(path).value_or("");
  ASSERT_GT(good.size(), 30000u);
  std::string torn = good;
  torn.replace(20000, 4096, std::string(4096, '\x55'));
  const struct {
    const char* what;
    std::string content;
    int kept;  // at least, of 200
  } rows[] = {{"text", "Das ist keine Datenbank.\n" + std::string(2000, 'x'), 0},
              {"truncated", good.substr(0, 20480), 30},
              {"torn page", torn, 150}};
  int count = 0;
  for (const auto& row : rows) {
    LFile::WriteReplacing(path, row.content);
    testing::internal::CaptureStderr();
    LSqlitePreferences preferences(path);
    const std::string aside = path + ".damaged" + (count ? std::to_string(count + 1) : "");
    ++count;
    EXPECT_NE(testing::internal::GetCapturedStderr().find(aside), std::string::npos) << row.what;
    EXPECT_EQ(LFile::ReadAll(aside), row.content) << row.what;
    int kept = 0;
    for (int i = 0; i < 200; ++i) kept += preferences.Get("S/" + std::to_string(i)) == std::string(200, 'v');
    EXPECT_GE(kept, row.kept) << row.what;
    preferences.Set("S/New", "1");
    EXPECT_EQ(LSqlitePreferences(path).Get("S/New"), "1") << row.what;
  }
  LFile::WriteReplacing(path, "");
  EXPECT_FALSE(LSqlitePreferences(path).Get("S/New")) << "an empty file is a new one";
}

TEST(LSqlitePreferences, FollowsAFileThatIsRemovedAndOutlivesOneThatCannotBe) {
  LTestPlatform platform;
  LSqlitePreferences preferences(File(platform));
  preferences.Set("S/a", "1");
  LFile::Remove(File(platform));
  preferences.Set("S/b", "2");
  LSqlitePreferences again(File(platform));
  EXPECT_EQ(again.Get("S/a"), "1");
  EXPECT_EQ(again.Get("S/b"), "2");

  testing::internal::CaptureStderr();
  LSqlitePreferences nowhere(platform.TempPath("none/there.sqlite"));
  nowhere.Set("S/a", "1");
  EXPECT_EQ(nowhere.Get("S/a"), "1");
  EXPECT_NE(testing::internal::GetCapturedStderr().find("bis zum Programmende"), std::string::npos);
}

// A child sets a counter and tells each set that came back; it is killed at some moment.
TEST(LSqlitePreferences, LosesNoAcknowledgedSetToAKill) {
  LTestPlatform platform;
  int last = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      LSqlitePreferences preferences(File(platform));
      for (int i = last + 1;; ++i) {
        preferences.Set("S/Count", std::to_string(i));
        if (::write(ends[1], &i, sizeof i) != sizeof i) ::_exit(0);
      }
    }
    ::close(ends[1]);
    const int sets = 1 + kill * 7 % 11;
    for (int i = 0; i < sets; ++i) ASSERT_EQ(::read(ends[0], &last, sizeof last), ssize_t(sizeof last));
    ::usleep(unsigned(kill * 137 % 1000));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    while (::read(ends[0], &last, sizeof last) == ssize_t(sizeof last)) {
    }
    ::close(ends[0]);
    const int kept = std::stoi(LSqlitePreferences(File(platform)).Get("S/Count").value_or("0"));
    EXPECT_GE(kept, last);
    EXPECT_LE(kept, last + 1);
    last = kept;
  }
}

}  // namespace
