#include "platform/linux/LPathComponents.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"

namespace {

bool IsProgram(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string LPathComponents::Find(const std::string& name) {
  if (name.empty() || name.find('/') != std::string::npos) return "";
  std::string own = LFile::MakePath(LFile::MakePath(LPlatform::Folders().GetUserDataFolder(), "Tavi/Components"), name);
  if (IsProgram(own)) return own;
  const char* list = std::getenv("PATH");
  std::istringstream folders(list ? list : "");
  for (std::string folder; std::getline(folders, folder, ':');)
    if (std::string path = LFile::MakePath(folder, name); folder.starts_with('/') && IsProgram(path)) return path;
  return "";
}
