// Where the program keeps things, after the freedesktop base directories. --data DIR replaces all of it by one folder.
// Folders of our own are made with mode 0700 when first asked for.
// Threads  [any] after construction.
#pragma once
#include <string>

class LFolders {
 public:
  // An empty dataFolder means the user's own folders.
  explicit LFolders(const std::string& dataFolder = "");

  std::string GetUserFolder() const;
  std::string GetUserDataFolder() const;
  std::string GetUserDataFolderApp() const;
  std::string GetUserDataFolderAppSubFolder(const std::string& name) const;
  std::string GetSharedDataFolderApp() const;
  std::string GetOldSharedDataFolderAppWithNoCreation() const;  // of a system-wide installation; may not be there
  std::string GetTempFolder() const;
  std::string GetMusicFolder() const;

 private:
  std::string dataFolder_;  // absolute, or empty
};
