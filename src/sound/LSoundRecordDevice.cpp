#include "sound/LSoundRecordDevice.h"

#include <algorithm>
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

LSoundDeviceInfo LSoundRecordDevice::Info() const {
  const std::vector<LSoundDeviceInfo> devices = GetSoundRecordDeviceList();
  if (index > 0) return index <= int(devices.size()) ? devices[std::size_t(index) - 1] : LSoundDeviceInfo{};
  const auto found = std::find_if(devices.begin(), devices.end(), [](const auto& device) { return device.isDefault; });
  if (found != devices.end()) return *found;
  return devices.empty() ? LSoundDeviceInfo{} : devices.front();
}

int LSoundRecordDevice::GetListDeviceCount() { return int(GetSoundRecordDeviceList().size()); }

LSoundRecordDevice LSoundRecordDevice::GetDefaultSoundRecordDevice() {
  LSoundRecordDevice device;
  device.hasSeveralChannels = device.Info().channels != 1;
  return device;
}

std::vector<std::string> LSoundRecordDevice::GetSoundRecordDeviceChannelsById(int index) {
  LSoundRecordDevice device;
  device.index = index;
  const LSoundDeviceInfo info = device.Info();
  if (info.channels < 1) return DefaultChannelNames(2);
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
