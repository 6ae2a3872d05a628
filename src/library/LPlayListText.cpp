#include "library/LPlayListText.h"

#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <optional>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "library/LHttpFetcher.h"
#include "library/LPlayList.h"
#include "library/LReplacingFile.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kMaxUrlExtensionBytes = 8;

// One line after the other, however long the file is.
class LineReader {
 public:
  explicit LineReader(const std::string& path) {
    if (!LFile::IsReadableFile(path)) return;
    file_ = LFileHandle::OpenRead(path);
    if (file_.IsOpen() && ::flock(file_.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) file_.Close();
  }

  std::optional<std::string> Next() {
    std::string line;
    for (;;) {
      if (at_ == have_ && !Fill()) return line.empty() ? std::nullopt : std::optional(line);
      const char* begin = block_ + at_;
      const char* end = std::find(begin, static_cast<const char*>(block_) + have_, '\n');
      line.append(begin, std::min(std::size_t(end - begin), kMaxLineBytes - line.size()));
      at_ = std::size_t(end - block_);
      if (at_ == have_) continue;
      ++at_;
      return line;
    }
  }

 private:
  bool Fill() {
    const auto got = file_.IsOpen() ? file_.Read(block_, sizeof block_) : 0;
    at_ = 0;
    have_ = got > 0 ? std::size_t(got) : 0;
    return have_ > 0;
  }

  LFileHandle file_;
  char block_[16384];
  std::size_t at_ = 0, have_ = 0;
};

template <class Use>
void ForEachLine(LProcessInterface& process, const std::string& path, const Use& use) {
  LineReader reader(path);
  bool first = true;
  while (const auto read = reader.Next()) {
    if (process.IsToStop()) return;
    std::string_view line = *read;
    if (first && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
    first = false;
    if (line.find('\0') == std::string_view::npos) use(LText::Trim(line));
  }
}

// A name of our own with the extension of the address, without what follows a '?' or '#'.
std::string MakeTemporaryFor(std::string_view url) {
  std::string extension = LFile::ExtensionFromPath(url.substr(0, url.find_first_of("?#")));
  const bool plain = extension.size() <= kMaxUrlExtensionBytes &&
                     std::all_of(extension.begin() + (extension.empty() ? 0 : 1), extension.end(),
                                 [](unsigned char c) { return c < 128 && std::isalnum(c); });
  if (!plain) extension.clear();
  std::string path = LFile::MakePath(LPlatform::Folders().GetTempFolder(), "0XXXXXX" + extension);
  const LFileHandle made(::mkstemps(path.data(), int(extension.size())));
  return made.IsOpen() ? path : "";
}

void AddRemote(LProcessInterface& process, std::string_view url, LPlayList& list, LHttpFetcher& fetcher) {
  const std::string file = MakeTemporaryFor(url);
  if (file.empty()) return;
  process.SetStatus("Datei wird heruntergeladen", 0);
  if (fetcher.Fetch(process, std::string(url), file) == 0) {
    list.AddSingleTrack(file);
  } else {
    LFile::Remove(file);
  }
}

// What a reader takes for the same path again; empty: the format cannot hold it.
std::string EntryOf(const std::string& path, const std::string& listPath) {
  if (path.find_first_of("\r\n") != std::string::npos) return "";
  std::string entry;
  MakePathRelative(entry, path, listPath);
  const bool readsBack = entry[0] != '#' && LText::Trim(entry).size() == entry.size();
  return readsBack ? entry : path;
}

struct Entry {
  int number;  // from 1
  std::string path;
  std::string title;  // empty unless extended
  int seconds = 0;
};

// Walks the list with what the extended forms say; false: nothing is to be kept.
template <class Write>
bool WriteEntries(LProcessInterface& process, const std::string& listPath, const LPlayList& list, bool extended,
                  const Write& write) {
  int written = 0;
  for (int place = 0; place < list.Count(); ++place) {
    if (process.IsToStop()) return false;
    const std::string& path = list.At(place).path;
    Entry entry{written + 1, path.empty() ? "" : EntryOf(path, listPath), {}};
    if (entry.path.empty()) continue;
    if (extended) {
      GetTrackTitle(entry.title, path);
      std::replace_if(
          entry.title.begin(), entry.title.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
      GetTrackTimeSeconds(process, entry.seconds, path);
    }
    write(entry);
    ++written;
  }
  if (written < list.Count())
    process.SetErrorF("%d Titel konnten nicht in die Wiedergabeliste geschrieben werden.", list.Count() - written);
  return true;
}

}  // namespace

void LoadPls(LProcessInterface& process, const std::string& path, LPlayList& list) {
  if (!LText::EqualsNoCase(LFile::ExtensionFromPath(path), ".pls")) return;
  ForEachLine(process, path, [&](std::string_view line) {
    if (!line.starts_with("File") && !line.starts_with("file")) return;
    const auto equals = line.find('=');
    const std::string_view value = equals == std::string_view::npos ? "" : line.substr(equals + 1);
    list.AddSingleTrack(value.empty() ? "" : MakePathAbsolute(value, path));
  });
}

void LoadM3u(LProcessInterface& process, const std::string& path, LPlayList& list, LHttpFetcher* fetcher) {
  ForEachLine(process, path, [&](std::string_view line) {
    if (line.empty() || line[0] == '#') return;
    const std::string local = MakePathAbsolute(line, path);
    if (LText::LowerCase(line).find("http") == std::string::npos || LFile::Exists(local)) {
      list.AddSingleTrack(local);
    } else if (fetcher) {
      AddRemote(process, line, list, *fetcher);
    }
  });
}

bool SaveToPls(LProcessInterface& process, const std::string& path, const LPlayList& list, bool extended) {
  LReplacingFile file(path);
  file.Append("[playlist]\n");
  int count = 0;
  const bool complete = WriteEntries(process, path, list, extended, [&](const Entry& entry) {
    count = entry.number;
    file.Append(LText::Format("File%d=", entry.number) + entry.path + "\n");
    if (!extended) return;
    file.Append(LText::Format("Title%d=", entry.number) + entry.title + "\n");
    file.Append(LText::Format("Length%d=%d\n", entry.number, entry.seconds));
  });
  file.Append(LText::Format("NumberOfEntries=%d\n\nVersion=2", count));
  return complete && file.Commit(LReplacingFile::DropOld);
}

bool SaveToM3u(LProcessInterface& process, const std::string& path, const LPlayList& list, bool extended) {
  LReplacingFile file(path);
  if (extended) file.Append("#EXTM3U\n");
  const bool complete = WriteEntries(process, path, list, extended, [&](const Entry& entry) {
    if (extended) file.Append(LText::Format("#EXTINF:%d,", entry.seconds) + entry.title + "\n");
    file.Append(entry.path + "\n");
  });
  return complete && file.Commit(LReplacingFile::DropOld);
}
