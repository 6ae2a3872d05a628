// What a DJ does with a running track, by script, measured to the frame in what the device hears.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "ShellRig.h"
#include "console/DJPitchLaw.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "support/EngineData.h"

namespace {

constexpr int kClick = 300000, kHalfClick = 150000, kHeardClick = 10000;

// Clicks of a few frames on every beat, in one channel; from beat `loudFrom` on twice as loud.
std::vector<int> Clicks(int interval, int offset, int frames, int channel, int loudFrom = 0) {
  constexpr int kClickFrames = 8;
  std::vector<int> samples(std::size_t(frames) * 2);
  for (int beat = 0; offset + beat * interval + kClickFrames < frames; ++beat)
    for (int i = 0; i < kClickFrames; ++i)
      samples[std::size_t(2 * (offset + beat * interval + i) + channel)] = beat < loudFrom ? kHalfClick : kClick;
  return samples;
}

// But for what the flat bands of the equaliser make of a sample when they start elsewhere.
bool IsSame(int a, int b) { return std::abs(a - b) <= 10; }

std::vector<int> NoiseTrack(int frames) { return Engine::Noise(7, 60000, std::size_t(frames) * 2); }

// The centres of clicks, in frames with fractions.
std::vector<double> FindClicks(const std::vector<int>& heard) {
  constexpr int kSpan = 2000;  // of a click that a stretched track has smeared
  std::vector<double> clicks;
  for (std::size_t i = 0; i < heard.size(); ++i) {
    if (std::abs(heard[i]) < kHeardClick) continue;
    double weight = 0, moment = 0;
    for (std::size_t j = i > kSpan / 2 ? i - kSpan / 2 : 0; j < std::min(i + kSpan, heard.size()); ++j) {
      const double power = double(heard[j]) * heard[j];
      weight += power;
      moment += power * double(j);
    }
    clicks.push_back(moment / weight);
    i += kSpan;
  }
  return clicks;
}

// The number behind a key of the state written by a script, of the first deck.
double StateNumber(const std::string& json, const std::string& key) {
  const auto at = json.find("\"" + key + "\": ");
  return at == std::string::npos ? -1e9 : std::atof(json.c_str() + at + key.size() + 4);
}

}  // namespace

TEST(DeckScripts, ACuePlayedOnARunningDeckKeepsItsBeatPhase) {
  for (const char* pitch : {"500", "550"}) {
    ShellRig rig;
    const std::string track = rig.Wave("clicks.wav", Clicks(22050, 1000, 60 * kDeckRate, 0, 40));
    // The cue is set a little beside a beat of the loud part and snaps to it.
    ASSERT_TRUE(rig.Run("0 load A " + track + "\n0 bpm A 120 1000\n0 pitch A " + pitch +
                        "\n0.2 seek A 30.1\n0.3 command Cue Point 1 A\n0.4 seek A 0\n0.5 command Play/Pause A\n"
                        "5.83 command Cue Point 1 A\n8.11 command Cue Point 1 A\n12 quit\n"));
    const std::vector<double> clicks = FindClicks(rig.heard);
    ASSERT_GT(clicks.size(), 20U);
    const double beat = 22050 / PitchFromSlider(std::atoi(pitch));
    // Within two frames: positions are whole frames, and beats are not when the pitch is not 1.
    for (const double click : clicks) {
      const double beats = (click - clicks[0]) / beat;
      EXPECT_NEAR((beats - std::round(beats)) * beat, 0, 2.0) << pitch << ": click at " << click;
    }
    EXPECT_GT(*std::max_element(rig.heard.end() - 3 * kDeckRate, rig.heard.end()), kHalfClick * 3 / 2);
  }
}

TEST(DeckScripts, ALoopOfEachLengthHasItsExactPeriod) {
  constexpr int kInterval = 22050, kHeardFrom = 3 * kDeckRate;
  const std::vector<int> noise = NoiseTrack(60 * kDeckRate);
  for (const int slider : {500, 420, 580})
    for (const bool keyLock : {false, true}) {
      for (const double beats : arLoopLengths) {
        if (keyLock && (slider == 500 || beats > 1)) continue;
        ShellRig rig;
        const double pitch = PitchFromSlider(slider);
        const int length = int(double(float(kInterval / pitch)) * beats);
        const double seconds = 3.2 + 2.2 * length / kDeckRate;
        ASSERT_TRUE(rig.Run(
            "0 load A " + rig.Wave("noise.wav", noise) + "\n0 bpm A 120 500\n" +
            (keyLock ? "0 command Pitch Lock A\n" : "") +
            LText::Format("0 pitch A %d\n0.1 command Play/Pause A\n2 loop A %g\n%g quit\n", slider, beats, seconds)));
        const auto from = std::size_t(kHeardFrom);
        ASSERT_GT(rig.heard.size(), from + std::size_t(2 * length));
        const auto period = [&](int frames) {
          return std::equal(rig.heard.begin() + kHeardFrom, rig.heard.begin() + kHeardFrom + length,
                            rig.heard.begin() + kHeardFrom + frames, IsSame);
        };
        EXPECT_TRUE(period(length)) << beats << " beats at " << pitch << " lock " << keyLock;
        EXPECT_FALSE(period(length - 1) || period(length + 1));
      }
    }
}

TEST(DeckScripts, ASlavesBeatsFallOnTheMasters) {
  const struct {
    int masterInterval, slaveInterval, masterSlider;
    bool keyLock;
    double driftMs;  // that two minutes may bring
  } kCases[] = {
      {22050, 21000, 500, false, 0.05},  // 120 and 126 BPM
      {22050, 21000, 540, true, 0.05},
      {21447, 20333, 537, true, 0.05},
      {21447, 20333, 500, false, 1.4},  // the converter's rate is whole hertz
  };
  for (const auto& c : kCases) {
    ShellRig rig;
    const std::string master = rig.Wave("master.wav", Clicks(c.masterInterval, 3000, 140 * kDeckRate, 0));
    const std::string slave = rig.Wave("slave.wav", Clicks(c.slaveInterval, 17000, 140 * kDeckRate, 1));
    const auto bpm = [](int interval) { return 2646000.0 / (interval + 1e-7); };
    ASSERT_TRUE(rig.Run("0 load A " + master + "\n0 load B " + slave + "\n" +
                        LText::Format("0 bpm A %.12f 3000\n0 bpm B %.12f 17000\n0 pitch A %d\n", bpm(c.masterInterval),
                                      bpm(c.slaveInterval), c.masterSlider) +
                        (c.keyLock ? "0 command Pitch Lock A\n0 command Pitch Lock B\n" : "") +
                        "0.2 command Play/Pause A\n1.37 command Play/Pause B\n2 command Sync On/Off B\n124 quit\n"));
    EXPECT_FALSE(rig.Logged("Sync")) << "refused";
    const std::vector<double> left = FindClicks(rig.heard), right = FindClicks(rig.heardRight);
    ASSERT_GT(left.size(), 200U);
    std::vector<double> offsets;
    for (const double click : right) {
      if (click < 4 * kDeckRate) continue;
      const auto next = std::lower_bound(left.begin(), left.end(), click);
      double offset = next == left.end() ? 1e9 : *next - click;
      if (next != left.begin()) offset = std::min(offset, click - *(next - 1));
      offsets.push_back(offset * 1000 / kDeckRate);
    }
    ASSERT_GT(offsets.size(), 200U);
    const auto mean = [&](std::size_t first) {
      double sum = 0;
      for (std::size_t i = first; i < first + 16; ++i) sum += offsets[i];
      return sum / 16;
    };
    EXPECT_LT(*std::max_element(offsets.begin(), offsets.end()), std::max(1.0, c.driftMs));
    EXPECT_NEAR(mean(offsets.size() - 16), mean(0), c.driftMs) << c.masterInterval << " " << c.slaveInterval;
    RecordProperty(LText::Format("offset_%d_%d_%d", c.masterInterval, c.slaveInterval, int(c.keyLock)),
                   LText::Format("%.3f ms, drift %.3f ms", *std::max_element(offsets.begin(), offsets.end()),
                                 mean(offsets.size() - 16) - mean(0)));
  }
}

TEST(DeckScripts, AScratchForwardAndBackEndsOnTheFrameItBegan) {
  ShellRig rig;
  const std::string state = rig.platform.TempPath("state.json");
  std::string script =
      "0 load A " + rig.Wave("noise.wav", NoiseTrack(20 * kDeckRate)) + "\n0 seek A 5\n1 scratch A begin\n";
  double seconds = 1;
  for (const int away : {400, 900, 1500, 2200, 1500, 900, 400, 0})
    script += LText::Format("%g scratch A %d\n", seconds += 0.02, 5 * kDeckRate + away);
  script += "1.6 state " + state + "\n3 scratch A end\n3.5 quit\n";
  TStartOptions options;
  options.statePath = rig.platform.TempPath("end.json");
  ASSERT_TRUE(rig.Run(script, options));
  const std::string held = LFile::ReadAll(state).value_or(""), ended = LFile::ReadAll(options.statePath).value_or("");
  EXPECT_NE(held.find("\"scratching\": true"), std::string::npos);
  EXPECT_EQ(StateNumber(ended, "position_frames"), 5 * kDeckRate);
  EXPECT_NE(ended.find("\"playing\": false"), std::string::npos);
  // The hand has stood still since 1.2 s: what moved is heard, and then there is digital silence.
  const auto loud = [](int sample) { return sample != 0; };
  const auto still = rig.heard.begin() + kDeckRate / 2;
  EXPECT_TRUE(std::any_of(rig.heard.begin(), still, loud));
  EXPECT_TRUE(std::none_of(still, rig.heard.end(), loud));
}

TEST(DeckScripts, AHandWithoutVinylModeBendsThePitch) {
  ShellRig rig;
  const std::string during = rig.platform.TempPath("during.json"), after = rig.platform.TempPath("after.json");
  ASSERT_TRUE(rig.Run("0 load A " + rig.Track("a.wav", 441, 20) +
                      "\n0 command 1539\n0 command Play/Pause A\n1 scratch A begin\n1.1 scratch A 6\n1.3 state " +
                      during + "\n1.4 scratch A end\n1.6 state " + after + "\n2 quit\n"));
  EXPECT_EQ(StateNumber(LFile::ReadAll(during).value_or(""), "pitch"), 1.06);
  EXPECT_EQ(StateNumber(LFile::ReadAll(after).value_or(""), "pitch"), 1.0);
}

TEST(DeckScripts, ALoopIsSavedAsASample) {
  ShellRig rig;
  const std::string saved = rig.platform.TempPath("loop.wav");
  const std::vector<int> noise = NoiseTrack(20 * kDeckRate);
  rig.toolkit.AnswerFileDialog({saved});
  ASSERT_TRUE(rig.Run("0 load A " + rig.Wave("noise.wav", noise) +
                      "\n0 bpm A 120 0\n0 seek A 2\n0 command Cue Point 2 A\n0 command Cue Beat Loop 2 A\n"
                      "0.1 command 1557\n0.5 quit\n"));
  LSoundSource sample = LWaveFile::OpenSource(saved);
  ASSERT_EQ(sample.GetEndSample(), 4 * 22050);
  std::vector<int> samples(std::size_t(sample.GetEndSample()) * 2);
  for (int at = 0; at < sample.GetEndSample(); at += kMaxBlockFrames)
    sample.Read(samples.data() + 2 * at, std::min(kMaxBlockFrames, sample.GetEndSample() - at));
  for (std::size_t i = 0; i < samples.size(); ++i)
    ASSERT_NEAR(samples[i], noise[std::size_t(4 * kDeckRate) + i], 16) << i;  // a step of 16 bits
}

TEST(DeckScripts, EveryCommandOfADeckWorksOnAnEmptyOne) {
  ShellRig rig;
  std::string script;
  double seconds = 0;
  for (const char* name : {"Cue Point 1 A", "Cue Beat Loop 8 B", "Whole Track A", "Increase Beat Loop B",
                           "Decrease Beat Loop A", "Sync On/Off A", "Pitch Lock B", "Scratch Mode On/Off A",
                           "Start Scratching B", "Stop Scratching B", "Toggle Scratching A", "Set Freestyle On/Off A",
                           "Set Freestyle On/Off A", "1471", "1494", "1495", "1540", "1557", "Jump to Start A"})
    script += LText::Format("%g command %s\n", seconds += 0.05, name);
  script += "1 loop A 4\n1 loop B -1\n1 scratch A begin\n1 scratch A 500\n1 scratch A end\n1 pitch A 1000\n1.5 quit\n";
  EXPECT_TRUE(rig.Run(script));
}
