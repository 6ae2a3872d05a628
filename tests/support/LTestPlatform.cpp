#include "support/LTestPlatform.h"

#include <cstdlib>
#include <filesystem>

#include "foundation/LFile.h"
#include "foundation/LPlatform.h"
#include "foundation/LThreadRole.h"
#include "foundation/LTimerHandler.h"

namespace {

std::string NewTempFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "tavi_test_XXXXXX").string();
  return ::mkdtemp(path.data()) ? path : "/tmp";
}

}  // namespace

LTestPlatform::LTestPlatform(Threads threads, LToolkit* toolkit, int deviceChannels, int deviceCount)
    : folder(NewTempFolder()),
      loop(threads == Threads::Real ? static_cast<LClock&>(realClock) : clock),
      folders(folder),
      backend(deviceChannels, deviceCount),
      run(loop, clock, steps, backend) {
  tlThreadRole = LThreadRole::Main;
  services_.clock = threads == Threads::Real ? static_cast<LClock*>(&realClock) : &clock;
  services_.mainLoop = &loop;
  services_.folders = &folders;
  services_.preferences = &preferences;
  services_.soundBackend = &backend;
  services_.toolkit = toolkit;
  services_.steps = threads == Threads::Offline ? &steps : nullptr;
  LPlatform::Fill(services_);
  LTimerHandler::Enable(true);
}

LTestPlatform::~LTestPlatform() {
  LTimerHandler::Enable(false);
  LPlatform::Clear();
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

void LTestPlatform::SetComponents(LComponentFinder* finder) {
  services_.components = finder;
  LPlatform::Fill(services_);
}

std::string LTestPlatform::TempPath(const std::string& name) const { return LFile::MakePath(folder, name); }
