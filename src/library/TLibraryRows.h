// The rows that the library shows: what the search text leaves of the list, in the list's order until a sort.
// Law      a track is shown if its title, artist, album or comment contains the text, in any case. A sort is stable.
// Units    rows hold indexes of items
// Threads  as the list
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "library/LPlayList.h"
#include "library/TLibraryColumns.h"

class TLibraryRows {
 public:
  using DecksOf = std::function<TLVDeckPositionHelper(const LPlayItem&)>;

  explicit TLibraryRows(const LPlayList& list) : list_(list) {}  // the list outlives this

  void Search(std::string_view text);  // all rows again, in the list's order
  void Sort(int column, bool descending, const DecksOf& decks);
  void ItemAdded();             // at the list's end: it is one more row if the search text is in it
  void ItemChanged(int place);  // its texts; the rows stay until the next search
  void ListChanged();           // its order or its items

  const std::vector<int>& Rows() const { return rows_; }
  const std::string& SearchText() const { return text_; }  // folded

 private:
  struct Span {
    std::size_t begin = 0, size = 0;  // in texts_
  };

  void Append(const LPlayItem& item, Span& span);
  void Complete();
  bool IsShown(const Span& span) const;

  const LPlayList& list_;
  std::string text_;
  std::vector<int> rows_;
  // A search looks at every track at every key: their texts are folded once and lie side by side.
  std::string texts_;
  std::vector<Span> spans_;  // by place
  std::size_t dropped_ = 0;  // bytes of texts_ that are no track's any more
};
