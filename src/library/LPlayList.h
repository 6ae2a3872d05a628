// An ordered list of tracks: the audio library, the video list and the sample list stand on it.
// Law      an item's index is the count at the time it was added; it stays the item's identity until ReOrder numbers all
//          items by their places. Appending and finding by index or path do not slow down with the list's length.
// Units    places count from 0
// Threads  one at a time: the main thread, or a job while the main thread waits for it.
// Failure  null, false or an empty result; a list file that cannot be read adds nothing.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/LProcessInterface.h"
#include "library/LPlayItem.h"

class LHttpFetcher;

class LPlayList {
 public:
  LPlayList() = default;
  LPlayList(LPlayList&&) = default;
  LPlayList& operator=(LPlayList&&) = default;

  LPlayItem& AddItem(LPlayItem item);
  LPlayItem& AddSingleTrack(std::string_view path);
  bool RemoveSingleItem(int index);
  bool MoveSingleItem(int from, int to);  // places
  void ReOrder();
  void Sort(const std::function<bool(const LPlayItem&, const LPlayItem&)>& less);  // equal items keep their order
  // The items of these indexes exchange the places they hold, until they stand in this order; others stay. An unknown
  // or repeated index changes nothing.
  bool Arrange(const std::vector<int>& indexes);
  void SetPath(LPlayItem& item, std::string_view path);
  void Clear();

  int Count() const { return int(items_.size()); }
  bool IsEmpty() const { return items_.empty(); }
  LPlayItem& At(int place) { return *items_[std::size_t(place)]; }
  const LPlayItem& At(int place) const { return *items_[std::size_t(place)]; }
  LPlayItem* Find(int index);  // null: none
  const LPlayItem* Find(int index) const;
  LPlayItem* FindPath(std::string_view path);  // byte for byte
  const LPlayItem* FindPath(std::string_view path) const;

  // By the extension, in any case: ".pls", ".m3u", ".xml"; Load also ".wpl". `fetcher` null: remote entries are dropped.
  void Load(LProcessInterface& process, const std::string& path, LHttpFetcher* fetcher = nullptr);
  // False: not this extension, a stop, or not everything could be written; the file is then as it was before.
  // `extended` adds titles and lengths. Entries that the format cannot hold are left out, and SetError tells how many.
  bool Save(LProcessInterface& process, const std::string& path, bool extended) const;

  static bool IsPlayListFile(std::string_view path);  // not ".wpl"

 private:
  void Unlist(const LPlayItem& item);

  std::vector<std::unique_ptr<LPlayItem>> items_;  // an item never moves in memory
  std::vector<LPlayItem*> byIndex_;                // null: none
  std::unordered_multimap<std::string_view, LPlayItem*> byPath_;
};

// What list files say of a track when they say more than its path.
void GetTrackTitle(std::string& out, const std::string& path);  // "artist - title", or the file's name
// Rounded to whole seconds; 0 if the file does not open.
void GetTrackTimeSeconds(LProcessInterface& process, int& seconds, const std::string& path);

// The part of `path` behind the list's folder; the whole path where that would not lead back to it.
void MakePathRelative(std::string& out, const std::string& path, const std::string& listPath);
// An entry of a list file as a full path.
std::string MakePathAbsolute(std::string_view entry, const std::string& listPath);
