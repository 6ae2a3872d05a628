// Which device plays, and on which of its channels. Lists are walks over the backend's devices, made anew each time.
// Units    index 0 is the system's default output; 1.. the entries of the list. Channels count from 0.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

#include "sound/LSoundBackend.h"

inline constexpr const char* kDefaultPlayDeviceName = "Standard-Wiedergabegerät";

struct LSoundPlayDevice {
  int index = 0;
  int left = 0, right = 1;
  friend bool operator==(const LSoundPlayDevice&, const LSoundPlayDevice&) = default;

  int BackendIndex() const { return index <= 0 ? kDefaultDevice : index - 1; }
  int GetNumOutputChannels() const;                       // at least 1; 2 if unknown
  std::vector<std::string> GetOutputChannelList() const;  // one label per channel

  static int GetListDeviceCount();
  static std::string GetListDeviceName(int index);         // "" if there is no such entry
  static int GetListDeviceIndex(const std::string& name);  // 0 for the default's name and for an unknown one
};

// One label per channel of a device that knows no layout.
std::vector<std::string> DefaultChannelNames(int channels);
// The label of a channel by its number in a known layout (1 left, 2 right, 3 centre, ...); "Kanal %d" for others.
std::string ChannelNameFromLabel(int label, int channel);
