#include "sound/LSplitterSource.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/TestSource.h"

namespace {

struct Halves {
  Halves(const std::vector<int>& samples, std::array<int, 4> map, int width = 0)
      : input(new TestSource(samples, 44100, 4)),
        primary(LSoundSource::Make<LSplitterPrimarySource>(input, main, phones, map, mutex, width)),
        secondary(LSoundSource::Make<LSplitterSecondarySource>(input, main, phones, map, mutex, width)) {}
  LSplitterRing main, phones;
  LMutex mutex;
  LSoundSource input, primary, secondary;
};

std::vector<int> FourChannelIndex(int frames) {
  std::vector<int> samples;
  for (int frame = 0; frame < frames; ++frame)
    for (int channel = 0; channel < 4; ++channel) samples.push_back(frame * 10 + channel);
  return samples;
}

std::vector<int> Read(LSoundSource& source, int frames) {
  std::vector<int> samples;
  ReadInto(samples, source, frames);
  return samples;
}

}  // namespace

TEST(LSplitterSource, BothHalvesGetTheirChannelsInAnyOrderOfReading) {
  const EngineCase& data = Engine::Case("mixer/splitter/primary_first");
  Halves halves(data.In("source"), {0, 1, 0, 1});
  std::vector<int> samples;
  for (const EngineStep& step : data.Steps())
    ReadInto(samples, step.word == "p" ? halves.primary : halves.secondary, step.Int(0));
  EXPECT_EQ(samples, data.Out("samples"));
}

TEST(LSplitterSource, RingsWrap) {
  const EngineCase& data = Engine::Case("mixer/splitter/wrap");
  Halves halves(data.In("source"), {0, 1, 0, 1});
  std::vector<int> samples;
  for (int block = 0; block < 130; ++block) {
    const std::vector<int> main = Read(halves.primary, 4096), phones = Read(halves.secondary, 4096);
    if (block < 120) continue;
    samples.insert(samples.end(), main.begin(), main.begin() + 8);
    samples.insert(samples.end(), phones.end() - 8, phones.end());
  }
  EXPECT_EQ(samples, data.Out("samples"));
}

TEST(LSplitterSource, AHalfThatStopsReadingKeepsTheNewestFrames) {
  Halves halves(FourChannelIndex(600000), {0, 1, 0, 1});
  for (int block = 0; block < 70; ++block) Read(halves.primary, 8192);  // 573440 frames against 500000
  EXPECT_EQ(halves.secondary.GetPositionSample(), 573440 - 500000);
  EXPECT_EQ(Read(halves.secondary, 1), (std::vector<int>{734402, 734403}));
}

TEST(LSplitterSource, MapsAndWidth) {
  Halves halves(FourChannelIndex(100), {1, 0, 3, -1}, 4);
  EXPECT_EQ(halves.primary.GetChannels(), 4);
  EXPECT_EQ(halves.secondary.GetChannels(), 4);
  EXPECT_EQ(Read(halves.primary, 1), (std::vector<int>{1, 0, 0, 0}));
  EXPECT_EQ(Read(halves.secondary, 1), (std::vector<int>{0, 0, 0, 2}));
}

TEST(LSplitterSource, SeekEmptiesBothAndSkipLeavesOutFramesOfOne) {
  Halves halves(FourChannelIndex(1000), {0, 1, 0, 1});
  Read(halves.primary, 500);
  EXPECT_EQ(halves.primary.GetPositionSample(), 500);
  EXPECT_EQ(halves.secondary.GetPositionSample(), 0);
  halves.primary.Seek(100);
  EXPECT_EQ(halves.secondary.GetPositionSample(), 100);
  static_cast<LSplitterSecondarySource&>(*halves.secondary).SkipFrames(30);
  EXPECT_EQ(halves.secondary.GetPositionSample(), 130);
  EXPECT_EQ(Read(halves.primary, 1), (std::vector<int>{1000, 1001}));
  EXPECT_EQ(Read(halves.secondary, 1), (std::vector<int>{1302, 1303}));
}
