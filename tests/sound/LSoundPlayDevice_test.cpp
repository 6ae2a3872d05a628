#include "sound/LSoundPlayDevice.h"

#include <gtest/gtest.h>

#include "sound/LSoundRecordDevice.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

TEST(LSoundPlayDevice, NamesAndIndices) {
  LTestPlatform platform(LTestPlatform::Threads::Offline, nullptr, 4, 2);
  EXPECT_EQ(LSoundPlayDevice::GetListDeviceCount(), 2);
  const struct {
    const char* name;
    int index;
  } kNames[] = {{"Standard-Wiedergabegerät", 0}, {"Offline", 1}, {"oFFLINE (2)", 2}, {"Offline (3)", 0}, {"", 0}};
  for (const auto& c : kNames) EXPECT_EQ(LSoundPlayDevice::GetListDeviceIndex(c.name), c.index) << c.name;
  const char* const kListed[] = {"", "Standard-Wiedergabegerät", "Offline", "Offline (2)", ""};
  for (int i = -1; i <= 3; ++i) EXPECT_EQ(LSoundPlayDevice::GetListDeviceName(i), kListed[i + 1]) << i;
}

TEST(LSoundPlayDevice, ChannelsHaveLabels) {
  using Names = std::vector<std::string>;
  const struct {
    int deviceChannels;
    Names names;
  } kCases[] = {{1, {"Mono"}}, {2, {"Links", "Rechts"}}, {3, {"Kanal 1", "Kanal 2", "Kanal 3"}}};
  for (const auto& c : kCases) {
    LTestPlatform platform(LTestPlatform::Threads::Offline, nullptr, c.deviceChannels);
    EXPECT_EQ(LSoundPlayDevice().GetNumOutputChannels(), c.deviceChannels);
    EXPECT_EQ(LSoundPlayDevice().GetOutputChannelList(), c.names);
  }
  LTestPlatform platform(LTestPlatform::Threads::Offline, nullptr, 4, 0);
  EXPECT_EQ(LSoundPlayDevice().GetNumOutputChannels(), 2);  // no device at all
  EXPECT_EQ(LSoundPlayDevice().GetOutputChannelList(), (Names{"Links", "Rechts"}));
  EXPECT_EQ(ChannelNameFromLabel(34, 6), "Surround hinten rechts");
  EXPECT_EQ(ChannelNameFromLabel(301, 0), "Kopfhörer links");
  EXPECT_EQ(ChannelNameFromLabel(10, 9), "Kanal 10");
}

TEST(LSoundRecordDevice, ADeviceWithOneChannelIsKnown) {
  LTestPlatform platform;
  EXPECT_EQ(LSoundRecordDevice::GetListDeviceCount(), 0);
  EXPECT_EQ(LSoundRecordDevice().Info().channels, 0);
  platform.backend.SetInput(LSoundSource(new TestSource({}, 44100, 1)));
  EXPECT_FALSE(LSoundRecordDevice::GetDefaultSoundRecordDevice().hasSeveralChannels);
  for (const int index : {0, 1})
    EXPECT_EQ(LSoundRecordDevice::GetSoundRecordDeviceChannelsById(index), std::vector<std::string>{"Mono"});
}

}  // namespace
