#include "platform/rtaudio/LRtAudioBackend.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "JackCapture.h"
#include "Ramp.h"
#include "SoundServer.h"
#include "foundation/LPlatform.h"
#include "platform/LBackendChoice.h"
#include "sound/LSoundPlayer.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

constexpr int kFrames = 30000, kCaptureFrames = 44100 * 8;

int IndexOf(const std::vector<LSoundDeviceInfo>& devices, const std::string& name) {
  for (std::size_t i = 0; i < devices.size(); ++i)
    if (devices[i].name == name) return int(i);
  return -2;
}

LSoundStreamFormat FourChannels(int rate) {
  LSoundStreamFormat format;
  format.sampleRate = rate;
  format.channels = 4;
  return format;
}

class Jack : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = server.StartJack(); !why.empty()) GTEST_SKIP() << why;
  }
  SoundServer server;
};

TEST_F(Jack, RampOfFourChannelsArrivesExactFromFirstToLastFrame) {
  LRtAudioBackend backend("jack");
  JackCapture capture(4, kCaptureFrames);
  ASSERT_TRUE(capture.IsOpen());
  const auto devices = backend.OutputDevices();
  const int index = IndexOf(devices, JackCapture::kName);
  ASSERT_GE(index, 0);
  EXPECT_EQ(devices[std::size_t(index)].channels, 4);
  EXPECT_EQ(devices[std::size_t(index)].preferredRate, 44100);
  EXPECT_EQ(ChooseSoundBackend("jack:")->Name(), "jack");

  RampRenderer ramp(kFrames);
  const auto stream = backend.OpenOutput(index, FourChannels(44100), ramp);
  ASSERT_TRUE(stream);
  EXPECT_EQ(ramp.Frames(), 0) << "nothing before the start";
  ASSERT_TRUE(stream->Start());
  ASSERT_TRUE(WaitFor([&] { return ramp.IsDone(); }, 5000));
  stream->Stop();
  const int atStop = ramp.Frames();
  EXPECT_LE(ramp.largest, stream->MaxSliceFrames());
  const RampFound found = FindRamp(capture.Samples(), 4);
  EXPECT_EQ(found.exactFrames, kFrames);
  EXPECT_TRUE(found.silentAfter);
  EXPECT_EQ(ramp.Frames(), atStop) << "nothing after the stop";
}

TEST_F(Jack, SourcePlayedToItsEndArrivesWhole) {
  LRtAudioBackend backend("jack");
  LTestPlatform machine(LTestPlatform::Threads::Real);
  LPlatformServices services;
  services.clock = &machine.realClock;
  services.mainLoop = &machine.loop;
  services.preferences = &machine.preferences;
  services.soundBackend = &backend;
  LPlatform::Fill(services);
  JackCapture capture(4, kCaptureFrames);
  ASSERT_TRUE(capture.IsOpen());

  std::vector<int> samples;
  for (int frame = 0; frame < kFrames; ++frame)
    for (int channel = 0; channel < 4; ++channel) samples.push_back(RampSample20(frame, channel, 4));
  struct : LSoundPlayerNotify {
    void spntfStop(long) override { stopped = true; }
    bool stopped = false;
  } notify;
  {
    LSoundPlayer player;
    player.SetNotify(&notify, 0);
    player.GetDevice().SetDevice({IndexOf(backend.OutputDevices(), JackCapture::kName) + 1, 0, 1});
    LSoundSource source(new TestSource(samples, 44100, 4));
    ASSERT_TRUE(player.Start(source, 0));
    EXPECT_TRUE(machine.WaitUntil([&] { return notify.stopped; }, 6000));
  }
  const RampFound found = FindRamp(WithoutSilence(capture.Samples(), 4), 4);
  EXPECT_EQ(found.exactFrames, kFrames);
  EXPECT_TRUE(found.silentAfter);
}

TEST_F(Jack, RateOfTheServerIsMetByConverting) {
  LRtAudioBackend backend("jack");
  RampRenderer ramp(0);
  const auto stream = backend.OpenOutput(kDefaultDevice, FourChannels(48000), ramp);
  ASSERT_TRUE(stream);
  EXPECT_GT(stream->ExtraLatencyFrames(), 0);
  ASSERT_TRUE(stream->Start());
  EXPECT_TRUE(WaitFor([&] { return ramp.Frames() > 4800; }, 3000));
  EXPECT_LE(ramp.largest, stream->MaxSliceFrames());
}

TEST_F(Jack, KilledServerIsToldAndPlaysOnWhenItIsBack) {
  LRtAudioBackend backend("jack");
  RampRenderer ramp(0);
  const auto stream = backend.OpenOutput(kDefaultDevice, FourChannels(44100), ramp);
  ASSERT_TRUE(stream && stream->Start());
  ASSERT_TRUE(WaitFor([&] { return ramp.Frames() > 0; }, 2000));
  server.Kill();
  std::string message;
  EXPECT_TRUE(WaitFor([&] { return !(message = backend.TakeMessage()).empty(); }, 5000));
  EXPECT_NE(message.find("antwortet nicht mehr"), std::string::npos);
  EXPECT_EQ(backend.TakeMessage(), "");
  ASSERT_EQ(server.StartJack(), "");
  const int before = ramp.Frames();
  EXPECT_TRUE(WaitFor([&] { return ramp.Frames() > before; }, 6000));
  EXPECT_TRUE(WaitFor([&] { return backend.TakeMessage().find("wieder") != std::string::npos; }, 2000));
}

TEST(RtAudio, WithoutServersThereAreNoDevicesAndNothingOpens) {
  const SoundServer nowhere;
  for (const char* api : {"jack", "alsa", "coreaudio", "", "?"}) {
    LRtAudioBackend backend(api);
    RampRenderer ramp(0);
    if (!backend.OutputDevices().empty()) continue;  // a machine with a sound card
    EXPECT_EQ(backend.OpenOutput(kDefaultDevice, {}, ramp), nullptr) << api;
    EXPECT_EQ(backend.OpenOutput(0, {}, ramp), nullptr) << api;
    EXPECT_EQ(backend.TakeMessage(), "");
  }
}

}  // namespace
