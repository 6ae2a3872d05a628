// What happens once before anything else is built, and undone at a clean end.
// Threads  [main]
#pragma once
#include <string>

class LFolders;

// Copies the files of a system-wide shared folder of an earlier installation into the user's own, once.
void LFileMigrateSharedSettings(const LFolders& folders);

// A small file in the temporary folder while the program runs. One that is there already tells that the last run ended
// badly; that is only logged.
class LDebugHangDetector {
 public:
  explicit LDebugHangDetector(const LFolders& folders);
  ~LDebugHangDetector();
  LDebugHangDetector(const LDebugHangDetector&) = delete;
  LDebugHangDetector& operator=(const LDebugHangDetector&) = delete;

 private:
  std::string path_;
};
