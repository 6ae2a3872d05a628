// List files of every format and iTunes libraries. A list that was read must come back from our own form as the same
// items, but for the angle brackets that fields lose and names that are none; and once written it stays as it is.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "FuzzFile.h"
#include "foundation/LFile.h"
#include "library/LPlayList.h"
#include "library/LPlayListText.h"
#include "library/LPlayListXml.h"
#include "library/TAudioLibrary.h"
#include "library/TiTunesHandler.h"

namespace {

LProcessInterfaceVoid nobody;

std::string Scratch(const char* extension) { return "/tmp/fuzz_playlist_" + std::to_string(::getpid()) + extension; }

void CheckSame(const LPlayList& a, const LPlayList& b, bool fieldsToo) {
  if (a.Count() != b.Count()) std::abort();
  for (int place = 0; place < a.Count(); ++place) {
    std::string path = a.At(place).path;
    if (path != b.At(place).path) std::abort();
    if (fieldsToo && !(a.At(place).fields == b.At(place).fields)) std::abort();
  }
}

void CheckXml(const std::string& file) {
  LPlayList read, once, twice;
  LoadXml(nobody, file, read);
  const std::string path = Scratch(".xml");
  if (!SaveToXml(nobody, path, read) || LoadXml(nobody, path, once) != LPlayListXmlState::Complete) std::abort();
  CheckSame(read, once, false);
  // The same document through the other reader.
  const std::string written = LFile::ReadAll(path).value_or("");
  LFile::WriteReplacing(path, "<!---->" + written);
  if (LoadXml(nobody, path, twice) != LPlayListXmlState::Complete) std::abort();
  CheckSame(once, twice, true);
  if (!SaveToXml(nobody, path, twice) || LFile::ReadAll(path) != written) std::abort();
  LFile::Remove(path);
}

void CheckText(const std::string& file) {
  LPlayList m3u, pls, wpl;
  LoadM3u(nobody, file, m3u, nullptr);
  LoadWpl(nobody, file, wpl);
  const std::string path = Scratch(".pls");
  LFile::WriteReplacing(path, LFile::ReadAll(file).value_or(""));
  LoadPls(nobody, path, pls);
  // A carriage return within a line and what is as long as a line can be do not fit into the other format.
  LPlayList again;
  for (int place = m3u.Count() - 1; place >= 0; --place) {
    const std::string& entry = m3u.At(place).path;
    if (entry.find('\r') != std::string::npos || entry.size() > kMaxLineBytes - 20) m3u.RemoveSingleItem(place);
  }
  if (!SaveToPls(nobody, path, m3u, false)) std::abort();
  LoadPls(nobody, path, again);
  CheckSame(m3u, again, false);
  LFile::Remove(path);
}

void CheckITunes(const std::string& file) {
  TiTunesHandler handler;
  handler.GetPlaylists(nobody, file);
  int lists = 0;
  for (TItunesPlaylistData list : handler.Playlists())
    if (++lists < 20) handler.LoadPlaylistTrackLocations(nobody, list);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string file = FuzzFile(bytes, size);
  CheckXml(file);
  CheckText(file);
  CheckITunes(file);
  return 0;
}
