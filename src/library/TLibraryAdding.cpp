#include "library/TLibraryAdding.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "library/TTrackFields.h"

namespace {

constexpr const char* kResourceFolder = "__MACOSX";
constexpr const char* kDiscTrackExtension = ".cda";

using FileId = std::pair<std::uint64_t, std::uint64_t>;

// False: there is no such file.
bool Identify(const std::string& path, FileId& id, mode_t& type) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return false;
  id = {std::uint64_t(info.st_dev), std::uint64_t(info.st_ino)};
  type = info.st_mode & S_IFMT;
  return true;
}

std::vector<std::string> SortedNames(const std::string& folder) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
  if (!open) return names;
  while (const dirent* entry = ::readdir(open.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != ".." && name != kResourceFolder) names.emplace_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Sound files in and below a folder, in the order of their names. Its files are listed before the first one is added,
// so that the progress has an end.
class FolderWalk {
 public:
  FolderWalk(LProcessInterface& process, TTrackReader& reader) : process_(process), reader_(reader) {}

  void Walk(const std::string& folder, int depth = 0) {
    FileId id;
    mode_t type = 0;
    if (depth > TLibraryAdding::kMaxFolderDepth || !Identify(folder, id, type) || !visited_.insert(id).second) return;
    for (const std::string& name : SortedNames(folder)) {
      if (process_.IsToStop()) return;
      const std::string path = LFile::MakePath(folder, name);
      if (!Identify(path, id, type)) continue;
      if (type == S_IFDIR) {
        Walk(path, depth + 1);
      } else if (type == S_IFREG && reader_.IsSupported(path)) {
        files.push_back(path);
      }
    }
  }

  std::vector<std::string> files;

 private:
  LProcessInterface& process_;
  TTrackReader& reader_;
  std::set<FileId> visited_;
};

std::string OrElse(const std::string& text, const std::string& fallback) { return text.empty() ? fallback : text; }

}  // namespace

// The path that is played: the converted file where one is needed. False: it could not be made, and that has been told.
bool TLibraryAdding::PrepareCache(LProcessInterface& process, const std::string& path, std::string& cached) {
  cached.clear();
  if (!reader_.NeedConvert(path)) return true;
  cached = reader_.CachedPath(path);
  if (LFile::Exists(cached)) return true;
  const LProcessResult result = host_.Convert(process, path);
  if (result == lprFailed) host_.TellNotLoaded(path);
  cached = reader_.CachedPath(path);
  return result == lprDone;
}

bool TLibraryAdding::LoadSingleTrackToLibrary(LProcessInterface& process, const std::string& path) {
  if (library_.IsFileDuplicate(path, reader_.NeedConvert(path) ? reader_.CachedPath(path) : "")) {
    host_.TellDuplicate(path);
    return false;
  }
  std::string cached;
  if (!PrepareCache(process, path, cached)) return false;
  TTrackFacts facts;
  if (!reader_.Open(process, OrElse(cached, path), facts)) {
    host_.TellNotLoaded(path);
    return false;
  }
  reader_.ReadTags(path, facts);
  LPlayItem item{OrElse(cached, path), {}, library_.List().Count()};
  if (!cached.empty()) item.fields.SetString(kOriginalFilePathField, path);
  TTrackTempo tempo;
  const bool measured = host_.FindTempo(item.path, facts.sampleRate, tempo);
  const std::pair<const char*, std::string> fields[] = {
      {kTitleField, OrElse(facts.title, LFile::NameFromPath(path))},
      {kArtistField, OrElse(facts.artist, kUnknown)},
      {kAlbumField, OrElse(facts.album, kUnknown)},
      {kCommentField, facts.comment},
      {kBpmField, measured ? BpmFieldText(tempo.bpm) : "--"},
      {kBeatOffsetField, std::to_string(measured ? tempo.beatOffset : 0)},
      {kPlayTimesField, "0"},
      {kVersionField, "1"},
      {kLengthField, std::to_string(facts.endSample)},
      {kSampleRateField, std::to_string(facts.sampleRate)},
      {kFilePathValidField, "1"},
      {kFeedToField, kFeedToNames[item.index % 2]},
  };
  for (const auto& [name, value] : fields) item.fields.SetString(name, value);
  library_.AddItem(std::move(item));
  return true;
}

bool TLibraryAdding::LoadPlayListItem(LProcessInterface& process, const LPlayItem& item) {
  const bool needsConvert = reader_.NeedConvert(item.path);
  if (library_.IsFileDuplicate(item.path, needsConvert ? reader_.CachedPath(item.path) : "")) return false;
  LPlayItem added = item;
  TTrackFacts facts;
  const bool opens = reader_.Open(process, item.path, facts);
  std::string cached;
  if (opens && PrepareCache(process, item.path, cached) && !cached.empty()) {
    added.fields.SetString(kOriginalFilePathField, item.path);
    added.path = cached;
  }
  added.fields.SetString(kFilePathValidField, opens ? "1" : "0");
  library_.AddItem(std::move(added));
  return true;
}

LProcessResult TLibraryAdding::AddFile(LProcessInterface& process, const std::string& path) {
  if (process.IsToStop()) return lprStopped;
  if (LPlayList::IsPlayListFile(path)) return LoadPlayList(process, path);
  if (!reader_.IsSupported(path)) return lprDone;
  process.SetStatusF(0, TLibraryTexts::kAdding, LFile::NameFromPath(path).c_str());
  LoadSingleTrackToLibrary(process, path);
  return process.IsToStop() ? lprStopped : lprDone;
}

LProcessResult TLibraryAdding::LoadPlayList(LProcessInterface& process, const std::string& path) {
  FileId id;
  mode_t type = 0;
  if (listDepth_ == 0) lists_.clear();
  if (listDepth_ >= kMaxListDepth || (Identify(path, id, type) && !lists_.insert(id).second)) return lprDone;
  LPlayList list;
  list.Load(process, path, host_.HttpFetcher());
  if (list.IsEmpty() && !process.IsToStop()) host_.TellNoTracks(path);
  process.SetStatus(TLibraryTexts::kAddingFiles, 0);
  const bool hasFields = LText::EqualsNoCase(LFile::ExtensionFromPath(path), ".xml");
  ++listDepth_;
  for (int place = 0; place < list.Count() && !process.IsToStop(); ++place) {
    LProcessInterfaceSubProcess entry(process, double(place) / list.Count(), double(place + 1) / list.Count());
    if (hasFields) {
      LoadPlayListItem(entry, list.At(place));
    } else {
      AddFile(entry, list.At(place).path);
    }
    entry.SetProgress(1);
  }
  --listDepth_;
  return process.IsToStop() ? lprStopped : lprDone;
}

LProcessResult TLibraryAdding::AddPaths(LProcessInterface& process, const std::vector<std::string>& paths) {
  process.SetStatus(TLibraryTexts::kCounting, 0);
  FolderWalk walk(process, reader_);
  for (const std::string& path : paths) {
    if (LFile::IsFolder(path)) {
      walk.Walk(path);
    } else {
      walk.files.push_back(path);
    }
  }
  const double total = double(walk.files.size());
  for (std::size_t i = 0; i < walk.files.size(); ++i) {
    LProcessInterfaceSubProcess file(process, double(i) / total, double(i + 1) / total);
    if (AddFile(file, walk.files[i]) == lprStopped) return lprStopped;
    file.SetProgress(1);
  }
  return process.IsToStop() ? lprStopped : lprDone;
}

LProcessResult Process(LProcessInterface& process, DJAddFile& job) { return job.adding.AddFile(process, job.path); }

LProcessResult Process(LProcessInterface& process, DJAddMultiFiles& job) {
  return job.adding.AddPaths(process, job.paths);
}

LProcessResult Process(LProcessInterface& process, DJAddPlayList& job) {
  return job.adding.LoadPlayList(process, job.path);
}

LProcessResult Process(LProcessInterface& process, DJAddPlayListItem& job) {
  job.adding.LoadPlayListItem(process, job.item);
  return process.IsToStop() ? lprStopped : lprDone;
}

LProcessResult Process(LProcessInterface& process, DJAddFolder& job) {
  return job.adding.AddPaths(process, {job.folder});
}

LProcessResult Process(LProcessInterface& process, DJAddDroppedFileData& job) {
  std::vector<std::string> paths;
  for (const std::string& path : job.paths) {
    const bool isDiscTrack = LText::EqualsNoCase(LFile::ExtensionFromPath(path), kDiscTrackExtension);
    job.hasDiscTrack = job.hasDiscTrack || isDiscTrack;
    if (!isDiscTrack) paths.push_back(path);
  }
  return job.adding.AddPaths(process, paths);
}
