#include "sound/LSoundPlayDevice.h"

#include <algorithm>

#include "foundation/LPlatform.h"
#include "foundation/LText.h"

namespace {

struct ChannelLabel {
  int label;
  const char* text;
};
constexpr ChannelLabel kChannelLabels[] = {
    {1, "Links"},
    {2, "Rechts"},
    {3, "Mitte"},
    {4, "Subwoofer"},
    {5, "Surround links"},
    {6, "Surround rechts"},
    {7, "Mitte links"},
    {8, "Mitte rechts"},
    {9, "Surround Mitte"},
    {33, "Surround hinten links"},
    {34, "Surround hinten rechts"},
    {42, "Mono"},
    {301, "Kopfhörer links"},
    {302, "Kopfhörer rechts"},
};

// The entry of the list, or of the default; an empty one if there is none.
LSoundDeviceInfo FindInfo(int index) {
  const std::vector<LSoundDeviceInfo> devices = LPlatform::SoundBackend().OutputDevices();
  if (index > 0) return index <= int(devices.size()) ? devices[std::size_t(index) - 1] : LSoundDeviceInfo{};
  const auto found = std::find_if(devices.begin(), devices.end(), [](const auto& device) { return device.isDefault; });
  if (found != devices.end()) return *found;
  return devices.empty() ? LSoundDeviceInfo{} : devices.front();
}

}  // namespace

int LSoundPlayDevice::GetNumOutputChannels() const {
  const int channels = FindInfo(index).channels;
  return channels > 0 ? channels : 2;
}

std::vector<std::string> LSoundPlayDevice::GetOutputChannelList() const {
  LSoundDeviceInfo info = FindInfo(index);
  if (!info.channelNames.empty()) return info.channelNames;
  return DefaultChannelNames(info.channels > 0 ? info.channels : 2);
}

int LSoundPlayDevice::GetListDeviceCount() { return int(LPlatform::SoundBackend().OutputDevices().size()); }

std::string LSoundPlayDevice::GetListDeviceName(int index) {
  if (index < 0) return "";
  return index == 0 ? kDefaultPlayDeviceName : FindInfo(index).name;
}

int LSoundPlayDevice::GetListDeviceIndex(const std::string& name) {
  if (name == kDefaultPlayDeviceName) return 0;
  const std::vector<LSoundDeviceInfo> devices = LPlatform::SoundBackend().OutputDevices();
  for (std::size_t i = 0; i < devices.size(); ++i)
    if (LText::EqualsNoCase(devices[i].name, name)) return int(i) + 1;
  return 0;
}

std::vector<std::string> DefaultChannelNames(int channels) {
  if (channels == 1) return {"Mono"};
  if (channels == 2) return {"Links", "Rechts"};
  std::vector<std::string> names;
  names.reserve(std::size_t(std::max(channels, 0)));
  for (int channel = 0; channel < channels; ++channel) names.push_back(ChannelNameFromLabel(0, channel));
  return names;
}

std::string ChannelNameFromLabel(int label, int channel) {
  for (const ChannelLabel& row : kChannelLabels)
    if (row.label == label) return row.text;
  return LText::Format("Kanal %d", channel + 1);
}
