#include "library/TiTunesHandler.h"

#include <gtest/gtest.h>

#include "foundation/LFile.h"
#include "support/LTestPlatform.h"

namespace {

std::string Track(int id, const std::string& location) {
  const std::string number = std::to_string(id);
  return "<key>" + number + "</key>\n<dict>\n<key>Track ID</key><integer>" + number +
         "</integer>\n<key>Name</key><string>N" + number + "</string>\n" +
         (location.empty() ? "" : "<key>Location</key><string>" + location + "</string>\n") + "</dict>\n";
}

std::string List(const std::string& name, const std::string& id, const std::vector<std::string>& tracks) {
  std::string text =
      "<dict><key>Name</key><string>" + name + "</string><key>Playlist Persistent ID</key><string>" + id + "</string>";
  if (tracks.empty()) return text + "</dict>\n";
  text += "<key>Playlist Items</key>\n<array>\n";
  for (const std::string& track : tracks) text += "<dict><key>Track ID</key><integer>" + track + "</integer></dict>\n";
  return text + "</array></dict>\n";
}

struct TiTunesHandlerTest : testing::Test {
  // The paths of each play list as "name:path|path| ".
  std::string Import(const std::string& content) {
    const std::string path = machine.TempPath("iTunes Library.xml");
    EXPECT_TRUE(LFile::WriteReplacing(path, content));
    TiTunesHandler handler;
    EXPECT_EQ(handler.GetPlaylists(nobody, path), lprDone);
    std::string all;
    for (TItunesPlaylistData list : handler.Playlists()) {
      EXPECT_EQ(handler.LoadPlaylistTrackLocations(nobody, list), lprDone);
      all += list.name + ":";
      for (const TItunesTrack& track : list.tracks) all += track.location + "|";
      all += " ";
    }
    return all;
  }
  std::string Adjusted(const std::string& location) {
    TItunesPlaylistData list{"", "", {{1, location}}};
    TiTunesHandler::AdjustLocationStrings(list);
    return list.tracks.empty() ? "-" : list.tracks[0].location;
  }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
};

TEST_F(TiTunesHandlerTest, TakesTheTracksOfEachPlayList) {
  const std::string text = "<plist><dict><key>Tracks</key><dict>\n" + Track(101, "file://localhost/m/1.mp3") +
                           Track(7, "file://localhost/m/7%20b.mp3") + Track(10, "file://localhost/m/10.mp3") +
                           "</dict><key>Playlists</key><array>" +
                           List("R&amp;B", "AAAA", {"7", "10", "999", "x", "7"}) + List("Leer", "BBBB", {}) +
                           List("Alle", "CCCC", {"101"}) + "</array></dict></plist>";
  EXPECT_EQ(Import(text), "R&amp;B:/m/7 b.mp3|/m/10.mp3|/m/7 b.mp3| Leer: Alle:/m/1.mp3| ");
  for (std::size_t size = 0; size < text.size(); size += 7) Import(text.substr(0, size));
  EXPECT_EQ(Import(""), "");
  EXPECT_EQ(Import("<key>Playlists</key><key>Name</key><string>x"), "");
  TiTunesHandler handler;
  EXPECT_EQ(handler.GetPlaylists(nobody, machine.TempPath("none.xml")), lprDone);
  EXPECT_TRUE(handler.Playlists().empty());
}

TEST_F(TiTunesHandlerTest, TurnsAddressesIntoPaths) {
  const std::string plus = machine.TempPath("a+b.mp3"), amp = machine.TempPath("c&d.mp3");
  ASSERT_TRUE(LFile::WriteReplacing(plus, "x") && LFile::WriteReplacing(amp, "x"));
  const struct {
    std::string location, path;
  } rows[] = {
      {"file://localhost/m/a%C3%A4%c3%b6.mp3", "/m/aäö.mp3"},
      {"file://localhost/m/a+b", "/m/a b"},
      {"file://localhost/m/%zz%4", "/m/" + std::string(1, '\0')},  // digits that are none count as 0
      {"file://localhost/m/x%2", "/m/x"},
      {"file://localhost/m/x%", "/m/x"},
      {"file://localhost" + plus, plus},
      {"file://" + plus, plus},
      {"file://" + machine.TempPath("c&#38;d.mp3"), amp},
      {"file://localhost" + machine.TempPath("c&amp;d.mp3"), amp},
      {"short", ""},
  };
  for (const auto& row : rows) {
    const bool isPath = !row.path.empty() && row.path.find('\0') == std::string::npos;
    EXPECT_EQ(Adjusted(row.location), isPath ? row.path : "-") << row.location;
  }
}

}  // namespace
