// Files that the user let go over a window.
// Units    where in pixels of the window that is asked.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

#include "toolkit/LPoint.h"

struct LDroppedFileData {
  std::vector<std::string> paths;  // absolute, UTF-8, local files only, never empty
  LPoint where;
};
