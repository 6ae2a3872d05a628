// A track in a list: its file, and everything else that is known of it as named text. Fields that a list file brings
// along and nobody here knows are kept.
// Units    index: the item's identity for its list; list files neither hold it nor change it.
// Threads  a value like any other: one thread at a time.
#pragma once
#include <string>

#include "foundation/LHashTable.h"

struct LPlayItem {
  std::string path;  // full; inside a list it changes through LPlayList::SetPath
  LHashTable fields;
  int index = 0;
};
