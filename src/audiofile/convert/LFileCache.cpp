#include "audiofile/convert/LFileCache.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <ctime>
#include <string_view>

#include "audiofile/LWaveHeader.h"
#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"

namespace {

constexpr std::time_t kWeek = 7 * 24 * 3600;
constexpr const char* kSideExtension = ".src";

std::string SidePath(const std::string& cached) { return cached + kSideExtension; }

// The source's path, and on a second line the time of its last change.
std::string SideText(const std::string& source) {
  return source + "\n" + std::to_string(LFile::ModificationTime(source));
}
bool NamesSource(const std::string& side, const std::string& source) { return side.starts_with(source + "\n"); }

// FNV-1a, 32 bits.
unsigned HashOf(std::string_view text) {
  unsigned hash = 2166136261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

std::string CacheName(const std::string& source, bool cache) {
  return cache ? LFile::TitleFromPath(source) + std::to_string(LFile::ModificationTime(source))
               : LFile::NameFromPath(source);
}
std::string PlainPath(const std::string& source, bool cache) {
  const std::string folder = cache ? LFileCache::GetCacheFolder() : LFileCache::GetTempFolder();
  return LFile::MakePath(folder, CacheName(source, cache) + ".wav");
}
std::string HashedPath(const std::string& source, bool cache) {
  const std::string plain = PlainPath(source, cache);
  return plain.substr(0, plain.size() - 4) + LText::Format("-%08x.wav", HashOf(source));
}

// Whether a name is free for this source, or its own already.
bool IsFor(const std::string& cached, const std::string& source) {
  const auto side = LFile::ReadAll(SidePath(cached));
  return side ? NamesSource(*side, source) : !LFile::Exists(cached);
}

bool HasFinalHeader(const std::string& path) {
  LPCMData data;
  LWaveFormatEx format;
  data.file = LFileHandle::OpenRead(path);
  if (!data.file.IsOpen() || ReadWaveHeader(data, format) != lseNone || data.HasUnknownLength()) return false;
  return data.file.Size() >= data.start + std::int64_t{data.length};
}

bool WriteSide(const std::string& cached, const std::string& source) {
  const std::string text = SideText(source);
  LFileHandle file(::open(SidePath(cached).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (file.IsOpen()) return file.Write(text.data(), text.size());
  const auto there = LFile::ReadAll(SidePath(cached));
  return there && NamesSource(*there, source) && (*there == text || LFile::WriteReplacing(SidePath(cached), text));
}

bool IsOwnFile(const std::string& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool IsOlderThanAWeek(const std::string& path) { return LFile::ModificationTime(path) < std::time(nullptr) - kWeek; }

// "0XXXXXX" and an extension, "TempN.wav", "TempN.wav.lock", "NAME.part".
bool IsOurTemporaryName(const std::string& name) {
  const std::string extension = LFile::ExtensionFromPath(name);
  if (extension == ".part") return true;
  if (extension == ".wav" || extension == ".lock") {
    if (!name.starts_with("Temp")) return name.size() == 11 && name[0] == '0';
    return name.find_first_not_of("0123456789", 4) == name.find(".wav");
  }
  return name.size() > 7 && name[0] == '0' && name.find('.') == 7;
}

}  // namespace

std::string LFileCache::GetCacheFolder() {
  const std::string chosen = TSettings::kCachePath.Get();
  return chosen.empty() ? LPlatform::Folders().GetUserDataFolderAppSubFolder("Cache") : chosen;
}

std::string LFileCache::GetTempFolder() { return LPlatform::Folders().GetUserDataFolderAppSubFolder("Temp"); }

std::string LFileCache::MakeCachedPath(const std::string& source) {
  const bool cache = TSettings::kCacheYesNo.Get();
  const std::string plain = PlainPath(source, cache);
  return IsFor(plain, source) ? plain : HashedPath(source, cache);
}

bool LFileCache::IsCachePath(const std::string& path, const std::string& original) {
  return path == PlainPath(original, true) || path == HashedPath(original, true);
}

std::string LFileCache::ClaimCachedPath(const std::string& source) {
  // The second round is for one who took the plain name since it was looked at.
  for (int round = 0; round < 2; ++round)
    if (std::string path = MakeCachedPath(source); WriteSide(path, source)) return path;
  return "";
}

void LFileCache::Remove(const std::string& cached) {
  LFile::Remove(cached);
  LFile::Remove(SidePath(cached));
}

LFileCache::State LFileCache::GetState(const std::string& cached, const std::string& source) {
  if (!LFile::Exists(cached)) return Missing;
  if (LFile::IsLockedByOther(cached)) return Growing;
  const auto side = LFile::ReadAll(SidePath(cached));
  if (HasFinalHeader(cached) && side && *side == SideText(source)) return Complete;
  if (side && NamesSource(*side, source)) LFile::Remove(cached);
  return Missing;
}

int LFileCache::ClearFolder(const std::string& folder, const InUse& isInUse) {
  const bool own = folder == LPlatform::Folders().GetUserDataFolderAppSubFolder("Cache") || folder == GetTempFolder();
  int removed = 0;
  for (const std::string& name : LFile::NamesInFolder(folder)) {
    const std::string path = LFile::MakePath(folder, name);
    if (!LText::EqualsNoCase(LFile::ExtensionFromPath(name), ".wav") || !IsOwnFile(path)) continue;
    if ((!own && !IsOwnFile(SidePath(path))) || isInUse(path) || LFile::IsLockedByOther(path)) continue;
    Remove(path);
    ++removed;
  }
  return removed;
}

int LFileCache::SweepTempFolder() {
  const std::string folder = LPlatform::Folders().GetTempFolder();
  int removed = 0;
  for (const std::string& name : LFile::NamesInFolder(folder)) {
    const std::string path = LFile::MakePath(folder, name);
    if (!IsOurTemporaryName(name) || !IsOwnFile(path) || !IsOlderThanAWeek(path)) continue;
    if (LFile::IsLockedByOther(path)) continue;
    LFile::Remove(path);
    ++removed;
  }
  return removed;
}
