#include "tempo/LBeatDetection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/TestSource.h"
#include "tempo/LBeatGrid.h"
#include "tempo/LBeatOnsets.h"
#include "tempo/LBeatSpectrum.h"

namespace {

struct TStopAfter : LProcessInterfaceVoid {
  explicit TStopAfter(int count) : left(count) {}
  bool IsToStop() override { return left-- <= 0; }
  int left;
};

LProcessSoundSourceBPMDetectionData Detect(LSoundSourceBase* source, LProcessResult expected = lprDone, int stop = 0) {
  LProcessSoundSourceBPMDetectionData data;
  data.source = LSoundSource(source);
  TStopAfter process(stop > 0 ? stop : 1 << 30);
  EXPECT_EQ(Process(process, data), expected);
  return data;
}

// Bursts of noise with a linear decay, every fourth half again as loud.
std::vector<int> Clicks(int period, int frames, int amplitude) {
  const std::vector<int> noise = Engine::Noise(7, 0x8000, 2048);
  std::vector<int> samples;
  for (int i = 0; i < frames; ++i) {
    const int n = i / period, k = i % period;
    const long long level = amplitude + (n % 4 == 0 ? amplitude / 2 : 0);
    samples.insert(samples.end(), 2, k < 2048 ? int((noise[unsigned(k)] * ((2048 - k) * level)) >> 26) : 0);
  }
  return samples;
}

void ExpectNear(const EngineCase& data, const char* name, double value) {
  const double expected = name == std::string("offset") ? data.Out(name)[0] : data.Out<double>(name)[0];
  EXPECT_NEAR(value, expected, data.Tolerance(name).second) << data.id << ' ' << name;
}

}  // namespace

TEST(LBeatFilterBank, TheOuterBandsAreFixed) {
  for (const int band : {0, 9}) {
    const EngineCase& data = Engine::Case("beat/table/" + std::to_string(band));
    const LBeatFilter& filter = BeatFilter(band);
    std::vector<double> table;
    for (const LBeatSection& s : filter.Sections()) table.insert(table.end(), {s.b0, s.b1, s.b2, s.a1, s.a2});
    EXPECT_EQ(table, data.Out<double>("sections"));
    EXPECT_EQ(filter.gain, data.Out<double>("gain")[0]);
    EXPECT_EQ(filter.timeConstantMs, data.Int("time_constant_ms"));
  }
}

TEST(LBeatFilterBank, TheDesignGivesTheBandsBetween) {
  const EngineCase& data = Engine::Case("beat/biquad/8");
  std::vector<double> table;
  for (const LBeatSection& s : BeatFilter(8).Sections()) table.insert(table.end(), {s.b0, s.b1, s.b2, s.a1, s.a2});
  std::vector<double> expected = data.In<double>("sections");
  ASSERT_EQ(table.size(), expected.size());
  std::rotate(expected.begin(), expected.begin() + 10, expected.end());  // the data has its low-pass side first
  for (std::size_t i = 0; i < table.size(); ++i) EXPECT_NEAR(table[i], expected[i], 1e-15) << i;
  EXPECT_NEAR(BeatFilter(8).gain, data.Decimal("gain"), 1e-16);
}

// With a run for each sample the energies tell the filtered samples, apart from their signs.
TEST(LBeatKernels, FilterTheNoiseAsTheLawSays) {
  for (const int band : {0, 8}) {
    const EngineCase& data = Engine::Case("beat/biquad/" + std::to_string(band));
    const std::vector<int> in = data.In("source"), filtered = data.Out("samples");
    const LBeatFilter& filter = BeatFilter(band);
    LBeatLanes lanes{};
    lanes.sectionCount = filter.sections;
    lanes.gain[2] = filter.gain;
    for (int i = 0; i < filter.sections; ++i) {
      lanes.sections[i].b1[2] = filter.table[i].b1;
      lanes.sections[i].b2[2] = filter.table[i].b2;
      lanes.sections[i].a1[2] = filter.table[i].a1;
      lanes.sections[i].a2[2] = filter.table[i].a2;
    }
    const std::vector<int> runs(in.size(), 1);
    std::vector<double> sums(4 * runs.size());
    BeatKernels().energies(lanes, in.data(), runs, sums.data());
    double before = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
      const double level = std::sqrt(sums[4 * i + 2] - before);
      ASSERT_NEAR(level, std::abs(filtered[i] >> 5), 1) << band << ' ' << i;
      before = sums[4 * i + 2];
    }
  }
}

TEST(LBeatKernels, AllFormsGiveTheSameBits) {
  std::vector<int> noise = Engine::Noise(5, 524272, 60000);
  std::fill(noise.begin() + 20000, noise.begin() + 40000, 0);
  const LBeatGeometry geometry(44100, 60000);
  LBeatList beats;
  for (int i = 0; i < 500; ++i) beats.push_back({i * 9973 % 600000, 0, 1 + i % 70 * 0.37, i % kBeatBands});
  LBeatEnvelopes first(geometry, *UsableBeatKernels()[0]);
  LBeatGrid firstGrid(beats, 44100, *UsableBeatKernels()[0]);
  first.Read(LSoundSource(new TestSource(noise, 44100, 1)), [](int) { return true; });
  firstGrid.Search(71, [] { return true; });
  for (const LBeatKernels* form : UsableBeatKernels()) {
    LBeatEnvelopes envelopes(geometry, *form);
    envelopes.Read(LSoundSource(new TestSource(noise, 44100, 1)), [](int) { return true; });
    for (int band = 0; band < kBeatBands; ++band)
      EXPECT_TRUE(std::equal(first.Band(band).begin(), first.Band(band).end(), envelopes.Band(band).begin())) << band;
    LBeatGrid grid(beats, 44100, *form);
    grid.Search(71, [] { return true; });
    EXPECT_EQ(grid.score, firstGrid.score) << form->name;
  }
}

TEST(LBeatEnvelope, HasTheGeometryOfItsRate) {
  const EngineCase& data = Engine::Case("beat/geometry");
  const std::vector<int> rows = data.In("rows"), expected = data.Out("values");
  std::vector<int> values;
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    const LBeatGeometry geometry(rows[i], rows[i + 1]);
    values.insert(values.end(), {geometry.hop, geometry.window, geometry.length});
    for (int band = 0; band < kBeatBands; ++band) values.push_back(geometry.Lag(band));
  }
  EXPECT_EQ(values, expected);
}

// The full band against sums of its own, across the borders of blocks.
TEST(LBeatEnvelope, SumsItsWindows) {
  const std::vector<int> noise = Engine::Noise(8, 524272, 40000);
  const LBeatGeometry geometry(44100, 30000);  // the windows at the end reach beyond it
  LBeatEnvelopes envelopes(geometry);
  envelopes.Read(LSoundSource(new TestSource(noise, 44100, 1)), [](int) { return true; });
  for (int i = 0; i < geometry.length; ++i) {
    long long sum = 0;
    for (int k = 0; k < 4410; ++k)
      sum += (long long)(noise[unsigned(i * 17 + k)] >> 5) * (noise[unsigned(i * 17 + k)] >> 5);
    ASSERT_EQ(envelopes.Band(kFullBeatBand)[unsigned(i)], double(sum >> 13)) << i;
  }
}

TEST(LBeatOnsets, FindTheSteepestRiseAndItsStrength) {
  std::vector<double> envelope(200);
  for (unsigned i = 0; i < 200; ++i) envelope[i] = i >= 150 ? 50 : i >= 50 ? 100 * std::min(1.0, (i - 49) / 4.0) : 0;
  // Rises over 10 steps: 25, 50, 75, 100 from 50 on; noticed at 25, steepest at 53. Nothing rises at the fall.
  const LBeatList beats = FindBeatOnsets(envelope, 10, 17, 3);
  ASSERT_EQ(beats.size(), 1U);
  EXPECT_EQ(beats[0].index, 53);
  EXPECT_EQ(beats[0].position, 53 * 17);
  EXPECT_EQ(beats[0].rise, 100);
  EXPECT_EQ(beats[0].attack, 50);
  EXPECT_EQ(beats[0].strength, 25);
}

TEST(LBeatSpectrum, TheWindowIsNotShiftedAtTheLeftEdge) {
  const std::vector<double> train = SmoothedBeatTrain({{0, 20, 10, 0}, {0, 60, 1, 0}, {0, 70, 5, kFullBeatBand}}, 100);
  const auto window = [](int j) { return 0.54 - 0.46 * std::cos(2 * M_PI * j / 31); };
  struct {
    unsigned at;
    double value;
  } const rows[] = {{0, 10 * window(20)}, {15, 10 * window(20)}, {16, 10 * window(19)}, {35, 10 * window(0)}, {36, 0},
                    {60, window(15)},     {75, window(0)}};
  for (const auto& row : rows) EXPECT_NEAR(train[row.at], row.value, 1e-12) << row.at;
}

// One band: the mean of (1 - d / h) * strength, worked out for two onsets half a period and no distance off.
TEST(LBeatGrid, ScoresAPeriodicTrain) {
  LBeatList beats;
  for (int i = 0; i < 40; ++i) beats.push_back({2205 + i * 22050, 0, 10, 4});
  beats.push_back({1, 0, std::nan(""), 4});  // takes no part
  LBeatGrid grid(beats, 44100);
  grid.Search(120, [] { return true; });
  EXPECT_NEAR(grid.bpm, 120, 0.06);
  EXPECT_NEAR(grid.offset, 2205, 221);  // a phase
  EXPECT_NEAR(grid.score, 10, 0.3);
}

TEST(LBeatDetection, FindsTheTempoOfAClickTrack) {
  const EngineCase& data = Engine::Case("beat/detect/120");
  const auto found = Detect(new TestSource(Clicks(22050, 617400, 300000), 44100, 2));
  ExpectNear(data, "bpm", found.bpm);
  ExpectNear(data, "offset", found.offset);
  ExpectNear(data, "true_bpm", found.bpm);
}

TEST(LBeatDetection, SilenceNoiseAndShortClips) {
  std::vector<int> decay(44100);
  for (std::size_t i = 0; i < decay.size(); ++i) decay[i] = int(500000 * std::exp(-double(i) / 4000));
  struct {
    std::vector<int> samples;
    int rate;
    double low, high;
  } const rows[] = {{std::vector<int>(441000), 44100, 1, 1},       // silence
                    {std::vector<int>(44100), 44100, 1, 1},        // onsets without a strength
                    {{}, 44100, 1, 1},                             // nothing at all
                    {std::vector<int>(100), 44100, 26460, 26460},  // shorter than a lag: one beat
                    {std::vector<int>(2000), 1000, 1, 1},          // two seconds, at a rate without sense
                    {std::vector<int>(1000), 1000, 60, 60},        // one second of it
                    {Engine::Noise(3, 500000, 441000), 44100, 1, 180}};
  for (const auto& row : rows) {
    const auto found = Detect(new TestSource(row.samples, row.rate, 1));
    EXPECT_TRUE(found.bpm >= row.low && found.bpm <= row.high) << row.samples.size() << ' ' << found.bpm;
  }
}

// While it reads (76 blocks), between the bands, while it scores.
TEST(LBeatDetection, StopsWhereverItIsAsked) {
  for (const int stop : {1, 40, 80, 150})
    EXPECT_LT(Detect(new TestSource(Clicks(22050, 617400, 300000), 44100, 2), lprStopped, stop).progress, 1) << stop;
}

TEST(LBeatDetection, AFileThatIsNone) {
  LProcessBPMDetectionData data;
  data.SetFile("/nowhere/track.wav");
  data.bpm = 120;
  LProcessInterfaceVoid process;
  EXPECT_EQ(Process(process, data), lprFailed);
  EXPECT_EQ(data.bpm, 1.0);
}
