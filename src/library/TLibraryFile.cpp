#include "library/TLibraryFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

#include "foundation/LFile.h"
#include "foundation/LLockFile.h"

namespace {

constexpr int kLockTries = 100;
constexpr unsigned kLockPauseMs = 20;
constexpr int kMaxSetAside = 100;
constexpr unsigned kFolderMode = 0700;

bool LockBeside(LProcessInterface& process, const std::string& path, LLockFile& lock) {
  for (int tries = 0; tries < kLockTries; ++tries) {
    if (lock.Lock(path + ".lock")) return true;
    // Without the lock's file there is nobody to wait for: the folder cannot be written, or the lock has just gone.
    if (!LFile::Exists(path + ".lock")) return lock.Lock(path + ".lock");
    if (process.ProcessWait(kLockPauseMs) == lpwStopped) return false;
  }
  return false;
}

std::size_t HashOf(std::string_view text) { return std::hash<std::string_view>()(text); }

std::size_t ContentHash(const LPlayItem& item) {
  std::size_t hash = 0;
  const auto add = [&hash](std::string_view text) {
    hash = (hash ^ HashOf(text)) * std::size_t(0x9E3779B97F4A7C15u) + (hash >> 29);
  };
  for (const auto& [name, value] : item.fields) {
    add(name);
    add(value);
  }
  return hash;
}

bool IsDamaged(LPlayListXmlState state) {
  return state == LPlayListXmlState::Damaged || state == LPlayListXmlState::Unreadable;
}

}  // namespace

TLibraryFile::Stamp TLibraryFile::CurrentStamp() const {
  struct stat info {};
  if (::stat(path_.c_str(), &info) != 0) return {};
#ifdef __APPLE__
  const auto& changed = info.st_mtimespec;
#else
  const auto& changed = info.st_mtim;
#endif
  return {std::uint64_t(info.st_dev), std::uint64_t(info.st_ino), std::int64_t(info.st_size), changed.tv_sec,
          changed.tv_nsec};
}

std::string TLibraryFile::SetAside() const {
  for (int number = 0; number < kMaxSetAside; ++number) {
    const std::string aside = path_ + ".damaged" + (number ? std::to_string(number) : "");
    if (!LFile::Exists(aside)) return std::rename(path_.c_str(), aside.c_str()) == 0 ? aside : "";
  }
  return "";
}

void TLibraryFile::Remember(const LPlayList& list) {
  known_.clear();
  known_.reserve(std::size_t(list.Count()));
  for (int place = 0; place < list.Count(); ++place)
    known_.push_back({HashOf(list.At(place).path), ContentHash(list.At(place))});
  std::sort(known_.begin(), known_.end());
}

const TLibraryFile::Known* TLibraryFile::FindKnown(const std::string& path) const {
  const Known wanted{HashOf(path), 0};
  const auto found = std::lower_bound(known_.begin(), known_.end(), wanted);
  return found == known_.end() || wanted < *found ? nullptr : &*found;
}

TLibraryLoaded TLibraryFile::Load(LProcessInterface& process, LPlayList& list) {
  LLockFile lock;
  const bool locked = LockBeside(process, path_, lock);
  TLibraryLoaded loaded;
  stamp_ = CurrentStamp();
  loaded.state = LoadXml(process, path_, list);
  if (loaded.state == LPlayListXmlState::Stopped) return loaded;
  if (loaded.state != LPlayListXmlState::Complete) {
    LPlayList kept;
    LoadXml(process, path_ + ".bak", kept);
    if (kept.Count() > list.Count()) {
      list = std::move(kept);
      loaded.isFromBackup = true;
    }
    if (locked && IsDamaged(loaded.state)) loaded.setAside = SetAside();
    // What was rescued is in the file again at once, and the backup is not touched.
    if (!loaded.setAside.empty() && !list.IsEmpty()) SaveToXml(process, path_, list);
    stamp_ = CurrentStamp();
  }
  Remember(list);
  return loaded;
}

// False: stopped. A track of the file that this copy has never seen is somebody's new one; one that it has seen and no
// longer has was deleted here.
bool TLibraryFile::Merge(LProcessInterface& process, LPlayList& list, TLibrarySaved& saved) {
  LPlayList theirs;
  const LPlayListXmlState state = LoadXml(process, path_, theirs);
  if (state == LPlayListXmlState::Stopped) return false;
  if (IsDamaged(state)) saved.setAside = SetAside();
  for (int place = 0; place < theirs.Count(); ++place) {
    LPlayItem& other = theirs.At(place);
    LPlayItem* own = list.FindPath(other.path);
    const Known* known = FindKnown(other.path);
    if (own) {
      const bool unchangedHere = known && ContentHash(*own) == known->content;
      if (!unchangedHere || own->fields == other.fields) continue;
      own->fields = std::move(other.fields);
    } else if (known) {
      continue;
    } else {
      list.AddItem(other);
    }
    saved.isMerged = true;
  }
  return true;
}

TLibrarySaved TLibraryFile::Save(LProcessInterface& process, LPlayList& list) {
  TLibrarySaved saved;
  if (!LFile::CreateFolder(LFile::FolderFromPath(LFile::Absolute(path_)), kFolderMode)) return saved;
  LLockFile lock;
  if (!LockBeside(process, path_, lock)) {
    saved.result = LFile::Exists(path_ + ".lock") ? TLibrarySaved::Locked : TLibrarySaved::Failed;
    return saved;
  }
  if (!(CurrentStamp() == stamp_) && !Merge(process, list, saved)) {
    saved.result = TLibrarySaved::Stopped;
    return saved;
  }
  if (!SaveToXml(process, path_, list, LReplacingFile::KeepOld)) {
    saved.result = process.IsToStop() ? TLibrarySaved::Stopped : TLibrarySaved::Failed;
    return saved;
  }
  stamp_ = CurrentStamp();
  Remember(list);
  saved.result = TLibrarySaved::Written;
  return saved;
}
