#include "foundation/LStartUp.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"

namespace {

constexpr unsigned kSharedMode = 0777;
constexpr const char* kMigratedMarker = ".SharedFolderMigrated";

std::string LoginName() {
  for (const char* name : {"LOGNAME", "USER"})
    if (const char* value = std::getenv(name)) return LFile::PreprocessName(value);
  return "user";
}

}  // namespace

void LFileMigrateSharedSettings(const LFolders& folders) {
  const std::string now = LFile::MakePath(folders.GetUserDataFolderApp(), "Shared");
  const std::string marker = LFile::MakePath(now, kMigratedMarker);
  const std::string old = folders.GetOldSharedDataFolderAppWithNoCreation();
  if (LFile::Exists(marker) || !LFile::IsFolder(old) || LFile::IsFolder(now)) return;
  if (!LFile::CreateFolder(now, kSharedMode)) return;
  for (const std::string& name : LFile::NamesInFolder(old))
    if (const auto content = LFile::ReadAll(LFile::MakePath(old, name)))
      LFile::WriteReplacing(LFile::MakePath(now, name), *content);
  LFile::WriteReplacing(marker, "");
}

LDebugHangDetector::LDebugHangDetector(const LFolders& folders)
    : path_(LFile::MakePath(folders.GetTempFolder(), "_tavi_rl_" + LoginName())) {
  if (LFile::Exists(path_)) std::fprintf(stderr, "tavi: the last run did not end cleanly (%s)\n", path_.c_str());
  LFile::WriteReplacing(path_, std::to_string(std::time(nullptr)) + "\n");
}

LDebugHangDetector::~LDebugHangDetector() { LFile::Remove(path_); }
