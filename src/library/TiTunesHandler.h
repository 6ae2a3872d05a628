// Takes one play list out of an iTunes library. The file is many megabytes of text in one fixed spelling, so it is searched
// as text and not read as a document.
// Law      the location of a track is the first one behind its key; a play list's ids stand in its first array, which has
//          to come before the next play list.
// Threads  one at a time; the jobs are for a progress dialog
// Failure  a file that cannot be read has no play lists; an unknown id is passed over; a stop leaves nothing behind.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "foundation/LProcessInterface.h"

struct TItunesTrack {
  int id = 0;
  std::string location;  // a file's address at first, then its path
};

struct TItunesPlaylistData {
  std::string name, persistentId;
  std::vector<TItunesTrack> tracks;
};

class TiTunesHandler {
 public:
  static std::string DefaultFolder();  // "iTunes" in the user's music folder

  LProcessResult GetPlaylists(LProcessInterface& process, const std::string& path);
  const std::vector<TItunesPlaylistData>& Playlists() const { return playlists_; }

  // All that is left for one play list: its ids, their locations, the locations as paths.
  LProcessResult LoadPlaylistTrackLocations(LProcessInterface& process, TItunesPlaylistData& list) const;

  LProcessResult GetPlaylistTracks(LProcessInterface& process, TItunesPlaylistData& list) const;
  LProcessResult LoadTracks(LProcessInterface& process, TItunesPlaylistData& list) const;
  static void AdjustLocationStrings(TItunesPlaylistData& list);  // those that give no path go

 private:
  std::string text_;
  std::vector<TItunesPlaylistData> playlists_;
};

namespace TiTunesTexts {
inline constexpr const char* kChooseFile = "iTunes Mediathek auswählen";
inline constexpr const char* kDialogTitle = "iTunes Wiedergabeliste importieren";
inline constexpr const char* kColumn = "Name der Wiedergabeliste";
inline constexpr const char* kHelpPage = "itunesplaylistimport";
inline constexpr const char* kNothingChosen = "Wählen Sie bitte eine Wiedergabeliste aus.";
inline constexpr const char* kNoPlaylists = "In iTunes Mediathek keine Wiedergabelisten gefunden.";
inline constexpr const char* kLoadingTitle = "iTunes Wiedergabeliste wird geladen...";
inline constexpr const char* kTracksTitle = "Wiedergabelistentitel-IDs werden ermittelt...";
inline constexpr const char* kLocationsTitle = "Speicherorte von Wiedergabelistentiteln werden geladen...";
}  // namespace TiTunesTexts
