// The user's tracks: the list, what is shown of it, and the file it is kept in. It knows no window; whoever shows it
// asks for rows and cells.
// Units    index: an item's identity, as in LPlayList
// Threads  one at a time: the main thread, or an adding job while the main thread waits for it.
// Failure  an unknown index gives false and changes nothing.
#pragma once
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "library/LPlayList.h"
#include "library/TLibraryFile.h"
#include "library/TLibraryRows.h"

class TAudioLibrary {
 public:
  static constexpr int kPlayTimesWrap = 0x7fffffff;

  explicit TAudioLibrary(const std::string& path) : file_(path), rows_(list_) {}

  TLibraryLoaded Load(LProcessInterface& process);
  TLibrarySaved Save(LProcessInterface& process);

  const LPlayList& List() const { return list_; }
  int AddItem(LPlayItem item);  // its index
  bool Remove(int index);       // the others keep their indexes until ReOrder
  bool Move(int from, int to);  // places
  void ReOrder();

  // The track with this path, or with this one as its source before conversion; null: none.
  const LPlayItem* FindTrack(std::string_view path) const;
  // `cachedPath` is where the file would lie after its conversion; empty if it needs none.
  bool IsFileDuplicate(std::string_view path, std::string_view cachedPath) const;

  bool SetField(int index, const char* field, std::string_view value);
  bool SetPath(int index, std::string_view path);
  bool IncreasePlayCount(int index);                         // wraps to 0 at kPlayTimesWrap
  bool SetTrackPlayCount(int index, std::string_view text);  // false also if it is not made of digits
  bool SetTempo(int index, double bpm, int beatOffset);
  bool SetFilePathValid(int index, bool valid);
  // Looks at every track's file, and at its source if it was converted; how many tracks changed.
  int CheckFilesValid(LProcessInterface& process);
  // Gives a lost track its file back. `moveTempo` takes what is known of the tempo to the new path.
  using MoveTempo = std::function<void(const std::string& from, const std::string& to)>;
  bool ResolveFilePath(int index, const std::string& path, const MoveTempo& moveTempo);

  void Search(std::string_view text) { rows_.Search(text); }
  void SortRows(int column, bool descending, const TLibraryRows::DecksOf& decks = {});
  void TakeRowOrder();  // the list's items get the rows' order; those not shown keep their places
  const std::vector<int>& Rows() const { return rows_.Rows(); }

  // Of each place of the list, kept across searches.
  const std::vector<bool>& Selection() const { return selection_; }
  void Select(int place, bool on);

 private:
  void ListChanged();

  LPlayList list_;
  TLibraryFile file_;
  TLibraryRows rows_;
  std::vector<bool> selection_;
};
