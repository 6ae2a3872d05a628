// The program's options as given on the command line.
// Threads  [main]
// Failure  wrong usage gives a German text; nothing has been done then.
#pragma once
#include <optional>
#include <string>
#include <vector>

struct TStartOptions {
  bool help = false, version = false, listDevices = false;
  bool demo = false;
  bool headless = false, offline = false;
  std::string dataFolder;
  std::string device;  // as given; MainDialog gets a name of the list
  std::string recordPath;
  std::string scriptPath;  // "-" is standard input
  std::optional<double> durationSeconds;
  std::string statePath;
  std::string screenshotPath;
  std::vector<std::string> tracks;  // for deck A, then deck B
};

namespace TCommandLine {
// Arguments without the program's name. An empty error text means that the options are good.
TStartOptions Parse(const std::vector<std::string>& arguments, std::string& error);
std::string HelpText();
std::string VersionText();
}  // namespace TCommandLine
