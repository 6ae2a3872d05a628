#include "foundation/LFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

constexpr unsigned kOwnFolderMode = 0700;
constexpr const char* kPreferenceDomain = "com.drelmsoftware.tavi";

std::string AbsoluteFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value && value[0] == '/' ? value : "";
}

std::string Created(std::string folder) {
  LFile::CreateFolder(folder, kOwnFolderMode);
  return folder;
}

// XDG_MUSIC_DIR="$HOME/Musik" in user-dirs.dirs, the form that desktops write.
std::string MusicFolderOfDesktop(const std::string& home) {
  std::string config = AbsoluteFromEnvironment("XDG_CONFIG_HOME");
  if (config.empty()) config = LFile::MakePath(home, ".config");
  const std::string text = LFile::ReadAll(LFile::MakePath(config, "user-dirs.dirs")).value_or("");
  constexpr std::string_view kKey = "XDG_MUSIC_DIR=\"";
  const auto at = text.find(kKey);
  if (at == std::string::npos || (at > 0 && text[at - 1] != '\n')) return "";
  std::string value = text.substr(at + kKey.size());
  value = value.substr(0, value.find('"'));
  constexpr std::string_view kHome = "$HOME/";
  if (value.starts_with(kHome)) return LFile::MakePath(home, value.substr(kHome.size()));
  return value.starts_with("/") ? value : "";
}

}  // namespace

LFolders::LFolders(const std::string& dataFolder)
    : dataFolder_(dataFolder.empty() ? std::string() : LFile::Absolute(dataFolder)) {}

std::string LFolders::GetUserFolder() const {
  if (const char* home = std::getenv("HOME"); home && home[0] == '/') return home;
  const passwd* entry = ::getpwuid(::getuid());
  return entry && entry->pw_dir ? entry->pw_dir : "/";
}

std::string LFolders::GetUserDataFolder() const {
  if (!dataFolder_.empty()) return Created(LFile::MakePath(dataFolder_, "data"));
  const std::string folder = AbsoluteFromEnvironment("XDG_DATA_HOME");
  return folder.empty() ? LFile::MakePath(GetUserFolder(), ".local/share") : folder;
}

std::string LFolders::GetUserDataFolderApp() const { return Created(LFile::MakePath(GetUserDataFolder(), "Tavi")); }

std::string LFolders::GetUserDataFolderAppSubFolder(const std::string& name) const {
  return Created(LFile::MakePath(GetUserDataFolderApp(), name));
}

std::string LFolders::GetSharedDataFolderApp() const {
  return dataFolder_.empty() ? GetUserDataFolderAppSubFolder("Shared")
                             : Created(LFile::MakePath(dataFolder_, "shared"));
}

std::string LFolders::GetOldSharedDataFolderAppWithNoCreation() const {
  if (!dataFolder_.empty()) return "";
  std::string first = "/usr/local/share";
  if (const char* list = std::getenv("XDG_DATA_DIRS"); list && list[0] == '/')
    first = std::string(list).substr(0, std::string_view(list).find(':'));
  return LFile::MakePath(first, "Tavi/Shared");
}

std::string LFolders::GetTempFolder() const {
  if (!dataFolder_.empty()) return Created(LFile::MakePath(dataFolder_, "cache"));
  std::string cache = AbsoluteFromEnvironment("XDG_CACHE_HOME");
  if (cache.empty()) cache = LFile::MakePath(GetUserFolder(), ".cache");
  return Created(LFile::MakePath(cache, kPreferenceDomain));
}

std::string LFolders::GetMusicFolder() const {
  const std::string home = GetUserFolder();
  if (!dataFolder_.empty()) return Created(LFile::MakePath(dataFolder_, "music"));
  if (std::string folder = MusicFolderOfDesktop(home); !folder.empty()) return folder;
  const std::string music = LFile::MakePath(home, "Music");
  return LFile::IsFolder(music) ? music : home;
}
