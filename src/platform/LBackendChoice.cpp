#include "platform/LBackendChoice.h"

#include "platform/null/LNullBackend.h"
#include "platform/pulse/LPulseBackend.h"
#include "platform/rtaudio/LRtAudioBackend.h"

namespace {

struct System {
  const char* name;
  bool onlyOnRequest;
  std::unique_ptr<LSoundBackend> (*make)();
};

// In the order tried.
constexpr System kSystems[] = {
#if defined(__APPLE__)
    {"coreaudio", false, [] { return std::unique_ptr<LSoundBackend>(new LRtAudioBackend("coreaudio")); }},
#else
    {"pulse", false, [] { return std::unique_ptr<LSoundBackend>(new LPulseBackend()); }},
    {"alsa", false, [] { return std::unique_ptr<LSoundBackend>(new LRtAudioBackend("alsa")); }},
#endif
    {"jack", true, [] { return std::unique_ptr<LSoundBackend>(new LRtAudioBackend("jack")); }},
};

}  // namespace

std::unique_ptr<LSoundBackend> ChooseSoundBackend(const std::string& wanted, const std::string& api) {
  if (wanted == LNullBackend::kDeviceName) return std::make_unique<LNullBackend>();
  const std::string asked = wanted.starts_with("jack:") ? "jack" : api;
  for (const bool askedOnes : {true, false})
    for (const System& system : kSystems) {
      if (askedOnes != (asked == system.name) || (!askedOnes && system.onlyOnRequest)) continue;
      auto backend = system.make();
      if (!backend->OutputDevices().empty()) return backend;
    }
  return std::make_unique<LNullBackend>();
}
