// Which device is recorded from, and the volume that the user gave each input.
// Units    index 0 is the system's default input; 1.. the entries of the list. Channels count from 0. Volume in dB.
// Threads  [main]; the volumes [any].
#pragma once
#include <string>
#include <vector>

#include "sound/LSoundBackend.h"
#include "sound/LdB.h"

struct LSoundRecordDevice {
  int index = 0;
  int channel = 0;
  bool hasSeveralChannels = true;

  int BackendIndex() const { return index <= 0 ? kDefaultDevice : index - 1; }

  LSoundDeviceInfo Info() const;  // of no channels if there is no such device

  static std::vector<LSoundDeviceInfo> GetSoundRecordDeviceList();
  static int GetListDeviceCount();
  static LSoundRecordDevice GetDefaultSoundRecordDevice();
  static std::vector<std::string> GetSoundRecordDeviceChannelsById(int index);
};

namespace LSoundRecordDeviceVolumes {
LLevel Get(const std::string& deviceName, int channel);  // 0 dB if none was set
void Set(const std::string& deviceName, int channel, LLevel volume);
}  // namespace LSoundRecordDeviceVolumes
