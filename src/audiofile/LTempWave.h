// A name for a temporary wave file that nobody else uses: "Temp1.wav", "Temp2.wav" ... in the folder of the hint or in
// the program's own. The name is held by a lock file as long as the object lives; the wave itself stays.
// Threads  [any]
// Failure  an empty path if no folder takes a lock file.
#pragma once
#include <string>

#include "foundation/LLockFile.h"

class LTempWave {
 public:
  explicit LTempWave(const std::string& hint);  // a path whose folder is preferred; may be empty
  const std::string& Path() const { return path_; }

 private:
  bool Reserve(const std::string& folder);

  LLockFile lock_;
  std::string path_;
};

// A temporary name of one's own for a copy, made with the extension; empty on failure.
std::string LMakeTempName(const std::string& extension);
