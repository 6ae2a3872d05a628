#include "sound/LSoundRecorder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/LPreferences.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

using Halves = std::vector<int>;  // the value of each half block; at 44100 Hz a block is a tenth of a second
constexpr int kHalf = 2205, kSkipped = 5;
constexpr LSoundTime kBlockMs = 100, kLong = 216000000;

// A sink of 44100 Hz stereo that keeps what it gets.
class KeepingSink final : public LSoundSinkBase {
 public:
  explicit KeepingSink(std::vector<int>& kept) : LSoundSinkBase(44100, 2), kept_(kept) {}
  void Write(const int* samples, int frames) override {
    kept_.insert(kept_.end(), samples, samples + 2 * frames);
    position_ += frames;
  }
  void Truncate(int frames) override {
    if (frames >= position_) return;
    position_ = frames;
    kept_.resize(std::size_t(2 * frames));
  }

 private:
  std::vector<int>& kept_;
};

struct RecorderRig : LSoundRecorderNotify {
  RecorderRig() { recorder.SetNotify(this, 3); }
  void srntfRecord(long) override { events += 'r'; }
  void srntfWait(long) override { events += 'w'; }
  void srntfStop(long) override { events += 's'; }
  void srntfTime(LSoundTime now, long) override { time = now; }
  void srntfLevel(const LLevels& now, long) override { levels = now; }

  void Hear(const std::vector<int>& samples, int channels = 2, int rate = 44100) {
    platform.backend.SetInput(LSoundSource(new TestSource(samples, rate, static_cast<unsigned char>(channels))));
  }
  void Hear(const Halves& skipped, const Halves& halves) {
    std::vector<int> samples;
    for (const Halves& part : {skipped, halves})
      for (const int value : part)
        for (int i = 0; i < kHalf; ++i) samples.insert(samples.end(), {value, -value / 2});
    Hear(samples);
    seconds = double(samples.size()) / 88200;
  }
  bool Start(LSoundTime maxLength, LSoundTime silence, unsigned short flags) {
    LSoundSink sink = LSoundSink::Make<KeepingSink>(kept);
    return recorder.Start(sink, maxLength, -50, silence, flags);
  }
  void RunBlocks(int blocks) {
    platform.run.RunFrames(blocks * 2 * kHalf + 3 * kWantedSliceFrames);
  }                      // and the notifications
  Halves Kept() const {  // only whole halves of one value pass
    Halves halves;
    for (std::size_t i = 0; i < kept.size(); ++i) {
      if (i % (2 * kHalf) == 0) halves.push_back(kept[i]);
      if (kept[i] != (i % 2 ? -halves.back() / 2 : halves.back())) return {-1};
    }
    return halves;
  }

  LTestPlatform platform;
  std::vector<int> kept;
  LSoundRecorder recorder;
  std::string events;
  LSoundTime time = -1;
  LLevels levels;
  double seconds = 0;
};

TEST(LSoundRecorder, TheGateOpensAndCloses) {
  const struct {
    const char* what;
    Halves in, out;
    const char* events;
  } kCases[] = {
      {"half a block in front",
       {100, 101, 9000, 9002, 9004, 9006, 102, 104, 106, 108},
       {101, 9000, 9002, 9004, 9006, 102, 104},
       "wrw"},
      {"sound from the middle on", {100, 102, 104, 9000, 106, 108}, {104, 9000, 106, 108}, "wrw"},
      {"-50 dB opens", {1564, 1564, 1566, 1566}, {1564, 1566, 1566}, "wr"},
      {"-54 dB holds", {9000, 9002, 1000, 1002, 900, 902, 904, 906}, {9000, 9002, 1000, 1002, 900, 902}, "wrw"},
      {"nothing but quiet", {0, 0, 100, 102}, {}, "w"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    RecorderRig rig;
    rig.Hear(Halves(2 * kSkipped, 200000), c.in);  // what a device gives first is left out
    ASSERT_TRUE(rig.Start(kLong, 0, 0));
    rig.RunBlocks(kSkipped + int(c.in.size()) / 2);
    EXPECT_EQ(rig.Kept(), c.out);
    EXPECT_EQ(rig.events, c.events);
    rig.recorder.Stop();
    EXPECT_EQ(rig.events, c.events + std::string("s"));
    EXPECT_EQ(rig.recorder.GetMode(), LSoundRecorder::Idle);
  }
}

TEST(LSoundRecorder, SilenceMaximumLengthAndTrim) {
  const Halves sound(4, 9000), quiet(20, 100);
  Halves both = sound;
  both.insert(both.end(), quiet.begin(), quiet.end());
  const struct {
    LSoundTime maxLength, silence;
    const char* autotrim;
    LSoundTime kept;  // after the stop
    const char* events;
  } kCases[] = {
      {kLong, 5000, "0", 12 * kBlockMs, "rs"},
      {kLong, 5000, "1", 2 * kBlockMs + 450, "rs"},  // the tail behind the last sound stays
      {kLong, 250, "0", 5 * kBlockMs, "rws"},        // 300 ms of quiet are more than 250
      {650, 5000, "0", 7 * kBlockMs, "rs"},
  };
  for (const auto& c : kCases) {
    RecorderRig rig;
    rig.platform.preferences.Set("Recorder/Autotrim", c.autotrim);
    rig.Hear({}, both);
    ASSERT_TRUE(rig.Start(c.maxLength, c.silence, kRecorderRecordAtOnce));
    rig.RunBlocks(12);
    EXPECT_EQ(rig.recorder.GetMode() == LSoundRecorder::Idle, c.maxLength != kLong);
    rig.recorder.Stop();
    EXPECT_NEAR(double(rig.kept.size()) / 88.2, c.kept, 0.1);
    EXPECT_EQ(rig.events, c.events);
  }
}

TEST(LSoundRecorder, HeldItWaitsForResume) {
  RecorderRig rig;
  rig.Hear({}, Halves(20, 9000));
  ASSERT_TRUE(rig.Start(kLong, 5000, kRecorderHoldUntilResume | kRecorderRecordAtOnce));
  rig.RunBlocks(50);  // longer than a device may be silent
  EXPECT_TRUE(rig.kept.empty());
  rig.recorder.Resume();
  rig.RunBlocks(3);
  EXPECT_EQ(rig.Kept(), Halves(6, 9000));
  EXPECT_EQ(rig.time, 3 * kBlockMs);
  EXPECT_EQ(rig.levels.levels[0].Get(), -35);  // 9000 of 524288 is -35.3 dB
  EXPECT_EQ(rig.levels.levels[1].Get(), -41);
}

TEST(LSoundRecorder, ADeviceThatGivesNothingEndsIt) {
  RecorderRig rig;
  rig.Hear({}, Halves(20, 9000));
  ASSERT_TRUE(rig.Start(kLong, 5000, 0));
  rig.RunBlocks(1);
  for (const int ms : {2900, 200}) {
    EXPECT_EQ(rig.events, "w");
    rig.platform.clock.AdvanceUs(std::uint64_t(ms) * 1000);
    rig.platform.steps.RunAll();
    rig.platform.loop.DispatchPending();
  }
  EXPECT_EQ(rig.events, "ws");
  EXPECT_EQ(rig.recorder.GetMode(), LSoundRecorder::Idle);
}

TEST(LSoundRecorder, WithoutADeviceOrWithABadSinkItDoesNotStart) {
  RecorderRig rig;
  EXPECT_FALSE(rig.Start(kLong, 0, 0));
  rig.Hear({}, Halves(20, 9000));
  LSoundSink bad;
  EXPECT_FALSE(rig.recorder.Start(bad, kLong, -50, 0, 0));
  EXPECT_EQ(rig.events, "");
  EXPECT_TRUE(rig.Start(kLong, 0, 0));
}

TEST(LSoundRecorder, OneChannelIsHeardOnBothAndVolumeApplies) {
  RecorderRig rig;
  LSoundRecordDeviceVolumes::Set("Offline", 0, -6);
  rig.Hear(std::vector<int>(3 * 2 * kHalf, 9000), 1);
  ASSERT_TRUE(rig.Start(kLong, 5000, kRecorderRecordAtOnce));
  rig.RunBlocks(3);
  LSoundRecordDeviceVolumes::Set("Offline", 0, 0);
  EXPECT_EQ(rig.kept, std::vector<int>(3 * 4 * kHalf, 9000 * 256 >> 9));
}

TEST(LSoundRecorder, AnotherRateIsConverted) {
  for (const int rate : {48000, 22050}) {
    RecorderRig rig;
    std::vector<int> tone;
    for (int i = 0; i < 3 * rate; ++i) tone.insert(tone.end(), 2, int(200000 * std::sin(2 * M_PI * 1000 * i / rate)));
    rig.Hear(tone, 2, rate);
    ASSERT_TRUE(rig.Start(kLong, 5000, kRecorderRecordAtOnce));
    rig.platform.run.RunFrames(2 * rate);
    rig.recorder.Stop();
    EXPECT_NEAR(double(rig.kept.size()) / 2, 2 * 44100, 4500);  // up to a block
    int crossings = 0;
    double power = 0;
    for (std::size_t i = 2; i < 2 * 44100; i += 2) {
      crossings += rig.kept[i - 2] < 0 && rig.kept[i] >= 0;
      power += double(rig.kept[i]) * rig.kept[i];
    }
    EXPECT_NEAR(crossings, 1000, 2);
    EXPECT_NEAR(std::sqrt(power / 44100), 200000 / std::sqrt(2), 2000);
  }
}

}  // namespace
