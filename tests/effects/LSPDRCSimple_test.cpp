#include "effects/LSPDRCSimple.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

constexpr int kRate = 44100, kBlock = 882;  // 20 ms

double Db(int gain24) { return 20 * std::log10(gain24 / 16777216.0); }

// A sine of 441 Hz on both channels, `db` below full scale up to frame `change`, `dbThen` from there on.
LSoundSource Sine(int frames, double db, int change = 0x7fffffff, double dbThen = 0) {
  std::vector<int> samples;
  for (int i = 0; i < frames; ++i) {
    const double level = std::pow(10, (i < change ? db : dbThen) / 20) * kPeak16;
    const int sample = int(level * std::sin(2 * std::numbers::pi * i / 100));
    samples.insert(samples.end(), {sample, sample});
  }
  return LSoundSource(new TestSource(samples, kRate, 2));
}

int PeakOf(const std::vector<int>& samples, int frame) {  // over one turn of the sine
  const auto from = samples.begin() + std::ptrdiff_t(frame) * 2;
  return *std::max_element(from, from + 200);
}

}  // namespace

TEST(LCompressorTableGain, TakesTheRatioFromTheThresholdOn) {
  struct Case {
    int threshold;
    double ratioDb;
    int limit, level;
    double gainDb;
  };
  for (const Case& c : {Case{-20, 1, -60, -127, 0}, Case{-20, 1, -60, -20, 0}, Case{-20, 1, -60, -19, -1},
                        Case{-20, 1, -60, 0, -20}, Case{-20, 1, -60, 127, -147}, Case{-24, 0.5, -40, 0, -12},
                        Case{-30, 0.75, -30, -10, -15}, Case{-40, 0.5, -10, -15, 0}, Case{-20, 0, -60, 0, 0}}) {
    const LCompressorTableGain table(c.threshold, std::pow(10, -c.ratioDb / 20), c.limit);
    if (c.gainDb > -80)
      EXPECT_NEAR(Db(table.Gain24(c.level)), c.gainDb, 0.01) << c.level;
    else
      EXPECT_LT(table.Gain24(c.level), 2000) << c.level;
  }
  // Ratio 1 and a limit of -10 above a threshold of -20: the output keeps to the limit once it is there.
  const LCompressorTableGain limited(-20, std::pow(10, -0.05), -10);
  for (int level = -10; level <= 20; ++level) EXPECT_NEAR(level + Db(limited.Gain24(level)), -9.5, 0.6) << level;
  for (const int level : {-128, -127, 127}) EXPECT_GE(limited.Gain24(level), 0);
  const LCompressorTableGain least(-128, 0.5, -127), strange(-20, NAN, -60);
  EXPECT_EQ(least.Gain24(-128), kUnityGain24);
  EXPECT_EQ(strange.Gain24(0), kUnityGain24);  // no level falls to silence
}

TEST(LCompressorTableGain, FollowsADrawnLine) {
  const LCompressorPoint line[] = {{0, -10}, {-60, -60}, {-20, -20}, {-80, -90}};
  const LCompressorTableGain table(line);
  const std::pair<int, double> wanted[] = {{-100, -10}, {-80, -10}, {-70, -5}, {-60, 0},
                                           {-30, 0},    {-10, -5},  {10, -10}};
  for (const auto& [level, gain] : wanted) EXPECT_NEAR(Db(table.Gain24(level)), gain, 1e-5) << level;
  EXPECT_EQ(LCompressorTableGain(std::span<const LCompressorPoint>()).Gain24(0), kUnityGain24);
  LSoundSource input = Sine(100, 0);
  EXPECT_GE(LSPDRCPointLine({{-60, -50}}).OpenSource(input).GetPeak(), 3 * input.GetPeak());
}

TEST(LSPDRCSimple, PassesWhatIsSoftToTheBit) {
  LSoundSource input = Sine(5000, -26);
  LSPDRCSimple compressor;
  LSoundSource source = compressor.OpenSource(input);
  std::vector<int> out, wanted;
  ReadInto(out, source, 5000);
  LSoundSource plain = Sine(5000, -26);
  ReadInto(wanted, plain, 5000);
  EXPECT_EQ(out, wanted);
}

TEST(LSPDRCSimple, HasComeDownBeforeALoudPassageAndComesBackSlowly) {
  LSoundSource input = Sine(20 * kBlock, -40, 10 * kBlock, -10);
  LSPDRCSimple compressor;  // -20 dB, 1 dB a dB, attack 20 ms: one block
  LSoundSource source = compressor.OpenSource(input);
  std::vector<int> out;
  for (int frames = 0; frames < 20 * kBlock; frames += 441) ReadInto(out, source, 441);
  const double quiet = kPeak16 * std::pow(10, -2.0), loud = kPeak16 * std::pow(10, -1.0);
  EXPECT_NEAR(PeakOf(out, 5 * kBlock), quiet, 2);
  EXPECT_NEAR(PeakOf(out, 10 * kBlock), loud, loud * 0.001);  // no overshoot in its first turn
  EXPECT_NEAR(PeakOf(out, 18 * kBlock), loud, loud * 0.001);

  LSoundSource falling = Sine(40 * kBlock, -10, 10 * kBlock, -40);
  source = compressor.OpenSource(falling);
  out.clear();
  ReadInto(out, source, 40 * kBlock);
  // The release of 500 ms takes 1/25 of the distance in each block, from the one before the fall on.
  const double low = std::pow(10, -0.5);
  for (const int blocks : {5, 20}) {
    const double gain = 1 - (1 - low) * std::pow(0.96, blocks + 1);
    EXPECT_NEAR(PeakOf(out, (10 + blocks) * kBlock), quiet * gain, quiet * 0.005) << blocks;
  }
}

TEST(LSPDRCSimple, CountsWhatIsHeardAndStartsSettledAfterASeek) {
  LSoundSource input = Sine(20 * kBlock, 0);
  LSPDRCSimple compressor;
  compressor.SetParameterByIndex(LSPDRCSimple::Attack, 2000);
  LSoundSource source = compressor.OpenSource(input);
  std::vector<int> out;
  source.Seek(3000);
  EXPECT_EQ(source.GetPositionSample(), 3000);
  const AllocationGuard guard;
  out.reserve(8000);
  const int before = guard.Count();
  ReadInto(out, source, 1000);
  EXPECT_EQ(guard.Count(), before);
  EXPECT_EQ(source.GetPositionSample(), 4000);
  EXPECT_EQ(source.GetEndSample(), 20 * kBlock);
  EXPECT_NEAR(PeakOf(out, 0), kPeak16 * 0.1, kPeak16 * 0.001);
  // By peak: 0 dB is 2^24, so full scale is -30 and only a threshold below it does anything.
  compressor.SetParameterByIndex(LSPDRCSimple::ByPeak, 1);
  source = compressor.OpenSource(input);
  out.clear();
  ReadInto(out, source, 1000);
  EXPECT_NEAR(PeakOf(out, 0), kPeak16, kPeak16 * 0.001);
  compressor.SetParameterByIndex(LSPDRCSimple::Threshold, -40);
  source = compressor.OpenSource(input);
  out.clear();
  ReadInto(out, source, 1000);
  EXPECT_NEAR(PeakOf(out, 0), kPeak16 * std::pow(10, -0.5), kPeak16 * 0.001);
}
