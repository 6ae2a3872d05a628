// What the sound backends share: texts about a lost or regained device, and lists without two equal names.
// Threads  [any]
#pragma once
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/LMutex.h"
#include "sound/LSoundBackend.h"

inline constexpr unsigned kDeviceSilentMs = 1000;  // without a callback for so long a device counts as lost
inline constexpr unsigned kDeviceRetryMs = 2000;   // between two attempts to get it back

class LDeviceMessages {
 public:
  void Lost(const std::string& name) { Set("Das Audiogerät \"" + name + "\" antwortet nicht mehr und wird gesucht."); }
  void Regained(const std::string& name) { Set("Der Ton läuft wieder über \"" + name + "\"."); }
  std::string Take() {
    std::lock_guard lock(mutex_);
    return std::exchange(text_, "");
  }

 private:
  void Set(const std::string& text) {
    std::lock_guard lock(mutex_);
    text_ = text;
  }

  LMutex mutex_;
  std::string text_;  // the latest alone: an older state is of no use
};

inline void MakeNamesUnique(std::vector<LSoundDeviceInfo>& devices) {
  std::set<std::string> taken;
  for (LSoundDeviceInfo& device : devices) {
    std::string name = device.name;
    for (int number = 2; !taken.insert(name).second; ++number) name = device.name + " (" + std::to_string(number) + ")";
    device.name = name;
  }
}
