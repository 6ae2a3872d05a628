#include "library/TAudioLibrary.h"

#include <algorithm>
#include <utility>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "library/TTrackFields.h"

namespace {

constexpr long kMaxPlayTimes = TAudioLibrary::kPlayTimesWrap;

bool IsSearched(std::string_view field) {
  return field == kTitleField || field == kArtistField || field == kAlbumField || field == kCommentField;
}

bool HasFile(const LPlayItem& item) {
  const std::string original = TrackOriginalPath(item);
  return LFile::IsReadableFile(item.path) || (!original.empty() && LFile::IsReadableFile(original));
}

}  // namespace

void TAudioLibrary::ListChanged() {
  selection_.resize(std::size_t(list_.Count()));
  rows_.ListChanged();
  rows_.Search(rows_.SearchText());
}

TLibraryLoaded TAudioLibrary::Load(LProcessInterface& process) {
  list_.Clear();
  TLibraryLoaded loaded = file_.Load(process, list_);
  ListChanged();
  return loaded;
}

TLibrarySaved TAudioLibrary::Save(LProcessInterface& process) {
  TLibrarySaved saved = file_.Save(process, list_);
  if (saved.isMerged) ListChanged();
  return saved;
}

int TAudioLibrary::AddItem(LPlayItem item) {
  const int index = list_.AddItem(std::move(item)).index;
  selection_.push_back(false);
  rows_.ItemAdded();
  return index;
}

bool TAudioLibrary::Remove(int index) {
  const LPlayItem* item = list_.Find(index);
  if (!item) return false;
  int place = 0;
  while (&list_.At(place) != item) ++place;
  selection_.erase(selection_.begin() + place);
  list_.RemoveSingleItem(index);
  ListChanged();
  return true;
}

bool TAudioLibrary::Move(int from, int to) {
  if (!list_.MoveSingleItem(from, to)) return false;
  const bool moved = selection_[std::size_t(from)];
  selection_.erase(selection_.begin() + from);
  selection_.insert(selection_.begin() + to, moved);
  ListChanged();
  return true;
}

void TAudioLibrary::ReOrder() {
  list_.ReOrder();
  ListChanged();
}

const LPlayItem* TAudioLibrary::FindTrack(std::string_view path) const {
  if (const LPlayItem* item = list_.FindPath(path)) return item;
  for (int place = 0; place < list_.Count(); ++place)
    if (list_.At(place).fields.GetParm(kOriginalFilePathField, "") == path) return &list_.At(place);
  return nullptr;
}

bool TAudioLibrary::IsFileDuplicate(std::string_view path, std::string_view cachedPath) const {
  return list_.FindPath(path) || (!cachedPath.empty() && list_.FindPath(cachedPath));
}

bool TAudioLibrary::SetField(int index, const char* field, std::string_view value) {
  LPlayItem* item = list_.Find(index);
  if (!item) return false;
  item->fields.SetString(field, value);
  if (!IsSearched(field)) return true;
  // Mostly the item stands where its index says.
  int place = index;
  if (place >= list_.Count() || &list_.At(place) != item)
    for (place = 0; &list_.At(place) != item;) ++place;
  rows_.ItemChanged(place);
  return true;
}

bool TAudioLibrary::SetPath(int index, std::string_view path) {
  LPlayItem* item = list_.Find(index);
  if (item) list_.SetPath(*item, path);
  return item != nullptr;
}

bool TAudioLibrary::IncreasePlayCount(int index) {
  const LPlayItem* item = list_.Find(index);
  if (!item) return false;
  const int count = TrackPlayTimes(*item);
  return SetField(index, kPlayTimesField, std::to_string(count >= kPlayTimesWrap - 1 ? 0 : count + 1));
}

bool TAudioLibrary::SetTrackPlayCount(int index, std::string_view text) {
  const bool digits =
      !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  // More digits than a number can have are the largest one.
  return digits && SetField(index, kPlayTimesField,
                            std::to_string(std::min(LText::ToInt(text).value_or(kMaxPlayTimes), kMaxPlayTimes)));
}

bool TAudioLibrary::SetTempo(int index, double bpm, int beatOffset) {
  return SetField(index, kBpmField, BpmFieldText(bpm)) && SetField(index, kBeatOffsetField, std::to_string(beatOffset));
}

bool TAudioLibrary::SetFilePathValid(int index, bool valid) {
  return SetField(index, kFilePathValidField, valid ? "1" : "0");
}

int TAudioLibrary::CheckFilesValid(LProcessInterface& process) {
  int changed = 0;
  for (int place = 0; place < list_.Count() && !process.IsToStop(); ++place) {
    LPlayItem& item = list_.At(place);
    const bool valid = HasFile(item);
    if (valid == IsTrackValid(item)) continue;
    item.fields.SetString(kFilePathValidField, valid ? "1" : "0");
    ++changed;
  }
  return changed;
}

bool TAudioLibrary::ResolveFilePath(int index, const std::string& path, const MoveTempo& moveTempo) {
  const LPlayItem* item = list_.Find(index);
  if (!item) return false;
  if (moveTempo) moveTempo(item->path, path);
  return SetPath(index, path) && SetFilePathValid(index, true);
}

void TAudioLibrary::SortRows(int column, bool descending, const TLibraryRows::DecksOf& decks) {
  rows_.Sort(column, descending, decks);
}

void TAudioLibrary::TakeRowOrder() {
  std::vector<bool> selected(std::size_t(list_.Count()));
  std::vector<const LPlayItem*> marked;
  for (int place = 0; place < list_.Count(); ++place)
    if (selection_[std::size_t(place)]) marked.push_back(&list_.At(place));
  std::sort(marked.begin(), marked.end());
  if (!list_.Arrange(rows_.Rows())) return;
  for (int place = 0; place < list_.Count(); ++place)
    selected[std::size_t(place)] = std::binary_search(marked.begin(), marked.end(), &list_.At(place));
  selection_ = std::move(selected);
  ListChanged();
}

void TAudioLibrary::Select(int place, bool on) {
  if (place >= 0 && std::size_t(place) < selection_.size()) selection_[std::size_t(place)] = on;
}
