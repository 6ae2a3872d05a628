// Adds files, list files, folders and what was dropped to the library. Each record is one job for a progress dialog.
// Law      a file that is there already is told and left out; one that does not open is told and left out, unless it came
//          with its fields from a list of our own: it stays, as lost. Of a folder everything is taken that is a sound
//          file, below it too; "__MACOSX" is not.
//          A folder is walked once, however many links lead to it, and so is a list file within list files.
// Units    progress 0 to 1
// Threads  [worker] while the main thread waits
// Failure  lprStopped; what was added until then stays.
#pragma once
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "library/TAudioLibrary.h"
#include "library/TLibraryHost.h"

class TLibraryAdding {
 public:
  static constexpr int kMaxListDepth = 8, kMaxFolderDepth = 64;

  TLibraryAdding(TAudioLibrary& library, TTrackReader& reader, TLibraryHost& host)
      : library_(library), reader_(reader), host_(host) {}

  // A sound file or a list file; others are passed over.
  LProcessResult AddFile(LProcessInterface& process, const std::string& path);
  LProcessResult LoadPlayList(LProcessInterface& process, const std::string& path);
  LProcessResult AddPaths(LProcessInterface& process, const std::vector<std::string>& paths);  // folders, too
  bool LoadPlayListItem(LProcessInterface& process, const LPlayItem& item);                    // false: a duplicate
  bool LoadSingleTrackToLibrary(LProcessInterface& process, const std::string& path);          // false: left out

  TTrackReader& Reader() { return reader_; }

 private:
  using FileId = std::pair<std::uint64_t, std::uint64_t>;  // device and file

  bool PrepareCache(LProcessInterface& process, const std::string& path, std::string& cached);

  TAudioLibrary& library_;  // these outlive this
  TTrackReader& reader_;
  TLibraryHost& host_;
  std::set<FileId> lists_;  // list files of the current job; each is read once
  int listDepth_ = 0;       // how many of them stand on the way to the current entry
};

struct DJAddFile {
  TLibraryAdding& adding;
  std::string path;
};
struct DJAddMultiFiles {
  TLibraryAdding& adding;
  std::vector<std::string> paths;
};
struct DJAddPlayList {
  TLibraryAdding& adding;
  std::string path;
};
struct DJAddPlayListItem {
  TLibraryAdding& adding;
  const LPlayItem& item;
};
struct DJAddFolder {
  TLibraryAdding& adding;
  std::string folder;
};
struct DJAddDroppedFileData {
  TLibraryAdding& adding;
  std::vector<std::string> paths;
  bool hasDiscTrack = false;  // result: one of the paths is a track of an audio disc, which is not added
};

LProcessResult Process(LProcessInterface& process, DJAddFile& job);
LProcessResult Process(LProcessInterface& process, DJAddMultiFiles& job);
LProcessResult Process(LProcessInterface& process, DJAddPlayList& job);
LProcessResult Process(LProcessInterface& process, DJAddPlayListItem& job);
LProcessResult Process(LProcessInterface& process, DJAddFolder& job);
LProcessResult Process(LProcessInterface& process, DJAddDroppedFileData& job);
