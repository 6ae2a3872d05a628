#include "sound/LSoundRecordDevice.h"

#include <map>
#include <mutex>

#include "foundation/LMutex.h"
#include "foundation/LPlatform.h"
#include "sound/LSoundPlayDevice.h"

namespace {

LMutex volumesMutex;
std::map<std::pair<std::string, int>, LLevel> volumes;  // by device name and channel

}  // namespace

std::vector<LSoundDeviceInfo> LSoundRecordDevice::GetSoundRecordDeviceList() {
  return LPlatform::SoundBackend().InputDevices();
}

int LSoundRecordDevice::GetListDeviceCount() { return int(GetSoundRecordDeviceList().size()); }

LSoundRecordDevice LSoundRecordDevice::GetDefaultSoundRecordDevice() {
  LSoundRecordDevice device;
  for (const LSoundDeviceInfo& info : GetSoundRecordDeviceList())
    if (info.isDefault) device.hasSeveralChannels = info.channels > 1;
  return device;
}

std::vector<std::string> LSoundRecordDevice::GetSoundRecordDeviceChannelsById(int index) {
  const std::vector<LSoundDeviceInfo> devices = GetSoundRecordDeviceList();
  if (index < 1 || index > int(devices.size())) return DefaultChannelNames(2);
  const LSoundDeviceInfo& info = devices[std::size_t(index) - 1];
  return info.channelNames.empty() ? DefaultChannelNames(info.channels) : info.channelNames;
}

LLevel LSoundRecordDeviceVolumes::Get(const std::string& deviceName, int channel) {
  std::lock_guard lock(volumesMutex);
  const auto found = volumes.find({deviceName, channel});
  return found == volumes.end() ? LLevel(0) : found->second;
}

void LSoundRecordDeviceVolumes::Set(const std::string& deviceName, int channel, LLevel volume) {
  std::lock_guard lock(volumesMutex);
  volumes[{deviceName, channel}] = volume;
}
