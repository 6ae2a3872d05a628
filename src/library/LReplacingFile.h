// Writes a file beside the one it is to replace: whatever happens on the way, a kill or a full disk, the old one is
// there until the new one is complete and on the disk. Through a symbolic link its target is replaced.
// Threads  one at a time
// Failure  Commit gives false, and the old file is as it was.
#pragma once
#include <string>
#include <string_view>

#include "foundation/LFile.h"

class LReplacingFile {
 public:
  enum Old : bool { DropOld = false, KeepOld = true };  // kept beside the new one, with ".bak" behind its name

  explicit LReplacingFile(const std::string& path);
  ~LReplacingFile();
  LReplacingFile(const LReplacingFile&) = delete;
  LReplacingFile& operator=(const LReplacingFile&) = delete;

  void Append(std::string_view text);
  bool Commit(Old old);

 private:
  void Flush();

  std::string target_, beside_, pending_;
  LFileHandle file_;
  bool failed_ = false;
};
