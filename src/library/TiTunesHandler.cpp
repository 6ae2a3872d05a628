#include "library/TiTunesHandler.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"

namespace {

constexpr auto kNone = std::string_view::npos;
constexpr std::uint64_t kMaxFileBytes = std::uint64_t(1) << 30;
constexpr std::string_view kListsKey = "<key>Playlists</key>";
constexpr std::string_view kNameKey = "<key>Name</key><string>";
constexpr std::string_view kPersistentIdKey = "<key>Playlist Persistent ID</key>";
constexpr std::string_view kLocationKey = "<key>Location</key><string>";
constexpr std::string_view kStringEnd = "</string>";
constexpr std::string_view kLocalHost = "file://localhost", kNoHost = "file://";

// The text between two spellings from a position on; the position moves behind it. False: there is no more.
bool TakeBetween(std::string_view text, std::size_t& at, std::string_view begin, std::string_view end,
                 std::string_view& found) {
  const auto first = text.find(begin, at);
  if (first == kNone) return false;
  const auto last = text.find(end, first + begin.size());
  if (last == kNone) return false;
  found = text.substr(first + begin.size(), last - first - begin.size());
  at = last + end.size();
  return true;
}

bool ToId(std::string_view text, int& id) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  return error == std::errc{} && end == text.data() + text.size();
}

int HexDigit(char c) {
  return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : 0;
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != kNone; at = text.find(from, at + to.size())) text.replace(at, from.size(), to);
}

enum Plus { PlusIsBlank, PlusStays };

std::string Decode(std::string_view text, Plus plus) {
  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      path += text[i] == '+' && plus == PlusIsBlank ? ' ' : text[i];
      continue;
    }
    if (i + 2 >= text.size()) break;
    path += char(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
    i += 2;
  }
  return path;
}

// Of the ways in which the address may be meant, the first by which there is a file; if there is none, the first.
std::string PathOf(std::string location) {
  ReplaceAll(location, "&#38;", "&");
  ReplaceAll(location, "&amp;", "&");
  const std::string_view text = location;
  const std::string_view local = text.substr(std::min(kLocalHost.size(), text.size()));
  const std::string usual = Decode(local, PlusIsBlank);
  std::vector<std::string> ways{usual, Decode(local, PlusStays)};
  if (text.starts_with("file:///"))
    for (const Plus plus : {PlusIsBlank, PlusStays}) ways.push_back(Decode(text.substr(kNoHost.size()), plus));
  for (const std::string& way : ways)
    if (way.find('\0') == kNone && LFile::Exists(way)) return way;
  return usual.find('\0') == kNone ? usual : "";
}

// Where each track's key stands, and where each location does: one pass for all ids.
class TracksIndex {
 public:
  explicit TracksIndex(std::string_view tracks) : tracks_(tracks) {
    constexpr std::string_view kKey = "<key>";
    for (auto at = tracks.find(kKey); at != kNone; at = tracks.find(kKey, at + kKey.size())) {
      std::size_t end = at;
      std::string_view key;
      int id = 0;
      if (tracks.compare(at, kLocationKey.size(), kLocationKey) == 0) locations_.push_back(at + kLocationKey.size());
      if (!TakeBetween(tracks, end, kKey, "<", key)) return;
      if (tracks.compare(end - 1, 6, "</key>") == 0 && ToId(key, id)) keys_.emplace(id, at);
    }
  }

  std::string_view LocationOf(int id) const {
    const auto key = keys_.find(id);
    if (key == keys_.end()) return "";
    const auto begin = std::lower_bound(locations_.begin(), locations_.end(), key->second);
    if (begin == locations_.end()) return "";
    const auto end = tracks_.find(kStringEnd, *begin);
    return end == kNone ? "" : tracks_.substr(*begin, end - *begin);
  }

 private:
  std::string_view tracks_;
  std::unordered_map<int, std::size_t> keys_;  // the first of each
  std::vector<std::size_t> locations_;         // behind their keys, ascending
};

}  // namespace

std::string TiTunesHandler::DefaultFolder() { return LFile::MakePath(LPlatform::Folders().GetMusicFolder(), "iTunes"); }

LProcessResult TiTunesHandler::GetPlaylists(LProcessInterface& process, const std::string& path) {
  process.SetStatus("iTunes Mediathek wird geladen...", 0);
  playlists_.clear();
  text_.clear();
  if (LFile::IsReadableFile(path) && LFile::Size(path).value_or(kMaxFileBytes + 1) <= kMaxFileBytes)
    text_ = LFile::ReadAll(path).value_or("");
  const std::string_view text = text_;
  std::size_t at = text.find(kListsKey);
  std::string_view name, id;
  const std::string idKey = std::string(kPersistentIdKey) + "<string>";
  while (at != kNone && TakeBetween(text, at, kNameKey, kStringEnd, name) &&
         TakeBetween(text, at, idKey, kStringEnd, id)) {
    if (process.IsToStop()) {
      playlists_.clear();
      return lprStopped;
    }
    playlists_.push_back({std::string(name), std::string(id), {}});
    process.SetStatusF(0, "%lu Wiedergabeliste(n) gefunden...", static_cast<unsigned long>(playlists_.size()));
  }
  return lprDone;
}

LProcessResult TiTunesHandler::GetPlaylistTracks(LProcessInterface& process, TItunesPlaylistData& list) const {
  list.tracks.clear();
  const std::string_view text = text_;
  const auto lists = text.find(kListsKey);
  const auto found =
      list.persistentId.empty() || lists == kNone
          ? kNone
          : text.find(std::string(kPersistentIdKey) + "<string>" + list.persistentId + "</string>", lists);
  if (found == kNone) return lprDone;
  const auto behind = found + kPersistentIdKey.size();
  const std::string_view own = text.substr(behind, text.find(kPersistentIdKey, behind) - behind);
  std::size_t at = 0;
  std::string_view array, number;
  if (!TakeBetween(own, at, "<array>", "</array>", array)) return lprDone;
  for (at = 0; TakeBetween(array, at, "<key>Track ID</key><integer>", "</integer>", number);) {
    if (process.IsToStop()) return lprStopped;
    int id = 0;
    if (ToId(number, id)) list.tracks.push_back({id, {}});
    process.SetStatusF(0, "%lu Titel-IDs wurden ermittelt...", static_cast<unsigned long>(list.tracks.size()));
  }
  return lprDone;
}

LProcessResult TiTunesHandler::LoadTracks(LProcessInterface& process, TItunesPlaylistData& list) const {
  std::size_t at = 0;
  std::string_view stretch;
  if (!TakeBetween(text_, at, "<key>Tracks</key>", kListsKey, stretch)) list.tracks.clear();
  const TracksIndex index(stretch);
  const auto total = static_cast<unsigned long>(list.tracks.size());
  unsigned long done = 0;
  for (TItunesTrack& track : list.tracks) {
    if (process.IsToStop()) return lprStopped;
    track.location = index.LocationOf(track.id);
    process.SetStatusF(0, "%lu//%lu Speicherorte von Wiedergabelistentiteln wurden geladen...", ++done, total);
    process.SetProgress(double(done) / double(total));
  }
  std::erase_if(list.tracks, [](const TItunesTrack& track) { return track.location.empty(); });
  return lprDone;
}

void TiTunesHandler::AdjustLocationStrings(TItunesPlaylistData& list) {
  for (TItunesTrack& track : list.tracks) track.location = PathOf(track.location);
  std::erase_if(list.tracks, [](const TItunesTrack& track) { return track.location.empty(); });
}

LProcessResult TiTunesHandler::LoadPlaylistTrackLocations(LProcessInterface& process, TItunesPlaylistData& list) const {
  const LProcessResult ids = GetPlaylistTracks(process, list);
  const LProcessResult locations = ids == lprDone ? LoadTracks(process, list) : ids;
  if (locations == lprDone) {
    AdjustLocationStrings(list);
  } else {
    list.tracks.clear();
  }
  return locations;
}
