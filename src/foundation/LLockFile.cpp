#include "foundation/LLockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

bool LLockFile::Lock(const std::string& path) {
  Unlock();
  LFileHandle file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file.IsOpen()) return false;
  // A file system without locks is taken as it is.
  if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  // The last holder deletes the file: what was opened just before that is no lock for anybody else.
  struct stat opened {
  }, named{};
  if (::fstat(file.Get(), &opened) != 0 || ::stat(path.c_str(), &named) != 0 || opened.st_ino != named.st_ino)
    return false;
  file_ = std::move(file);
  path_ = path;
  return true;
}

void LLockFile::Unlock() {
  if (!IsLocked()) return;
  LFile::Remove(path_);  // while it is held, so that nobody else's lock is removed
  file_.Close();
}
