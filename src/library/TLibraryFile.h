// The file in which a list outlives the program ("library.xml"). Several running copies of the program may keep the same
// one.
// Law      written beside and renamed over, so that a kill at any moment leaves the old file or the new one; the one
//          before stays as ".bak". A file that is not what it should be is moved to ".damaged", never overwritten; the list
//          then has what could be read of it, or the backup if that is more.
//          What another copy has written since is taken over at saving: its new tracks, and its fields of tracks that
//          were not changed here. No copy takes a track away from another: what is deleted in one comes back if
//          another still has it.
// Threads  as the list
// Failure  as the results say; the file is then as it was before.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "library/LPlayList.h"
#include "library/LPlayListXml.h"

struct TLibraryLoaded {
  LPlayListXmlState state = LPlayListXmlState::Missing;
  std::string setAside;  // where a damaged file is now; empty: nothing was moved
  bool isFromBackup = false;
};

struct TLibrarySaved {
  enum Result { Written, Locked, Stopped, Failed };
  Result result = Failed;
  bool isMerged = false;  // the list has changed: tracks at its end, or fields
  std::string setAside;
};

class TLibraryFile {
 public:
  explicit TLibraryFile(std::string path) : path_(std::move(path)) {}

  TLibraryLoaded Load(LProcessInterface& process, LPlayList& list);  // `list` is empty
  TLibrarySaved Save(LProcessInterface& process, LPlayList& list);
  const std::string& Path() const { return path_; }

 private:
  struct Stamp {  // of the file as this copy knows it
    std::uint64_t device = 0, file = 0;
    std::int64_t size = -1, seconds = 0, nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };
  struct Known {                // one track as it was in the file
    std::size_t path, content;  // hashes
    bool operator<(const Known& other) const { return path < other.path; }
  };

  Stamp CurrentStamp() const;
  std::string SetAside() const;
  void Remember(const LPlayList& list);
  const Known* FindKnown(const std::string& path) const;
  bool Merge(LProcessInterface& process, LPlayList& list, TLibrarySaved& saved);

  std::string path_;
  Stamp stamp_;
  std::vector<Known> known_;  // sorted
};
