#include "console/TPlayers.h"

#include <gtest/gtest.h>

#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

// A seek that takes as long as the devices need for some slices, as a file on a slow disk may.
class SlowSeekSource final : public LSoundProcessBase {
 public:
  SlowSeekSource(const LSoundSource& input, LOfflineBackend& backend) : LSoundProcessBase(input), backend_(backend) {}
  void Read(int* out, int frames) override { input_.Read(out, frames); }
  void Seek(int frame) override {
    for (int i = 0; i < slices; ++i) backend_.RenderSlice(kWantedSliceFrames);
    input_.Seek(frame);
  }
  int slices = 0;

 private:
  LOfflineBackend& backend_;
};

TEST(TPlayers, BothDevicesStayFrameExactThroughResyncsOfAnyLength) {
  LTestPlatform platform;
  std::vector<int> heard[2];
  for (const int device : {0, 1})
    platform.backend.SetCapture(device, [&heard, device](const int* samples, int frames, int channels) {
      for (int i = 0; i < frames; ++i) heard[device].push_back(samples[std::ptrdiff_t(i) * channels] >> 12);
    });
  std::vector<int> track;
  for (int frame = 0; frame < 400000; ++frame) track.insert(track.end(), 4, frame);
  auto* slow = new SlowSeekSource(LSoundSource(new TestSource(track, kDeckRate, 4)), platform.backend);
  LSoundSource mix(slow);
  TPlayers players;
  LSoundPlayDevice devices[2];
  devices[0].index = 1;
  devices[1].index = 2;
  players.SetDevices(devices[0], devices[1], true);
  players.OpenSplitter(mix, {0, 1, 0, 1});
  ASSERT_TRUE(players.Start(players.MainHalf(), players.HeadphoneHalf()));
  platform.run.RunFrames(9000);
  const struct {
    int slices;
    bool refill;
  } kResyncs[] = {{0, true}, {0, false}, {2, true}, {0, false}, {0, true},
                  {6, true}, {9, false}, {1, true}, {20, true}};
  for (int round = 0; round < 5; ++round)
    for (const auto& resync : kResyncs) {
      const TPlayersLock lock(players);
      slow->slices = round > 0 ? resync.slices : 0;
      players.Resync(resync.refill);
      slow->slices = 0;
      if (round > 0) platform.run.RunFrames(round * 900);  // the first round: one upon the other
    }
  platform.run.RunFrames(10000);
  for (const auto& device : heard) {
    int at = 0;
    for (const int value : device) {
      ASSERT_NEAR(value, at, 30);  // fade upon fade at one place rounds down a little each time
      ++at;
    }
    EXPECT_EQ(device.back(), at - 1);
    EXPECT_GT(at, 100000);
  }
}

}  // namespace
