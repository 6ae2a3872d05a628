// The only process-wide registry: the services of the machine and of the way the program was started. main or a test
// fixture fills it once, before anything else is built; nothing replaces a service later.
// Threads  Fill and Clear [main] while no other thread runs; the getters [any].
// Failure  asking for a service that was not filled ends the program: it is a mistake of the caller, not of the
// machine.
#pragma once

class LClock;
class LComponentFinder;
class LMainLoop;
class LFolders;
class LPreferences;
class LSoundBackend;
class LSteps;
class LThreadPriorities;
class LToolkit;

struct LPlatformServices {
  LClock* clock = nullptr;
  LMainLoop* mainLoop = nullptr;
  LFolders* folders = nullptr;
  LPreferences* preferences = nullptr;
  LSoundBackend* soundBackend = nullptr;
  LToolkit* toolkit = nullptr;
  LThreadPriorities* priorities = nullptr;  // null: threads keep their priority
  LSteps* steps = nullptr;                  // null: step threads are real threads
  LComponentFinder* components = nullptr;   // null: no helper programs
};

class LPlatform {
 public:
  static void Fill(const LPlatformServices& services);
  static void Clear();

  static LClock& Clock();
  static LMainLoop& MainLoop();
  static LFolders& Folders();
  static LPreferences& Preferences();
  static LSoundBackend& SoundBackend();
  static LToolkit& Toolkit();
  static LThreadPriorities* Priorities();
  static LSteps* Steps();
  static LComponentFinder* Components();
};
