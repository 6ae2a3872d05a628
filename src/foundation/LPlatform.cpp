#include "foundation/LPlatform.h"

#include <cstdio>
#include <cstdlib>

namespace {

LPlatformServices services;

template <class Service>
Service& Need(Service* service, const char* name) {
  if (service) return *service;
  std::fprintf(stderr, "LPlatform: %s asked for before it was filled\n", name);
  std::abort();
}

}  // namespace

void LPlatform::Fill(const LPlatformServices& filled) { services = filled; }
void LPlatform::Clear() { services = {}; }

LClock& LPlatform::Clock() { return Need(services.clock, "Clock"); }
LMainLoop& LPlatform::MainLoop() { return Need(services.mainLoop, "MainLoop"); }
LFolders& LPlatform::Folders() { return Need(services.folders, "Folders"); }
LPreferences& LPlatform::Preferences() { return Need(services.preferences, "Preferences"); }
LSoundBackend& LPlatform::SoundBackend() { return Need(services.soundBackend, "SoundBackend"); }
LToolkit& LPlatform::Toolkit() { return Need(services.toolkit, "Toolkit"); }
LThreadPriorities* LPlatform::Priorities() { return services.priorities; }
LSteps* LPlatform::Steps() { return services.steps; }
LComponentFinder* LPlatform::Components() { return services.components; }
