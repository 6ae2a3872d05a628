// A lock that stands as a file beside what it guards, also against other running copies of the program. It goes with
// the object.
// Threads  [any]
// Failure  a refused lock leaves IsLocked() false.
#pragma once
#include <string>

#include "foundation/LFile.h"

class LLockFile {
 public:
  LLockFile() = default;
  ~LLockFile() { Unlock(); }
  LLockFile(const LLockFile&) = delete;
  LLockFile& operator=(const LLockFile&) = delete;

  bool Lock(const std::string& path);  // of the lock file itself; false: another holds it, or it cannot be made
  void Unlock();
  bool IsLocked() const { return file_.IsOpen(); }

 private:
  std::string path_;
  LFileHandle file_;
};
