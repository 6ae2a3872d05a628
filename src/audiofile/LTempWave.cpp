#include "audiofile/LTempWave.h"

#include <unistd.h>

#include <cstdlib>

#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"

namespace {

constexpr int kMaxNames = 10000;

bool IsFree(const std::string& path) {
  if (!LFile::Exists(path)) return true;
  return !LFile::IsLockedByOther(path) && LFile::Remove(path);
}

}  // namespace

LTempWave::LTempWave(const std::string& hint) {
  const std::string preferred = hint.empty() ? "" : LFile::FolderFromPath(hint);
  if (LFile::IsFolder(preferred) && Reserve(preferred)) return;
  Reserve(LPlatform::Folders().GetTempFolder());
}

bool LTempWave::Reserve(const std::string& folder) {
  if (::access(folder.c_str(), W_OK) != 0) return false;
  for (int n = 1; n <= kMaxNames; ++n) {
    const std::string path = LFile::MakePath(folder, LText::Format("Temp%d.wav", n));
    if (!lock_.Lock(path + ".lock")) continue;
    if (IsFree(path)) {
      path_ = path;
      return true;
    }
    lock_.Unlock();
  }
  return false;
}

std::string LMakeTempName(const std::string& extension) {
  std::string path = LFile::MakePath(LPlatform::Folders().GetTempFolder(), "0XXXXXX") + extension;
  const LFileHandle file(::mkstemps(path.data(), int(extension.size())));
  return file.IsOpen() ? path : "";
}
