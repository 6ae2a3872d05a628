#include "platform/sqlite/LSqlitePreferences.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <mutex>
#include <vector>

#include "foundation/LFile.h"
#include "foundation/LLockFile.h"
#include "foundation/LText.h"

namespace {

constexpr int kMaxSetAside = 1000;
constexpr int kLockTries = 100;
constexpr unsigned kLockPauseUs = 20000;

std::int64_t NowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

std::string FreeName(const std::string& path) {
  std::string free = path + ".damaged";
  for (int i = 2; LFile::Exists(free) && i < kMaxSetAside; ++i) free = path + ".damaged" + std::to_string(i);
  return free;
}

}  // namespace

LSqlitePreferences::LSqlitePreferences(const std::string& path) : path_(path) {
  const std::lock_guard lock(fileMutex_);
  Open();
}

std::string LSqlitePreferences::PathIn(const std::string& folder, const std::string& application) {
  return LFile::MakePath(folder, "com.drelmsoftware." + LFile::PreprocessName(application) + ".sqlite");
}

void LSqlitePreferences::Tell(const std::string& text) { std::fprintf(stderr, "tavi: %s\n", text.c_str()); }

// With the file's lock.
void LSqlitePreferences::Open() {
  Result result = store_.Open(path_);
  const std::lock_guard lock(valuesMutex_);
  if (result != Result::Done) store_.Salvage(values_);
  if (result == Result::Damaged) result = SetAside() ? StoreValues() : Result::Failed;
  if (result == Result::Done) {
    version_ = store_.ChangesOfOthers();
    values_.clear();
    result = store_.ReadAll(values_);
  }
  checkedMs_ = NowMs();
  if (result == Result::Done || told_) return;
  told_ = true;
  Tell("Die Einstellungen in " + path_ + " lassen sich nicht öffnen. Änderungen gelten nur bis zum Programmende.");
}

// Another copy may have found the damage too: only one of them replaces the file.
bool LSqlitePreferences::SetAside() {
  store_.Close();
  LLockFile others;
  for (int tries = 0; !others.Lock(path_ + ".lock") && tries < kLockTries; ++tries) ::usleep(kLockPauseUs);
  Result result = store_.Open(path_);
  if (result != Result::Damaged) return result == Result::Done;
  store_.Close();
  const std::string aside = FreeName(path_);
  if (std::rename(path_.c_str(), aside.c_str()) != 0) return false;
  for (const char* part : {"-wal", "-shm"}) std::rename((path_ + part).c_str(), (aside + part).c_str());
  result = store_.Open(path_);
  Tell("Die Einstellungen waren beschädigt. Die alte Datei liegt als " + aside +
       " daneben; was lesbar war, gilt weiter.");
  return result == Result::Done;
}

LSqlitePreferences::Result LSqlitePreferences::StoreValues() {
  return store_.InOneChange([this] {
    Result result = Result::Done;
    for (auto i = values_.begin(); i != values_.end() && result == Result::Done; ++i)
      result = store_.Set(i->first, i->second);
    return result;
  });
}

// A file that was removed or replaced while it was open would take changes that nobody finds again.
void LSqlitePreferences::FollowFile() {
  if (store_.IsReady() && store_.IsStillAt(path_)) return;
  const bool wasRemoved = store_.IsReady() && !LFile::Exists(path_);
  Result result = store_.Open(path_);
  if (result == Result::Damaged) result = SetAside() ? Result::Done : Result::Failed;
  const std::lock_guard lock(valuesMutex_);
  if (result == Result::Done && wasRemoved) StoreValues();
  version_ = -1;
}

void LSqlitePreferences::ReadChangesOfOthers() {
  checkedMs_ = NowMs();
  const int version = store_.ChangesOfOthers();
  if (told_ || version == version_) return;  // what could not be written stands in memory alone
  LSqliteStore::Values values;
  if (store_.ReadAll(values) != Result::Done) return;
  version_ = version;
  const std::lock_guard lock(valuesMutex_);
  values_.swap(values);
}

std::optional<std::string> LSqlitePreferences::Get(const std::string& name) {
  if (NowMs() - checkedMs_ >= kFreshMs && fileMutex_.try_lock()) {
    ReadChangesOfOthers();
    fileMutex_.unlock();
  }
  const std::lock_guard lock(valuesMutex_);
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

// With the file's lock; memory holds the change already.
void LSqlitePreferences::Change(const std::function<Result()>& change) {
  FollowFile();
  Result result = change();
  if (result == Result::Damaged) {
    const std::lock_guard lock(valuesMutex_);
    result = SetAside() ? StoreValues() : Result::Failed;
  }
  if (result == Result::Done || told_) return;
  told_ = true;
  Tell("Die Einstellungen in " + path_ + " lassen sich nicht schreiben. Änderungen gelten nur bis zum Programmende.");
}

void LSqlitePreferences::Set(const std::string& name, const std::string& value) {
  const std::lock_guard lock(fileMutex_);
  {
    const std::lock_guard values(valuesMutex_);
    values_.insert_or_assign(name, value);
  }
  Change([&] { return store_.Set(name, value); });
}

void LSqlitePreferences::Delete(const std::string& name) {
  const std::lock_guard lock(fileMutex_);
  {
    const std::lock_guard values(valuesMutex_);
    values_.erase(name);
  }
  Change([&] { return store_.Delete(name); });
}

void LSqlitePreferences::DeleteSection(const std::string& prefix) {
  const std::lock_guard lock(fileMutex_);
  ReadChangesOfOthers();
  std::vector<std::string> names;
  {
    const std::lock_guard values(valuesMutex_);
    for (const auto& [name, value] : values_)
      if (LText::EqualsNoCase(std::string_view(name).substr(0, prefix.size()), prefix)) names.push_back(name);
    for (const std::string& name : names) values_.erase(name);
  }
  if (names.empty()) return;
  Change([&] {
    return store_.InOneChange([&] {
      Result result = Result::Done;
      for (std::size_t i = 0; i < names.size() && result == Result::Done; ++i) result = store_.Delete(names[i]);
      return result;
    });
  });
}

void LSqlitePreferences::SetForApplication(const std::string& application, const std::string& name,
                                           const std::string& value) {
  LSqlitePreferences(PathIn(LFile::FolderFromPath(path_), application)).Set(name, value);
}
