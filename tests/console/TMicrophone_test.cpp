#include "console/TMicrophone.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "audiofile/LWaveFile.h"
#include "foundation/LPlatform.h"
#include "support/EngineData.h"

namespace {

// Far above the gate, and each frame tells its time: 16 frames a step, again after kCycle of them.
constexpr int kCycle = 480000, kLoud = 100000;
std::vector<int> TimeSignal(int frames) {
  std::vector<int> samples;
  for (int i = 0; i < frames; ++i) samples.insert(samples.end(), 2, kLoud + i % kCycle / 16);
  return samples;
}

// The offline devices, but with an input whose clock runs fast (hands on more than was rendered) or slow.
class DriftingInput final : public LSoundBackend {
 public:
  DriftingInput(LOfflineBackend& devices, double speed) : devices_(devices), speed_(speed) {}
  std::string Name() const override { return devices_.Name(); }
  std::vector<LSoundDeviceInfo> OutputDevices() override { return devices_.OutputDevices(); }
  std::vector<LSoundDeviceInfo> InputDevices() override { return devices_.OutputDevices(); }
  std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                 LSoundRenderer& renderer) override {
    return devices_.OpenOutput(device, format, renderer);
  }
  std::unique_ptr<LSoundInputStream> OpenInput(int, const LSoundStreamFormat&, LSoundInputReceiver& receiver) override {
    return std::make_unique<Stream>(*this, receiver);
  }
  void Feed(int frames) {
    if (!receiver_) return;
    due_ += frames * speed_;
    std::vector<float> block;
    for (; due_ >= 1; --due_, ++given)
      block.insert(block.end(), 2, float(kLoud + given % kCycle / 16) / float(kFullScale));
    receiver_->InputData(block.data(), int(block.size()) / 2, 2);
  }
  long given = 0;  // frames, since the input runs

 private:
  struct Stream final : LSoundInputStream {
    Stream(DriftingInput& input, LSoundInputReceiver& target) : owner(input), receiver(target) {}
    ~Stream() override { owner.receiver_ = nullptr; }
    bool Start() override {
      owner.receiver_ = &receiver;
      return true;
    }
    void Stop() override { owner.receiver_ = nullptr; }
    int SampleRate() const override { return kDeckRate; }
    DriftingInput& owner;
    LSoundInputReceiver& receiver;
  };
  LOfflineBackend& devices_;
  double speed_, due_ = 0;
  LSoundInputReceiver* receiver_ = nullptr;
};

struct NoTarget final : TMicrophoneNotify {
  void micntfLevel(const LLevels& levels) override { lastLevels = levels; }
  LLevels lastLevels;
};

TEST(TMicrophone, TheDelayStaysWithinItsBoundsForAMinute) {
  for (const double speed : {1.0, 1.005, 0.995}) {
    SCOPED_TRACE(speed);
    LTestPlatform platform;
    DriftingInput input(platform.backend, speed);
    LPlatformServices services;
    services.clock = &platform.clock;
    services.mainLoop = &platform.loop;
    services.preferences = &platform.preferences;
    services.soundBackend = &input;
    services.steps = &platform.steps;
    LPlatform::Fill(services);
    std::vector<int> slice;  // empty: the player pauses
    std::vector<int> all;
    platform.backend.SetCapture(0, [&](const int* samples, int frames, int channels) {
      for (int i = 0; i < frames; ++i) slice.push_back(samples[std::ptrdiff_t(i) * channels] >> 12);
    });
    NoTarget target;
    TMicrophone microphone(target);
    ASSERT_TRUE(microphone.StartSpeaking());
    const int slices = 60 * kDeckRate / kWantedSliceFrames, settled = kDeckRate * 2 / kWantedSliceFrames;
    int silent = 0, longest = 0, shortest = kCycle;
    for (int i = 0; i < slices; ++i) {
      slice.clear();
      input.Feed(kWantedSliceFrames);
      platform.run.RunSlice();
      all.insert(all.end(), slice.begin(), slice.end());
      if (i < settled) continue;
      silent += slice.empty() || slice.back() < kLoud;
      // A delay is read where the slice is plain signal: no fade, no gap.
      if (slice.size() != kWantedSliceFrames || slice[0] < kLoud || slice.back() - slice[0] != 32) continue;
      const int delay = int((input.given - (slice.back() - kLoud) * 16L + 10L * kCycle) % kCycle);
      longest = std::max(longest, delay);
      shortest = std::min(shortest, delay);
    }
    // In the player's ring at most 10000 frames behind the device's reach, and a block that came meanwhile; in front of
    // it a block of the input.
    EXPECT_LT(longest, 10000 + 4 * 512 + 2 * 4410);
    EXPECT_GT(shortest, 512);
    EXPECT_LT(silent, slices / 10);
    EXPECT_EQ(target.lastLevels.channels, 2);
    // Where it is late it leaves out, it never tears: a step is the signal's own or that of a fade.
    int jumps = 0;
    for (std::size_t i = 1; i < all.size(); ++i) {
      const int step = std::abs(all[i] - all[i - 1]);
      jumps += step > 1000 && all[i] != 0 && all[i - 1] != 0 && step < kCycle / 16 - 2000;
    }
    EXPECT_EQ(jumps, 0);
    EXPECT_EQ(std::count_if(all.begin() + settled * kWantedSliceFrames, all.end(),
                            [](int sample) { return sample > 0 && sample < kLoud - 10; }),
              0);  // a late rewind fades between two loud places, not through silence
  }
}

TEST(TMicrophone, SpeechIsHeardAndNotRecorded) {
  ConsoleRig rig;
  rig.platform.backend.SetInput(LSoundSource(new TestSource(TimeSignal(5 * kDeckRate), kDeckRate, 2)));
  rig.Load(kDeckA, std::vector<int>(std::size_t(10 * kDeckRate)));
  const std::string path = rig.platform.TempPath("mix.wav");
  ASSERT_TRUE(rig.console->StartRecordingTo(path));
  rig.Deck(kDeckA).Play();
  ASSERT_TRUE(rig.console->StartSpeaking());
  rig.RunMs(3000);
  EXPECT_GT(*std::max_element(rig.heard.begin(), rig.heard.end()) >> 12, kLoud);
  rig.console->StopSpeaking();
  EXPECT_FALSE(rig.console->IsSpeaking());
  EXPECT_TRUE(rig.console->IsMainPlayerRunning());
  const std::size_t heard = rig.heard.size();
  rig.RunMs(300);
  EXPECT_EQ(Rms(rig.heard, heard, rig.heard.size() - heard), 0);
  rig.Deck(kDeckA).Stop();
  rig.console->StopRecording();
  LSoundSource recorded = LWaveFile::OpenSource(path);
  std::vector<int> samples;
  ReadInto(samples, recorded, recorded.GetEndSample());
  ASSERT_GT(samples.size(), 2u * kDeckRate);
  EXPECT_EQ(Rms(samples, 0, samples.size()), 0);
}

TEST(TMicrophone, StopSpeakingIsQuickWhateverTheThreadsWaitFor) {
  LTestPlatform platform(LTestPlatform::Threads::Real);
  NoTarget target;
  TMicrophone microphone(target);
  EXPECT_FALSE(microphone.StartSpeaking());  // no input
  EXPECT_FALSE(microphone.IsSpeaking());
  platform.backend.SetInput(LSoundSource(new TestSource(TimeSignal(20 * kDeckRate), kDeckRate, 2)));
  for (const int slices : {0, 3, 150, 900}) {  // waiting for a first block, dropping it, speaking, far ahead
    ASSERT_TRUE(microphone.StartSpeaking());
    for (int i = 0; i < slices; ++i) {
      platform.backend.RenderSlice(kWantedSliceFrames);
      if (i % 20 == 0) platform.loop.RunOnce(1);
    }
    const auto start = platform.realClock.NowMs();
    microphone.StopSpeaking();
    EXPECT_LT(platform.realClock.NowMs() - start, 500u) << slices;
  }
}

}  // namespace
