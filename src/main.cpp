// Plugs the parts together: which clock and loop, which sound backend, which toolkit. Everything else is in the rooms.
#include <sys/resource.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>

#include "foundation/LClock.h"
#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "foundation/LStartUp.h"
#include "foundation/LStepThread.h"
#include "platform/LBackendChoice.h"
#include "platform/linux/LLinuxPriorities.h"
#include "platform/linux/LPathComponents.h"
#include "platform/offline/LOfflineBackend.h"
#include "platform/offline/LOfflineRun.h"
#include "platform/sqlite/LSqlitePreferences.h"
#include "shell/MainDialog.h"
#include "shell/TCommandLine.h"
#include "shell/THelperForms.h"
#include "sound/LSoundPlayDevice.h"
#include "toolkit/headless/LHeadlessToolkit.h"
#include "toolkit/qt/LQtToolkit.h"

namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };
constexpr rlim_t kOpenFiles = 4096;
constexpr int kOfflineChannels = 8;

LMainLoop* loopToQuit = nullptr;

// Ends the program as its menu does, without a question. Only what a signal handler may do: a flag and one pipe byte.
void QuitOnSignal(int) {
  if (loopToQuit) loopToQuit->Quit();
}

void PrepareProcess() {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");  // numbers in files do not change with the language
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // a file grown too large is a failed write
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kOpenFiles) return;
  limit.rlim_cur = std::min<rlim_t>(kOpenFiles, limit.rlim_max);
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

int WrongUsage(const std::string& text) {
  std::fprintf(stderr, "tavi: %s\nMehr mit: tavi --help\n", text.c_str());
  return kWrongUsage;
}

int ListDevices(const std::string& wanted) {
  const auto backend = ChooseSoundBackend(wanted);
  for (const LSoundDeviceInfo& device : backend->OutputDevices())
    std::printf("%s: %s (%d Kanäle)\n", backend->Name().c_str(), device.name.c_str(), device.channels);
  if (backend->Name() != "null") std::printf("null: null\n");
  return kDone;
}

// The demo tracks lie beside the program: in the build folder, or in share/ of an installation.
std::string DemoTrack(const char* name) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (const char* folder : {"../demo", "../share/tavi/demo"})
    if (const auto path = program / folder / name; std::filesystem::exists(path, error))
      return std::filesystem::weakly_canonical(path, error).string();
  return name;
}

std::string ReadScript(const std::string& path, bool& ok) {
  ok = true;
  if (path == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  const auto text = LFile::ReadAll(path);
  ok = text.has_value();
  return text.value_or("");
}

struct Run {
  TStartOptions options;
  TScript script;
  int argumentCount;
  char** arguments;
};

void FillServices(LPlatformServices& services, LClock& clock, LMainLoop& loop, LFolders& folders,
                  LPreferences& preferences) {
  services.clock = &clock;
  services.mainLoop = &loop;
  services.folders = &folders;
  services.preferences = &preferences;
  static LPathComponents components;
  services.components = &components;
  loopToQuit = &loop;
  std::signal(SIGINT, QuitOnSignal);
  std::signal(SIGTERM, QuitOnSignal);
}

int RunDialog(const Run& run, const LFolders& folders) {
  LFileMigrateSharedSettings(folders);
  const LDebugHangDetector hangDetector(folders);
  MainDialog dialog(run.options, run.script);
  dialog.Run(run.argumentCount, run.arguments);
  return dialog.HadError() ? kFailed : kDone;
}

void TellOnStandardError(LHeadlessToolkit& toolkit) {
  toolkit.SetLogSink([](const std::string& line) {
    if (!line.starts_with("Status:")) std::fprintf(stderr, "%s\n", line.c_str());
  });
}

int RunOffline(const Run& run) {
  LVirtualClock clock;
  LMainLoop loop(clock);
  LFolders folders(run.options.dataFolder);
  LMemoryPreferences preferences;
  LOfflineBackend backend(kOfflineChannels);
  LSteps steps;
  LOfflineRun offline(loop, clock, steps, backend);
  LHeadlessToolkit toolkit;
  TellOnStandardError(toolkit);
  toolkit.SetRunFunction([&] { offline.RunUntilQuit(); });
  LPlatformServices services;
  FillServices(services, clock, loop, folders, preferences);
  services.soundBackend = &backend;
  services.toolkit = &toolkit;
  services.steps = &steps;
  LPlatform::Fill(services);
  return RunDialog(run, folders);
}

// Of "--device NAME" or "--device jack:NAME".
std::string DeviceName(const std::string& option) {
  constexpr std::string_view kJack = "jack:";
  return option.starts_with(kJack) ? option.substr(kJack.size()) : option;
}

int RunRealTime(Run& run, bool window) {
  LRealClock clock;
  LMainLoop loop(clock);
  LFolders folders(run.options.dataFolder);
  LSqlitePreferences preferences(LSqlitePreferences::PathIn(folders.GetUserDataFolderApp()));
  LLinuxPriorities priorities;
  const auto backend = ChooseSoundBackend(run.options.device, preferences.Get("Settings/AudioApi").value_or(""));
  LPlatformServices services;
  FillServices(services, clock, loop, folders, preferences);
  services.soundBackend = backend.get();
  services.priorities = &priorities;
  LPlatform::Fill(services);
  std::string& device = run.options.device;
  device = DeviceName(device);
  if (!device.empty() && LSoundPlayDevice::GetListDeviceIndex(device) == 0)
    return WrongUsage("Das Gerät \"" + device + "\" gibt es nicht. Die Geräte nennt --list-devices.");
  std::unique_ptr<LToolkit> toolkit;
  if (window) {
    toolkit = std::make_unique<LQtToolkit>(run.argumentCount, run.arguments);
  } else {
    auto headless = std::make_unique<LHeadlessToolkit>();
    TellOnStandardError(*headless);
    toolkit = std::move(headless);
  }
  services.toolkit = toolkit.get();
  LPlatform::Fill(services);
  return RunDialog(run, folders);
}

}  // namespace

int main(int argc, char** argv) {
  tlThreadRole = LThreadRole::Main;
  PrepareProcess();
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (const auto status = RunHelperForm(arguments)) return *status;

  std::string error;
  Run run{TCommandLine::Parse(arguments, error), {}, argc, argv};
  TStartOptions& options = run.options;
  if (!error.empty()) return WrongUsage(error);
  if (options.help) return std::fputs(TCommandLine::HelpText().c_str(), stdout), kDone;
  if (options.version) return std::fputs(TCommandLine::VersionText().c_str(), stdout), kDone;
  if (options.listDevices) return ListDevices(options.device);

  if (!options.screenshotPath.empty() && !LQtToolkit::HasDisplay()) ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const bool window = !options.headless && LQtToolkit::HasDisplay();
  if (options.demo) {
    run.script = TScript::Demo(DemoTrack("Tavi Demo - Nachtfahrt.wav"), DemoTrack("Tavi Demo - Morgenrot.wav"));
    if (!window) {
      options.offline = true;
      if (options.recordPath.empty()) options.recordPath = "mix.wav";
    }
  } else if (!options.scriptPath.empty()) {
    bool read;
    const std::string text = ReadScript(options.scriptPath, read);
    if (!read) return WrongUsage("Das Skript \"" + options.scriptPath + "\" kann nicht gelesen werden.");
    run.script = TScript::Parse(text, error);
    if (!error.empty()) return WrongUsage(error);
  }
  if (!window && !options.headless && !options.offline)
    return WrongUsage("Es ist kein Bildschirm da. Ohne Fenster laufen --headless, --offline und --demo.");
  return options.offline ? RunOffline(run) : RunRealTime(run, window);
}
