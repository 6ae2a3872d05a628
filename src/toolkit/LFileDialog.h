// The choice of files to open, of a folder, or of a name to save under.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

class LWindow;

struct LFileFilter {
  std::string text;                   // "Musikdateien"
  std::vector<std::string> patterns;  // "*.mp3"
};

class LFileDialog {
 public:
  enum class Kind { OpenFile, OpenFiles, OpenFolder, Save };
  explicit LFileDialog(Kind dialogKind, std::string dialogTitle) : kind(dialogKind), title(std::move(dialogTitle)) {}

  bool Run(LWindow* parent = nullptr);  // false: cancelled, paths is empty
  std::string Path() const { return paths.empty() ? "" : paths.front(); }

  Kind kind;
  std::string title;
  std::string folder;     // where it starts; after a choice the folder of the choice
  std::string name;       // Save: the name proposed
  std::string extension;  // Save: added to a name without one, with its point
  std::vector<LFileFilter> filters;
  std::vector<std::string> paths;  // absolute
};
