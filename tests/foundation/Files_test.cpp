#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPreferences.h"
#include "foundation/LStartUp.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"
#include "support/LTestPlatform.h"

namespace {

TEST(LFile, TakesPathsApart) {
  const struct {
    const char *path, *folder, *title, *extension;
  } kCases[] = {{"/a/b.c/song.tar.wav", "/a/b.c", "song.tar", ".wav"},
                {"song", "", "song", ""},
                {"/song.mp3", "/", "song", ".mp3"},
                {"/x/.hidden", "/x", ".hidden", ""},
                {"/x/", "/x", "", ""},
                {"a.b/c", "a.b", "c", ""}};
  for (const auto& c : kCases) {
    EXPECT_EQ(LFile::FolderFromPath(c.path), c.folder) << c.path;
    EXPECT_EQ(LFile::TitleFromPath(c.path), c.title) << c.path;
    EXPECT_EQ(LFile::ExtensionFromPath(c.path), c.extension) << c.path;
  }
}

TEST(LFile, NamesAreFitForAnyFileSystem) {
  EXPECT_EQ(LFile::PreprocessName("AC/DC: \"Live\" <1>?*|\\\n"), "ACDC Live 1");
  for (const char* bad : {"", ".", "..", "///", "\t"}) EXPECT_EQ(LFile::PreprocessName(bad), "_") << bad;
  std::string umlauts;
  for (int i = 0; i < 150; ++i) umlauts += "ü";
  EXPECT_EQ(LFile::PreprocessName(umlauts).size(), 200u);
  EXPECT_EQ(LFile::PreprocessName("x" + umlauts).size(), 199u);  // no half character
}

TEST(LFile, ReplacingKeepsTheOldFileUntilTheNewOneIsWhole) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("list.xml"), link = platform.TempPath("link.xml");
  ASSERT_TRUE(LFile::WriteReplacing(path, "old"));
  ASSERT_EQ(::symlink(path.c_str(), link.c_str()), 0);
  ASSERT_TRUE(LFile::WriteReplacing(link, "new"));
  EXPECT_EQ(LFile::ReadAll(path), "new");
  struct stat info {};
  ASSERT_EQ(::lstat(link.c_str(), &info), 0);
  EXPECT_TRUE(S_ISLNK(info.st_mode));
  EXPECT_EQ(LFile::NamesInFolder(platform.folder), (std::vector<std::string>{"link.xml", "list.xml"}));
  EXPECT_FALSE(LFile::WriteReplacing(platform.TempPath("none/list.xml"), "x"));
  EXPECT_FALSE(LFile::ReadAll(platform.folder).has_value());
}

TEST(LFile, ALockOfAnotherHolderIsSeen) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("mix.wav");
  {
    const LFileHandle writer = LFileHandle::OpenReadWriteShared(path, true);
    ASSERT_TRUE(writer.IsOpen());
    EXPECT_TRUE(LFile::IsLockedByOther(path));
  }
  EXPECT_FALSE(LFile::IsLockedByOther(path));
}

TEST(LFolders, OneDataFolderHoldsEverythingAndIsPrivate) {
  LTestPlatform platform;
  const LFolders folders(platform.TempPath("data"));
  for (const std::string& folder :
       {folders.GetUserDataFolderApp(), folders.GetTempFolder(), folders.GetSharedDataFolderApp(),
        folders.GetMusicFolder(), folders.GetUserDataFolderAppSubFolder("Library")}) {
    struct stat info {};
    ASSERT_EQ(::stat(folder.c_str(), &info), 0) << folder;
    EXPECT_EQ(info.st_mode & 0777, 0700u) << folder;
    EXPECT_EQ(folder.rfind(platform.folder, 0), 0u);
  }
}

TEST(StartUp, TakesOverTheOldSharedFolderOnce) {
  LTestPlatform platform;
  ::setenv("XDG_DATA_DIRS", (platform.TempPath("system") + ":/usr/share").c_str(), 1);
  ::setenv("XDG_DATA_HOME", platform.TempPath("home").c_str(), 1);
  const LFolders folders;
  const std::string old = folders.GetOldSharedDataFolderAppWithNoCreation();
  ASSERT_TRUE(LFile::CreateFolder(old, 0755));
  ASSERT_TRUE(LFile::WriteReplacing(LFile::MakePath(old, "SharedSettings.xml"), "first"));
  LFileMigrateSharedSettings(folders);
  const std::string now = LFile::MakePath(folders.GetSharedDataFolderApp(), "SharedSettings.xml");
  EXPECT_EQ(LFile::ReadAll(now), "first");
  LFile::WriteReplacing(LFile::MakePath(old, "SharedSettings.xml"), "second");
  LFileMigrateSharedSettings(folders);
  EXPECT_EQ(LFile::ReadAll(now), "first");
  ::unsetenv("XDG_DATA_DIRS");
  ::unsetenv("XDG_DATA_HOME");
}

TEST(Settings, ReadTheirDefaultsAndTheirFirstCharacter) {
  LTestPlatform platform;
  const TSettingBool off{"S", "off", false}, on{"S", "on", true};
  EXPECT_TRUE(on.Get());
  EXPECT_FALSE(off.Get());
  const struct {
    const char* stored;
    bool off, on;
  } kCases[] = {{"", false, true}, {"0", false, false}, {"1", true, true}, {"0x", false, false}, {"yes", true, true}};
  for (const auto& c : kCases) {
    LUserSettingSetString("S", "off", c.stored);
    LUserSettingSetString("S/", "on", c.stored);  // a section may bring its slash
    EXPECT_EQ(off.Get(), c.off) << c.stored;
    EXPECT_EQ(on.Get(), c.on) << c.stored;
  }
  EXPECT_EQ(TSettings::kCrossFadeShiftValue.Get(), 2);
  LUserSettingSetString("Settings", "CrossFadeShiftValue", "1000");
  EXPECT_EQ(TSettings::kCrossFadeShiftValue.Get(), 100);
  LUserSettingSetString("Settings", "CrossFadeShiftValue", "");
  EXPECT_EQ(TSettings::kCrossFadeShiftValue.Get(), 2);
}

TEST(LText, NumbersAreWholeAndNeverDependOnTheLanguage) {
  EXPECT_EQ(LText::ToDouble("1.5"), 1.5);
  for (const char* bad : {"", " 1", "1,5", "1.5x", "nan", "inf", "0x10"}) EXPECT_FALSE(LText::ToDouble(bad)) << bad;
  EXPECT_EQ(LText::ToInt("-12"), -12);
  for (const char* bad : {"", "12 ", "1.0", "99999999999999999999"}) EXPECT_FALSE(LText::ToInt(bad)) << bad;
  EXPECT_EQ(LText::CutUtf8("aüb", 2), "a");
  EXPECT_EQ(LText::Trim(" \t x y \r\n"), "x y");
}

}  // namespace
