#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <thread>
#include <vector>

#include "foundation/LFile.h"
#include "foundation/LSharedSettings.h"
#include "foundation/LXMLFile.h"
#include "foundation/TSettings.h"
#include "support/LTestPlatform.h"

namespace {

std::string Value(const std::string& file, const char* section, const char* key) {
  std::string out;
  LXMLSettingGetString(file, section, key, "none", out);
  return out;
}

TEST(UserSettings, FollowTheFirstCharacterAndTheSlashOfASection) {
  LTestPlatform platform;
  const struct {
    const char* text;
    bool off, on;  // as read with the default off and on
  } rows[] = {{"", false, true}, {"1", true, true}, {"0", false, false}, {"0x", false, false}, {"nein", true, true}};
  for (const auto& row : rows) {
    LUserSettingSetString("Settings", "X", row.text);
    EXPECT_EQ(LUserSettingGetBool("Settings", "X", false), row.off) << row.text;
    EXPECT_EQ(LUserSettingGetBool("Settings", "X", true), row.on) << row.text;
  }
  LUserSettingSetString("CustomMidiList/", "a", "1");
  EXPECT_EQ(LUserSettingGetString("CustomMidiList", "a"), "1");
  LUserSettingSetString("customMIDIlist", "b", "2");
  LUserSettingSetString("CustomMidiListe", "a", "3");
  LUserSettingDeleteSection("CUSTOMMidiList");
  EXPECT_EQ(LUserSettingGetString("CustomMidiList", "a", "none"), "none");
  EXPECT_EQ(LUserSettingGetString("customMIDIlist", "b", "none"), "none");
  EXPECT_EQ(LUserSettingGetString("CustomMidiListe", "a", "none"), "3");
  LSettingForApplicationSetBool("relayo", "Settings", "Runs", true);
  EXPECT_EQ(LUserSettingGetString("Settings", "Runs", "none"), "none");
}

TEST(UserSettings, AreBroughtIntoTheirRange) {
  LTestPlatform platform;
  const struct {
    const char* text;
    int seconds;  // of 2 to 300, 8 by default
  } rows[] = {{"", 8}, {"1", 2}, {"-99999999999999999999", 2}, {"301", 300}, {"4294967304", 300}, {"12.7", 12}};
  for (const auto& row : rows) {
    LUserSettingSetString("Settings", "CrossFadeTime", row.text);
    EXPECT_EQ(TSettings::kCrossFadeTime.Get(), row.seconds) << row.text;
  }
  EXPECT_EQ(TGlobalSettings::GetTracksPlayedCount(), 0);
  EXPECT_EQ(TGlobalSettings::GetCrossfadeShiftValue(), 2);
}

TEST(SharedSettings, ChangeOneValueAndKeepTheRest) {
  LTestPlatform platform;
  const std::string path = LSharedSettingsPath();
  EXPECT_EQ(Value(path, "ComponentVersions", "mp3el2"), "none");
  EXPECT_TRUE(LSharedSettingSetString("ComponentVersions", "mp3el2", "1.0 \"<&>\"\r\n"));
  EXPECT_TRUE(LSharedSettingSetString("ComponentVersions", "amrdec2", "2"));
  EXPECT_TRUE(LSharedSettingSetString("ComponentVersions", "amrdec2", "3"));
  EXPECT_EQ(LFile::ReadAll(path),
            "<ComponentVersions>\n\t<mp3el2 value=\"1.0 &quot;&lt;&amp;&gt;&quot;&#13;\n\"/>\n"
            "\t<amrdec2 value=\"3\"/>\n</ComponentVersions>\n");
  EXPECT_EQ(Value(path, "ComponentVersions", "mp3el2"), "1.0 \"<&>\"\r\n");
  EXPECT_NE(LFile::ReadAll(path + ".bak").value_or("").find("value=\"2\""), std::string::npos);

  // Damaged: reads as empty; the next set replaces it and leaves it beside.
  LFile::WriteReplacing(path, "<ComponentVersions><amrdec2 value=\"3\"/>");
  EXPECT_EQ(Value(path, "ComponentVersions", "amrdec2"), "none");
  EXPECT_TRUE(LSharedSettingSetString("S", "k", "v"));
  EXPECT_EQ(LFile::ReadAll(path), "<S>\n\t<k value=\"v\"/>\n</S>\n");
  EXPECT_EQ(LFile::ReadAll(path + ".bak"), "<ComponentVersions><amrdec2 value=\"3\"/>");
}

TEST(SharedSettings, LoseNoValueToAnotherWriter) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("folder/settings.xml");
  std::vector<std::thread> writers;
  writers.reserve(3);
  for (int writer = 0; writer < 3; ++writer)
    writers.emplace_back([&, writer] {
      for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(LXMLSettingSetString(path, "S", ("k" + std::to_string(10 * writer + i)).c_str(), "v"));
    });
  for (std::thread& writer : writers) writer.join();
  for (int i = 0; i < 30; ++i) EXPECT_EQ(Value(path, "S", ("k" + std::to_string(i)).c_str()), "v") << i;
}

TEST(HiddenSettings, StandInTheUsersFolder) {
  LTestPlatform platform;
  const char* before = std::getenv("HOME");
  const std::string home = before ? before : "/";
  ::setenv("HOME", platform.folder.c_str(), 1);
  EXPECT_TRUE(LUserHiddenSettingSetString("StockData", "version", "7"));
  EXPECT_EQ(Value(platform.TempPath(".drelmsoftware/tavi.xml"), "StockData", "version"), "7");
  ::setenv("HOME", home.c_str(), 1);
}

TEST(XMLFile, TellsWhyAFileDoesNotLoad) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("x.xml"), folder = platform.TempPath("folder");
  LXMLDocument document;
  std::string message;
  EXPECT_EQ(LXMLLoadFile(path, document, message), lxfMissing);
  EXPECT_EQ(message, "Datei nicht vorhanden: " + path);
  ASSERT_EQ(::mkdir(folder.c_str(), 0700), 0);
  EXPECT_EQ(LXMLLoadFile(folder, document, message), lxfUnreadable);
  EXPECT_EQ(message, "Kann XML-Datei nicht öffnen: " + folder);
  // A hole larger than any memory.
  ASSERT_TRUE(LFileHandle::OpenReadWriteShared(path, true).Truncate(std::int64_t(1) << 42));
  EXPECT_EQ(LXMLLoadFile(path, document, message), lxfNoMemory);
  EXPECT_EQ(message, "Nicht genügend Speicher verfügbar, um " + path + " zu laden");
  EXPECT_FALSE(LXMLSettingSetString(path, "S", "k", "v")) << "what cannot be read is not replaced";
}

}  // namespace
