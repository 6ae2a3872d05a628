#include "sound/LSoundPlayer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>

#include "foundation/LPlatform.h"
#include "sound/LSplitter.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

constexpr int kSlice = kWantedSliceFrames, kLead = 4 * kSlice, kBlock = kDeckRate / 30;

struct PlayerRig : LSoundPlayerNotify {
  explicit PlayerRig(LTestPlatform::Threads threads = LTestPlatform::Threads::Offline, int deviceChannels = 4)
      : platform(threads, nullptr, deviceChannels) {
    platform.backend.SetCapture(0, [this](const int* samples, int frames, int channels) {
      heardChannels = channels;
      heard.insert(heard.end(), samples, samples + std::ptrdiff_t(frames) * channels);
    });
    player.SetNotify(this, 6);
  }
  void spntfPlay(long) override { events += 'p'; }
  void spntfStop(long) override { events += 's'; }
  void spntfPause(long) override { events += 'P'; }
  void spntfTime(LSoundTime time, long) override {
    if (events.empty() || events.back() != 't') events += 't';  // one letter for a row of them
    times.push_back(time);
  }
  void spntfLevel(const LLevels& now, long) override { levels = now; }

  bool Start(LSoundSourceBase* base, unsigned short flags = 0) {
    source = LSoundSource(base);
    return player.Start(source, flags);
  }
  void Render(int slices) {
    for (int i = 0; i < slices; ++i) platform.backend.RenderSlice(kSlice);
  }
  void Run(int slices) { platform.run.RunFrames(long(slices) * kSlice); }
  int HeardFrames() const { return int(heard.size()) / heardChannels; }
  int Heard(int frame, int channel = 0) const { return heard[std::size_t(frame * heardChannels + channel)] >> 12; }

  LTestPlatform platform;
  LSoundSource source;
  LSoundPlayer player;
  std::vector<int> heard;
  int heardChannels = 2;
  std::string events;
  std::vector<LSoundTime> times;
  LLevels levels;
};

// Each sample is its own frame's number, on every channel.
TestSource* Ramp(int frames, int channels = 2, int rate = kDeckRate) {
  std::vector<int> samples;
  for (int frame = 0; frame < frames; ++frame) samples.insert(samples.end(), std::size_t(channels), frame);
  return new TestSource(samples, rate, static_cast<unsigned char>(channels));
}

TEST(LSoundPlayer, ASourceArrivesExactlyAndStopComesLast) {
  for (const int channels : {1, 2, 4})
    for (const int frames : {1, kBlock, 8192, 150000}) {
      PlayerRig rig;
      const auto samples = Engine::Noise(3, kPeak16, std::size_t(frames * channels));
      ASSERT_TRUE(rig.Start(new TestSource(samples, kDeckRate, static_cast<unsigned char>(channels))));
      rig.Run(frames / kSlice + 10);
      EXPECT_EQ(rig.events, "pts");
      EXPECT_TRUE(std::is_sorted(rig.times.begin(), rig.times.end()));
      EXPECT_EQ(rig.times.back(), LSoundTimeFromFrames(frames, kDeckRate));
      EXPECT_FALSE(rig.player.IsActive());
      ASSERT_EQ(rig.heardChannels, channels);
      ASSERT_GE(rig.heard.size(), samples.size());
      for (std::size_t i = 0; i < rig.heard.size(); ++i)
        ASSERT_EQ(rig.heard[i], i < samples.size() ? samples[i] * 4096 : 0) << i;
    }
}

TEST(LSoundPlayer, TheTimeIsWhatIsHeardAndNotWhatIsRead) {
  PlayerRig rig;
  rig.Start(Ramp(200000));
  rig.Run(100);
  EXPECT_NEAR(rig.times.back(), LSoundTimeFromFrames(rig.HeardFrames(), kDeckRate), 60);
  EXPECT_NEAR(int(rig.times.size()), 100 / 3, 1);  // a report is due after three slices
}

TEST(LSoundPlayer, ABadSourceStopsTheOldPlay) {
  PlayerRig rig;
  rig.Start(Ramp(100000));
  rig.Run(10);
  EXPECT_FALSE(rig.Start(new LSoundSourceError(lseCannotOpen)));
  EXPECT_EQ(rig.events, "pts");
  EXPECT_FALSE(rig.player.IsActive());
  const int heard = rig.HeardFrames();
  rig.Run(10);
  EXPECT_EQ(rig.HeardFrames(), heard);
  EXPECT_EQ(rig.events, "pts");
  ASSERT_TRUE(rig.Start(Ramp(1000)));
  rig.Run(10);
  EXPECT_EQ(rig.Heard(heard + 999), 999);
}

TEST(LSoundPlayer, ASourceAtItsEndGivesOneTimeAndOneStop) {
  for (const auto threads : {LTestPlatform::Threads::Offline, LTestPlatform::Threads::Real})
    for (int round = 0; round < 20; ++round) {  // real: the refill thread may be over before the device starts
      PlayerRig rig(threads);
      auto* ramp = Ramp(100);
      ramp->Seek(100);
      ASSERT_TRUE(rig.Start(ramp));
      if (threads == LTestPlatform::Threads::Offline)
        rig.Run(5);
      else
        ASSERT_TRUE(rig.platform.WaitUntil([&] { return !rig.player.IsActive(); }));
      EXPECT_EQ(rig.events, "pts");
      EXPECT_EQ(rig.times, std::vector<LSoundTime>{2});
    }
}

TEST(LSoundPlayer, BeyondFullScaleTheDeviceIsHeldAndDeclaredPeaksAreLimited) {
  const struct {
    int declared, low, high;
  } kCases[] = {{kPeak16, -kFullScale * 4096, (kFullScale - 1) * 4096},
                {kPeakHeadroom, -kPeak16 * 4096, kPeak16 * 4096}};
  for (const auto& c : kCases) {
    PlayerRig rig;
    std::vector<int> samples;
    for (int i = 0; i < 20000; ++i) samples.insert(samples.end(), {1200000, -1200000});
    rig.Start(new TestSource(samples, kDeckRate, 2, c.declared));
    rig.Run(50);
    EXPECT_EQ(*std::max_element(rig.heard.begin(), rig.heard.end()), c.high);
    EXPECT_EQ(*std::min_element(rig.heard.begin(), rig.heard.end()), c.low);
    for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_GT(rig.heard[i] * (i % 2 ? -1.0 : 1.0), 0) << i;
  }
}

TEST(LSoundPlayer, AnExchangeKeepsThePlaceHoweverMuchTheDeviceTakesMeanwhile) {
  const struct {
    int beforeSeek, afterSeek;  // slices taken by the device
    bool refill;
  } kCases[] = {{0, 0, true}, {0, 0, false}, {1, 2, true}, {4, 0, true},
                {6, 0, true}, {0, 7, true},  {5, 6, true}, {6, 6, false}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.beforeSeek << " " << c.afterSeek << " " << c.refill);
    PlayerRig rig;
    auto* ramp = Ramp(200000);
    rig.Start(ramp);
    rig.Run(40);
    auto& device = rig.player.GetDevice();
    const int start = rig.HeardFrames();
    rig.player.LockEngine();
    device.ResyncStart();
    rig.Render(c.beforeSeek);
    LSoundSource& chain = rig.player.Chain();
    chain.Seek(chain.GetPositionSample() - device.GetLagToWriteCursor());
    ramp->negated = true;  // the new graph
    rig.player.RequestCrossFade();
    rig.Render(c.afterSeek);
    const int seam = std::max(start + kLead, rig.HeardFrames());
    device.ResyncBuffer(c.refill);
    device.ResyncFinish();
    EXPECT_EQ(device.GetPosition(), rig.HeardFrames());
    rig.player.UnlockEngine();
    rig.Run(40);
    for (int frame = 0; frame < seam; ++frame) ASSERT_EQ(rig.Heard(frame), frame);
    for (int frame = seam; frame < seam + kBlock; ++frame)  // from the old value to the new one, a little a frame
      ASSERT_NEAR(rig.Heard(frame), frame - 2.0 * frame * (frame - seam) / kBlock, 12) << frame - seam;
    for (int frame = seam + kBlock; frame < rig.HeardFrames(); ++frame) ASSERT_EQ(rig.Heard(frame), -frame);
  }
}

TEST(LSoundPlayer, TheLagIsWhatLiesBehindTheDevicesReach) {
  PlayerRig rig;
  rig.Start(Ramp(kLead - 1));
  rig.Run(1);
  EXPECT_EQ(rig.player.GetDevice().GetLagToWriteCursor(), 0);  // all of it is within reach
  rig.Start(Ramp(10000));
  rig.Run(1);
  EXPECT_EQ(rig.player.GetDevice().GetLagToWriteCursor(), 10000 - kSlice - kLead);
  rig.player.Pause();
  EXPECT_EQ(rig.player.GetDevice().GetLagToWriteCursor(), 0);
}

TEST(LSoundPlayer, PauseKeepsRingAndPlace) {
  PlayerRig rig;
  rig.Start(Ramp(20000), kPlayerStartPaused);
  rig.Run(5);
  EXPECT_EQ(rig.HeardFrames(), 0);
  ASSERT_TRUE(rig.player.Resume());
  for (int round = 0; round < 3; ++round) {
    rig.Run(7);
    rig.player.Pause();
    rig.Run(30);
    EXPECT_TRUE(rig.player.IsActive());
    EXPECT_FALSE(rig.player.IsPlaying());
    ASSERT_TRUE(rig.player.Resume());
  }
  rig.Run(40);
  for (int frame = 0; frame < 20000; ++frame) ASSERT_EQ(rig.Heard(frame), frame);
  EXPECT_EQ(rig.events.back(), 's');
}

TEST(LSoundPlayer, LevelsAndSamplesStandAtTheDevicesChannels) {
  PlayerRig rig(LTestPlatform::Threads::Offline, 6);
  LSoundPlayDevice device;
  device.left = 4;
  device.right = 5;
  rig.player.GetDevice().SetDevice(device);
  std::vector<int> samples;
  for (int i = 0; i < 40000; ++i)
    for (int channel = 0; channel < 6; ++channel) samples.push_back(channel == 0 ? kPeak16 : kPeak16 / (channel + 1));
  rig.Start(new TestSource(samples, kDeckRate, 6));
  rig.Run(20);
  EXPECT_EQ(rig.levels.channels, 6);
  EXPECT_EQ(rig.levels.levels[4].Get(), 3);  // of the first channel: a square wave is 3 dB above the sine
  EXPECT_EQ(rig.levels.levels[5].Get(), -3);
  const int expected[] = {samples[4], samples[5], samples[2], samples[3], samples[4], samples[5]};
  for (int channel = 0; channel < 6; ++channel) EXPECT_EQ(rig.Heard(kSlice, channel), expected[channel]);
}

TEST(LSoundPlayer, EqualChannelsMoveTheRightOneOfAStereoSourceOnly) {
  const struct {
    int channels, left, right, expected;
  } kCases[] = {{2, 0, 0, 1}, {2, 3, 3, 2}, {2, 1, 1, 0}, {2, 1, 0, 0}, {1, 2, 2, 2}, {1, 0, 0, 0}};
  for (const auto& c : kCases)
    for (const bool before : {true, false}) {
      PlayerRig rig;
      LSoundPlayDevice device;
      device.left = c.left;
      device.right = c.right;
      if (before) rig.player.GetDevice().SetDevice(device);
      rig.Start(Ramp(9000, c.channels));
      if (!before) rig.player.GetDevice().SetDevice(device);
      EXPECT_EQ(rig.player.GetDevice().GetDevice().left, c.left);
      EXPECT_EQ(rig.player.GetDevice().GetDevice().right, c.expected) << c.channels << " " << c.left << before;
    }
}

TEST(LSoundPlayer, AMonoSourceShowsItsLevel) {
  PlayerRig rig;
  LSoundPlayDevice device;
  device.left = device.right = 0;
  rig.player.GetDevice().SetDevice(device);
  rig.Start(new TestSource(std::vector<int>(20000, kPeak16), kDeckRate, 1));
  rig.Run(10);
  EXPECT_EQ(rig.levels.levels[0].Get(), 3);
}

TEST(LSoundPlayer, AStarvedDeviceGivesSilenceAndGoesOn) {
  PlayerRig rig;
  auto* stream = new TestSource(std::vector<int>(2 * 6000, 70000), kDeckRate, 2);
  stream->streaming = true;
  rig.Start(stream);
  rig.Run(8);
  EXPECT_EQ(rig.player.GetPriority(), kPriorityRaised);  // refill is the one behind
  rig.Run(10);
  EXPECT_EQ(rig.events, "pt");
  EXPECT_EQ(rig.levels.levels[0].Get(), LLevel::kMuted);
  for (int frame = 6000; frame < rig.HeardFrames(); ++frame) ASSERT_EQ(rig.Heard(frame), 0);
  stream->Seek(0);  // more has come
  rig.Run(4);
  EXPECT_EQ(rig.Heard(rig.HeardFrames() - kSlice), 70000);
  stream->streaming = false;
  rig.Run(20);
  EXPECT_EQ(rig.events, "pts");
}

TEST(LSoundPlayer, SourceAndDeviceChangeInPlay) {
  PlayerRig rig;
  std::vector<int> second;
  rig.platform.backend.SetCapture(1, [&](const int* samples, int frames, int channels) {
    for (int frame = 0; frame < frames; ++frame) second.push_back(samples[std::ptrdiff_t(frame) * channels] >> 12);
  });
  rig.Start(Ramp(200000));
  rig.Run(10);
  LSoundPlayDevice other;
  other.index = 2;
  rig.player.GetDevice().SetDevice(other);
  rig.Run(10);
  ASSERT_EQ(second.size(), 10u * kSlice);
  for (int i = 0; i < 10 * kSlice; ++i) ASSERT_EQ(second[std::size_t(i)], rig.HeardFrames() + i);  // what was queued
  LSoundSource mono(Ramp(100000, 1, 48000));
  mono.Seek(500);
  rig.player.LockEngine();
  rig.player.ReplaceSource(mono);
  rig.player.UnlockEngine();
  rig.Run(10);
  EXPECT_EQ(rig.player.GetDevice().GetSampleRate(), 48000);
  for (int i = 0; i < 10 * kSlice; ++i) ASSERT_EQ(second[std::size_t(10 * kSlice + i)], 500 + i);
}

// Priorities of the refill thread and the done handler, as the machine is told.
class RecordedPriorities final : public LThreadPriorities {
 public:
  void Apply(long thread, int priority) override {
    std::lock_guard lock(mutex);
    applied.push_back({thread, priority});
  }
  std::vector<std::pair<long, int>> Applied() {
    std::lock_guard lock(mutex);
    return applied;
  }

 private:
  LMutex mutex;
  std::vector<std::pair<long, int>> applied;
};

TEST(LSoundPlayer, WhoeverIsBehindGetsThePriorityAndEachChangeIsToldOnce) {
  PlayerRig rig(LTestPlatform::Threads::Real);
  RecordedPriorities priorities;
  LPlatformServices services;
  services.clock = &rig.platform.realClock;
  services.mainLoop = &rig.platform.loop;
  services.soundBackend = &rig.platform.backend;
  services.preferences = &rig.platform.preferences;
  services.priorities = &priorities;
  LPlatform::Fill(services);
  rig.Start(Ramp(2000000));
  ASSERT_TRUE(rig.platform.WaitUntil([&] {  // the device takes as fast as can be written: never full
    rig.Render(3);
    return rig.player.GetPriority() == kPriorityRaised;
  }));
  ASSERT_TRUE(rig.platform.WaitUntil([&] { return rig.player.GetPriority() == kPriorityWorking; }));  // full
  rig.platform.WaitUntil([] { return false; }, 50);
  rig.player.StopPlaying();
  int raised = 0;
  for (const auto& [thread, priority] : priorities.Applied()) raised += priority == kPriorityRaised;
  EXPECT_EQ(raised, 1);  // the refill thread; the done handler never asks for real time
  EXPECT_LE(priorities.Applied().size(), 5u);
}

TEST(LSplitter, SharedSeeksAndSkipsKeepEachHalfsPlace) {
  std::vector<int> samples;
  for (int frame = 0; frame < 20000; ++frame) samples.insert(samples.end(), 4, frame);
  LSoundSource mix(new TestSource(samples, kDeckRate, 4)), halves[2];
  LSplitter splitter;
  splitter.Open(mix, {0, 1, 0, 1}, halves[0], halves[1]);
  const struct {
    bool skip;
    int move[2];  // frames from where each stands
    int read[2];  // afterwards
  } kSteps[] = {{false, {0, 0}, {5000, 3000}},   {false, {-1000, -100}, {0, 0}}, {false, {0, 0}, {0, 0}},
                {true, {300, 0}, {0, 0}},        {true, {0, 70}, {500, 500}},    {false, {-200, -900}, {0, 0}},
                {false, {-50, -60}, {3000, 10}}, {true, {0, 0}, {10, 10}}};
  int at[2] = {0, 0};
  for (const auto& step : kSteps) {
    splitter.BeginSharedSeek();
    for (int i : {0, 1})
      if (step.move[i] != 0) halves[i].Seek(at[i] += step.move[i]);
    step.skip ? splitter.EndSharedSkip() : splitter.EndSharedSeek();
    for (int i : {0, 1}) {
      EXPECT_EQ(halves[i].GetPositionSample(), at[i]);
      std::vector<int> got;
      ReadInto(got, halves[i], step.read[i]);
      for (std::size_t frame = 0; frame < got.size() / 2; ++frame) ASSERT_EQ(got[2 * frame], at[i] + int(frame));
      at[i] += step.read[i];
    }
  }
}

}  // namespace
