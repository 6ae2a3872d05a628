#include "sound/LSPPeakLimit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/TestSource.h"

namespace {

// A mono sine of 100 frames a period whose amplitude is `loud` from frame `from` to `to` and 100000 elsewhere.
std::vector<int> SineWithALoudPart(int frames, int from, int to, double loud) {
  std::vector<int> samples(static_cast<std::size_t>(frames));
  for (int frame = 0; frame < frames; ++frame)
    samples[std::size_t(frame)] =
        int((frame >= from && frame < to ? loud : 100000) * std::sin(frame * 0.0628318530718));
  return samples;
}

std::vector<int> Limited(LSoundProcess& process, const std::vector<int>& samples, int block) {
  LSoundSource input(new TestSource(samples, 44100, 1, kPeakHeadroom));
  LSoundSource source = process.OpenSource(input);
  std::vector<int> out;
  while (out.size() < samples.size()) ReadInto(out, source, std::min(block, int(samples.size() - out.size())));
  return out;
}

int Peak(const std::vector<int>& samples) {
  int peak = 0;
  for (const int sample : samples) peak = std::max(peak, std::abs(sample));
  return peak;
}

// The largest change of gain from one frame to the next, where the input is large enough to tell.
double LargestGainStep(const std::vector<int>& in, const std::vector<int>& out) {
  double largest = 0, previous = -1;
  for (std::size_t i = 0; i < in.size(); ++i) {
    if (std::abs(in[i]) < 50000) continue;
    const double gain = double(out[i]) / in[i];
    if (previous >= 0) largest = std::max(largest, std::abs(gain - previous));
    previous = gain;
  }
  return largest;
}

}  // namespace

TEST(LSPPeakLimit, TargetGain) {
  const EngineCase& data = Engine::Case("dynamics/limit_target");
  std::vector<int> gains;
  for (const int peak : data.In("peak")) gains.push_back(LimitTargetGain24(peak, kPeak16));
  EXPECT_EQ(gains, data.Out("gain"));
}

TEST(LSPPeakLimit, BothFormsHoldTheLimitWithoutJumpsAndLeaveQuietSoundAlone) {
  const std::vector<int> samples = SineWithALoudPart(120000, 20000, 30000, 2000000);
  LSPPeakLimit lookAhead(kPeak16);
  LSPPeakLimitNoBuffer noBuffer(kPeak16);
  for (LSoundProcess* process : {static_cast<LSoundProcess*>(&lookAhead), static_cast<LSoundProcess*>(&noBuffer)}) {
    const std::vector<int> out = Limited(*process, samples, 512);
    EXPECT_LE(Peak(out), kPeak16);
    EXPECT_GT(Peak(out), kPeak16 * 9 / 10);
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + 16000, samples.begin()));
    EXPECT_TRUE(std::equal(out.begin() + 119000, out.end(), samples.begin() + 119000));
    EXPECT_LT(LargestGainStep(samples, out), process == &lookAhead ? 0.02 : 0.3);
  }
}

TEST(LSPPeakLimit, ReportsWhatItHoldsAndForgetsItOnSeek) {
  auto* behind = new TestSource(SineWithALoudPart(20000, 0, 100, 2000000), 44100, 1, kPeakHeadroom);
  LSoundSource input(behind);
  LSoundSource source = LSPPeakLimit(kPeak16).OpenSource(input);
  std::vector<int> first, again;
  ReadInto(first, source, 100);
  EXPECT_EQ(source.GetPositionSample(), 100);
  EXPECT_EQ(behind->GetPositionSample(), 3 * 1024);
  long held = 0;
  EXPECT_TRUE(source.ControlMessage(lccLookAhead, &held));
  EXPECT_EQ(held, 3 * 1024 - 100);
  long position = 5;
  source.ControlMessage(lccPullBack, &position);
  EXPECT_EQ(position, 5 + held);
  source.Seek(0);
  EXPECT_EQ(source.GetPositionSample(), 0);
  ReadInto(again, source, 100);
  EXPECT_EQ(again, first);

  LSoundSource direct = LSPPeakLimitNoBuffer(kPeak16).OpenSource(input);
  EXPECT_TRUE(direct.ControlMessage(lccLookAhead, &held));
  EXPECT_EQ(held, 0);
}

TEST(LSPPeakLimit, OfAStreamingInputOnlyWhatItsLookAheadCovers) {
  auto* behind = new TestSource(std::vector<int>(5000, 7), 44100, 1);
  behind->streaming = true;
  LSoundSource input(behind);
  LSoundSource source = LSPPeakLimit(kPeak16).OpenSource(input);
  EXPECT_EQ(source.GetEndSample(), 4 * 1024 - 2 * 1024);  // four whole blocks lie ready
  std::vector<int> out;
  ReadInto(out, source, source.GetEndSample());
  EXPECT_LE(behind->GetPositionSample(), 5000);
  EXPECT_EQ(source.GetEndSample(), source.GetPositionSample());
  behind->streaming = false;
  EXPECT_EQ(source.GetEndSample(), 5000);
}
