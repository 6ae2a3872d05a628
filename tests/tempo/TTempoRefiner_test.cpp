#include "tempo/TTempoRefiner.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/TestSource.h"
#include "tempo/LBeatDetection.h"

namespace {

constexpr int kRate = 44100;

// Kick and snare in turn, hats between them; attacks from `first` on. As the detection would list it.
LProcessSoundSourceBPMDetectionData Drums(double bpm, double first, double seconds, double stated) {
  const LBeatGeometry geometry(kRate, int(seconds * kRate));
  LProcessSoundSourceBPMDetectionData data;
  data.sampleRate = kRate;
  data.bpm = stated;
  const auto add = [&](double time, int band, double rise) {
    const int attack = int(std::lround(time * kRate - geometry.window)) / geometry.hop;
    data.beats.push_back({attack * geometry.hop, attack, rise / 2, band, rise, attack});
  };
  const double beat = 60 / bpm;
  for (int n = 0; first + n * beat < seconds; ++n) {
    const double time = first + n * beat;
    add(time, n % 2 == 0 ? 0 : 5, 80);
    add(time, kFullBeatBand, 90);
    add(time + beat / 2, 9, 25);
  }
  return data;
}

}  // namespace

TEST(TTempoRefiner, FindsTheTempoToTheLastDigitAndTheAttack) {
  struct {
    double bpm, stated, first;
  } const rows[] = {{120.5, 119.3, 0.3}, {127.123, 126, 0.123}, {174.005, 174.9, 0.05}, {90, 88, 0.5}};
  for (const auto& row : rows) {
    auto data = Drums(row.bpm, row.first, 240, row.stated);
    RefineTempo(data);
    EXPECT_NEAR(data.bpm, row.bpm, 0.002) << row.bpm;
    EXPECT_NEAR(std::remainder(data.offset - row.first * kRate, 60 * kRate / row.bpm), 0, 0.003 * kRate) << row.bpm;
  }
}

TEST(TTempoRefiner, ChangesTheLevelOnClearEvidence) {
  for (const double bpm : {75.0, 100.0, 120.0, 170.0})
    for (const double ratio : {0.5, 2.0, 2 / 3.0, 1.5, 0.75, 4 / 3.0}) {
      if (bpm * ratio < 70 || bpm * ratio > 180) continue;
      auto data = Drums(bpm, 0.2, 120, bpm * ratio);
      RefineTempo(data);
      EXPECT_NEAR(data.bpm, bpm, 0.01) << bpm << " stated as " << bpm * ratio;
    }
}

TEST(TTempoRefiner, LeavesWhatItCannotTell) {
  for (const double stated : {1.0, 0.0, std::nan(""), 300.0}) {
    auto data = Drums(120, 0.2, 60, stated);
    data.offset = 7;
    RefineTempo(data);
    EXPECT_TRUE(data.bpm == stated || std::isnan(stated));
    EXPECT_EQ(data.offset, 7);
  }
  auto few = Drums(120, 0.2, 2, 118);
  RefineTempo(few);
  EXPECT_EQ(few.bpm, 118);
  auto nothing = Drums(120, 0.2, 60, 118);
  for (LBeat& beat : nothing.beats) beat.rise = std::nan("");
  RefineTempo(nothing);
  EXPECT_EQ(nothing.bpm, 118);
  auto slow = Drums(120, 0.2, 60, 118);
  slow.sampleRate = 100;  // no geometry
  RefineTempo(slow);
  EXPECT_EQ(slow.bpm, 118);
}

// From the sound on: bursts of noise, each beat on a whole frame.
TEST(TTempoRefiner, ClickTracksAreWithinATenth) {
  const std::vector<int> noise = Engine::Noise(7, 300000, 600);
  for (const int bpm : {70, 83, 97, 118, 126, 151, 180}) {
    std::vector<int> samples(kRate * 20);
    for (double at = 5000; at + 600 < double(samples.size()); at += 60.0 * kRate / bpm)
      for (unsigned k = 0; k < 600; ++k) samples[unsigned(at) + k] = int(noise[k] * (1 - k / 600.0));
    LProcessSoundSourceBPMDetectionData data;
    data.source = LSoundSource(new TestSource(samples, kRate, 1));
    LProcessInterfaceVoid process;
    ASSERT_EQ(Process(process, data), lprDone);
    RefineTempo(data);
    EXPECT_NEAR(data.bpm, bpm, 0.1);
    EXPECT_NEAR(std::remainder(data.offset - 5000, 60.0 * kRate / bpm), 0, 441) << bpm;
  }
}
