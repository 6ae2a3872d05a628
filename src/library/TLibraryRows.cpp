#include "library/TLibraryRows.h"

#include <algorithm>
#include <numeric>

#include "foundation/LText.h"
#include "library/TFoldedText.h"
#include "library/TTrackFields.h"

namespace {

constexpr const char* kSearchedFields[] = {kTitleField, kArtistField, kAlbumField, kCommentField};

// Sorts rows by a key of each, made once.
template <class Key, class KeyOf>
void SortByKey(std::vector<int>& rows, bool descending, const KeyOf& keyOf) {
  std::vector<std::pair<Key, int>> keyed;
  keyed.reserve(rows.size());
  for (const int row : rows) keyed.emplace_back(keyOf(row), row);
  std::stable_sort(keyed.begin(), keyed.end(), [descending](const auto& a, const auto& b) {
    return descending ? b.first < a.first : a.first < b.first;
  });
  std::transform(keyed.begin(), keyed.end(), rows.begin(), [](const auto& each) { return each.second; });
}

}  // namespace

// The fields are kept apart by a byte that no text has, so that nothing is found across two of them.
void TLibraryRows::Append(const LPlayItem& item, Span& span) {
  span.begin = texts_.size();
  for (const char* field : kSearchedFields) {
    AppendFoldedText(texts_, item.fields.GetParm(field, ""));
    texts_ += '\0';
  }
  span.size = texts_.size() - span.begin;
}

void TLibraryRows::Complete() {
  if (dropped_ > texts_.size() / 2) ListChanged();
  while (spans_.size() < std::size_t(list_.Count())) {
    const int place = int(spans_.size());
    Append(list_.At(place), spans_.emplace_back());
  }
}

bool TLibraryRows::IsShown(const Span& span) const {
  return std::string_view(texts_).substr(span.begin, span.size).find(text_) != std::string_view::npos;
}

void TLibraryRows::Search(std::string_view text) {
  text_ = FoldedText(LText::Trim(text));
  Complete();
  rows_.clear();
  for (int place = 0; place < list_.Count(); ++place)
    if (IsShown(spans_[std::size_t(place)])) rows_.push_back(list_.At(place).index);
}

void TLibraryRows::ItemAdded() {
  Complete();
  if (IsShown(spans_.back())) rows_.push_back(list_.At(list_.Count() - 1).index);
}

void TLibraryRows::ItemChanged(int place) {
  if (std::size_t(place) >= spans_.size()) return;
  Span& span = spans_[std::size_t(place)];
  dropped_ += span.size;
  Append(list_.At(place), span);
}

void TLibraryRows::ListChanged() {
  spans_.clear();
  texts_.clear();
  dropped_ = 0;
}

void TLibraryRows::Sort(int column, bool descending, const DecksOf& decks) {
  if (column < 0 || column >= kLibraryColumns) return;
  const auto cell = [&](int index) {
    const LPlayItem* item = list_.Find(index);
    return item ? LibraryCellText(*item, column, decks ? decks(*item) : TLVDeckPositionHelper{}) : "";
  };
  if (kTemplateListCols[column].isNumeric) {
    SortByKey<std::int64_t>(rows_, descending, [&](int index) { return LibrarySortNumber(cell(index)); });
  } else {
    // Byte order decides between texts that differ in case only.
    SortByKey<std::pair<std::string, std::string>>(rows_, descending, [&](int index) {
      const std::string text = cell(index);
      return std::pair(FoldedText(text), text);
    });
  }
}
