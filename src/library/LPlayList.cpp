#include "library/LPlayList.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "audiofile/TGenSourceLadder.h"
#include "audiofile/tags/LAudioTagData.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "library/LPlayListText.h"
#include "library/LPlayListXml.h"
#include "sound/LSoundTime.h"

namespace {

struct Format {
  const char* extension;
  void (*load)(LProcessInterface&, const std::string&, LPlayList&, LHttpFetcher*);
  bool (*save)(LProcessInterface&, const std::string&, const LPlayList&, bool extended);  // null: is only read
};

constexpr Format kFormats[] = {
    {".pls", [](LProcessInterface& p, const std::string& path, LPlayList& l, LHttpFetcher*) { LoadPls(p, path, l); },
     SaveToPls},
    {".m3u", LoadM3u, SaveToM3u},
    {".xml", [](LProcessInterface& p, const std::string& path, LPlayList& l, LHttpFetcher*) { LoadXml(p, path, l); },
     [](LProcessInterface& p, const std::string& path, const LPlayList& l, bool) { return SaveToXml(p, path, l); }},
    {".wpl", [](LProcessInterface& p, const std::string& path, LPlayList& l, LHttpFetcher*) { LoadWpl(p, path, l); },
     nullptr},
};

const Format* FormatOf(std::string_view path) {
  const std::string extension = LText::LowerCase(LFile::ExtensionFromPath(path));
  for (const Format& format : kFormats)
    if (extension == format.extension) return &format;
  return nullptr;
}

bool IsAbsolute(std::string_view path) {
  return !path.empty() && (path[0] == '/' || path[0] == '\\' || (path.size() > 1 && path[1] == ':'));
}

}  // namespace

LPlayItem& LPlayList::AddItem(LPlayItem item) {
  item.index = Count();
  items_.push_back(std::make_unique<LPlayItem>(std::move(item)));
  LPlayItem& added = *items_.back();
  byPath_.emplace(added.path, &added);
  // After a removal without ReOrder an older item may have this index already; the older one is found by it.
  if (byIndex_.size() <= std::size_t(added.index)) byIndex_.resize(std::size_t(added.index) + 1);
  if (!byIndex_[std::size_t(added.index)]) byIndex_[std::size_t(added.index)] = &added;
  return added;
}

LPlayItem& LPlayList::AddSingleTrack(std::string_view path) { return AddItem({std::string(path), {}, 0}); }

void LPlayList::Unlist(const LPlayItem& item) {
  const auto [first, last] = byPath_.equal_range(item.path);
  for (auto entry = first; entry != last; ++entry) {
    if (entry->second != &item) continue;
    byPath_.erase(entry);
    return;
  }
}

bool LPlayList::RemoveSingleItem(int index) {
  const LPlayItem* item = Find(index);
  if (!item) return false;
  Unlist(*item);
  byIndex_[std::size_t(index)] = nullptr;
  items_.erase(std::find_if(items_.begin(), items_.end(), [item](const auto& each) { return each.get() == item; }));
  return true;
}

bool LPlayList::MoveSingleItem(int from, int to) {
  if (from < 0 || to < 0 || from >= Count() || to >= Count()) return false;
  const auto first = items_.begin() + std::min(from, to), last = items_.begin() + std::max(from, to) + 1;
  std::rotate(first, from < to ? first + 1 : last - 1, last);
  return true;
}

void LPlayList::ReOrder() {
  byIndex_.resize(items_.size());
  for (std::size_t place = 0; place < items_.size(); ++place) {
    items_[place]->index = int(place);
    byIndex_[place] = items_[place].get();
  }
}

void LPlayList::Sort(const std::function<bool(const LPlayItem&, const LPlayItem&)>& less) {
  std::stable_sort(items_.begin(), items_.end(), [&less](const auto& a, const auto& b) { return less(*a, *b); });
}

bool LPlayList::Arrange(const std::vector<int>& indexes) {
  constexpr std::size_t kNone = std::size_t(-1);
  std::vector<std::size_t> placeOf(byIndex_.size(), kNone);
  for (std::size_t place = 0; place < items_.size(); ++place)
    if (Find(items_[place]->index) == items_[place].get()) placeOf[std::size_t(items_[place]->index)] = place;
  std::vector<std::size_t> from;
  from.reserve(indexes.size());
  for (const int index : indexes) {
    if (index < 0 || std::size_t(index) >= placeOf.size() || placeOf[std::size_t(index)] == kNone) return false;
    from.push_back(std::exchange(placeOf[std::size_t(index)], kNone));
  }
  std::vector<std::size_t> to = from;
  std::sort(to.begin(), to.end());
  std::vector<std::unique_ptr<LPlayItem>> moved;
  moved.reserve(from.size());
  for (const std::size_t place : from) moved.push_back(std::move(items_[place]));
  for (std::size_t i = 0; i < to.size(); ++i) items_[to[i]] = std::move(moved[i]);
  return true;
}

void LPlayList::SetPath(LPlayItem& item, std::string_view path) {
  const std::string fresh(path);  // `path` may be the item's own
  Unlist(item);
  item.path = fresh;
  byPath_.emplace(item.path, &item);
}

void LPlayList::Clear() {
  byPath_.clear();
  byIndex_.clear();
  items_.clear();
}

const LPlayItem* LPlayList::Find(int index) const {
  return index < 0 || std::size_t(index) >= byIndex_.size() ? nullptr : byIndex_[std::size_t(index)];
}

LPlayItem* LPlayList::Find(int index) {
  return index < 0 || std::size_t(index) >= byIndex_.size() ? nullptr : byIndex_[std::size_t(index)];
}

const LPlayItem* LPlayList::FindPath(std::string_view path) const {
  const auto found = byPath_.find(path);
  return found == byPath_.end() ? nullptr : found->second;
}

LPlayItem* LPlayList::FindPath(std::string_view path) {
  const auto found = byPath_.find(path);
  return found == byPath_.end() ? nullptr : found->second;
}

void LPlayList::Load(LProcessInterface& process, const std::string& path, LHttpFetcher* fetcher) {
  if (const Format* format = FormatOf(path)) format->load(process, path, *this, fetcher);
}

bool LPlayList::Save(LProcessInterface& process, const std::string& path, bool extended) const {
  const Format* format = FormatOf(path);
  return format && format->save && format->save(process, path, *this, extended);
}

bool LPlayList::IsPlayListFile(std::string_view path) {
  const Format* format = FormatOf(path);
  return format && format->save;
}

void GetTrackTitle(std::string& out, const std::string& path) {
  LAudioTagData tags;
  tags.ReadTags(path, LAudioTagData::ltkAll);
  const char *artist = tags.GetParm("ARTIST"), *title = tags.GetParm("TITLE");
  out = artist && title ? std::string(artist) + " - " + title : LFile::NameFromPath(path);
}

void GetTrackTimeSeconds(LProcessInterface& process, int& seconds, const std::string& path) {
  seconds = 0;
  LSoundSource source;
  LGenSourceOpenInterfaceProcess interface(process);
  if (ProcessGenSourceOpenSource(source, path, interface, true, "") != lprDone) return;
  seconds = int(std::lround(LSoundTimeFromFrames(source.GetEndSample(), source.GetSampleRate()) * 0.001));
}

std::string MakePathAbsolute(std::string_view entry, const std::string& listPath) {
  return IsAbsolute(entry) ? std::string(entry) : LFile::MakePath(LFile::FolderFromPath(listPath), entry);
}

void MakePathRelative(std::string& out, const std::string& path, const std::string& listPath) {
  const std::string folder = LFile::FolderFromPath(listPath);
  const auto found = folder.empty() ? std::string::npos : path.find(folder);
  std::string rest = found == std::string::npos ? "" : path.substr(found + folder.size());
  if (!rest.empty() && rest[0] == '/') rest.erase(0, 1);
  // The folder may stand in the middle of a path, or be the beginning of another folder's name.
  out = rest.empty() || MakePathAbsolute(rest, listPath) != path ? path : rest;
}
