// A whole machine for a test: virtual clock, main loop, preferences in memory, folders below a temporary one, the offline
// sound backend. Fills LPlatform for its lifetime.
#pragma once
#include <string>

#include "foundation/LClock.h"
#include "foundation/LFolders.h"
#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "foundation/LStepThread.h"
#include "platform/offline/LOfflineBackend.h"
#include "platform/offline/LOfflineRun.h"

class LComponentFinder;
class LToolkit;

class LTestPlatform {
 public:
  enum class Threads { Offline, Real };  // steps on the main loop and a virtual clock, or real threads and time

  explicit LTestPlatform(Threads threads = Threads::Offline, LToolkit* toolkit = nullptr, int deviceChannels = 4,
                         int deviceCount = 2);
  ~LTestPlatform();

  void SetComponents(LComponentFinder* finder);  // helper programs; outlives this
  std::string TempPath(const std::string& name) const;
  // Real threads: dispatches the loop until the condition holds; false after the time limit.
  template <class Condition>
  bool WaitUntil(Condition condition, int limitMs = 10000) {
    const LRealClock real;
    for (const auto start = real.NowMs(); real.NowMs() - start < unsigned(limitMs);) {
      if (condition()) return true;
      loop.RunOnce(10);
    }
    return condition();
  }

  std::string folder;
  LVirtualClock clock;
  LRealClock realClock;
  LMainLoop loop;
  LFolders folders;
  LMemoryPreferences preferences;
  LOfflineBackend backend;
  LSteps steps;
  LOfflineRun run;

 private:
  LPlatformServices services_;
};
