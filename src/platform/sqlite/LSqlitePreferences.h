// The store of user settings as an SQLite file. Values are read from memory, so that no reader waits for a disk; what
// another copy of the program changes is seen after kFreshMs at the latest.
// Units    times in ms of the real clock, also where the program runs on a virtual one.
// Threads  [any]; a change holds one lock until it is on the disk, a read never waits for that lock.
// Failure  a damaged file is renamed and told on standard error, and a new one begins with what could be read of it. A
//          file that cannot be opened or written is told once; the settings then hold until the program ends.
#pragma once
#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "foundation/LMutex.h"
#include "foundation/LPreferences.h"
#include "platform/sqlite/LSqliteStore.h"

class LSqlitePreferences final : public LPreferences {
 public:
  static constexpr int kFreshMs = 200;

  explicit LSqlitePreferences(const std::string& path);
  // The file of an application's settings in a folder.
  static std::string PathIn(const std::string& folder, const std::string& application = "tavi");

  std::optional<std::string> Get(const std::string& name) override;
  void Set(const std::string& name, const std::string& value) override;
  void Delete(const std::string& name) override;
  void DeleteSection(const std::string& prefix) override;
  void SetForApplication(const std::string& application, const std::string& name, const std::string& value) override;

 private:
  using Result = LSqliteStore::Result;

  void Open();
  bool SetAside();
  void FollowFile();
  void ReadChangesOfOthers();
  void Change(const std::function<Result()>& change);
  Result StoreValues();
  void Tell(const std::string& text);

  const std::string path_;
  LMutex fileMutex_;  // taken before valuesMutex_
  LSqliteStore store_;
  int version_ = 0;    // of the file, as far as other processes change it
  bool told_ = false;  // that changes are not kept
  LMutex valuesMutex_;
  LSqliteStore::Values values_;
  std::atomic<std::int64_t> checkedMs_ = 0;
};
