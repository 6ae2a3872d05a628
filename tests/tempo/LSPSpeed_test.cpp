#include "tempo/LSPSpeed.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

LSoundSource Opened(TestSource* samples, double speed, bool outputTime = false, double finalSpeed = 1, int rampMs = 0) {
  LSoundSource input(samples);
  return LSPSpeed(speed, finalSpeed, rampMs, outputTime).OpenSource(input);
}

TestSource* NewNoise(int frames, int channels, int rate = 44100) {
  return new TestSource(Engine::Noise(31, 500000, std::size_t(frames) * std::size_t(channels)), rate,
                        static_cast<unsigned char>(channels));
}

}  // namespace

TEST(LSPSpeed, RunsTheComputedScripts) {
  EXPECT_EQ(LSRCSpeed::FadeTable(980), Engine::Case("speed/speed/fade").Out("fade"));
  for (const EngineCase* data : Engine::CasesBelow("speed/speed/")) {
    if (!data->HasOut("samples")) continue;
    LSoundSource source = Opened(NewTestSource(*data), data->Decimal("speed"), data->Int("output_time") != 0,
                                 data->Decimal("final"), data->Int("ramp_ms"));
    ScriptResult result;
    for (const EngineStep& step : data->Steps())
      if (!RunSourceStep(step, source, result))
        result.ints.push_back(source.AdjustRelativeOffset(step.Int(0), step.Int(1)));
    EXPECT_EQ(result.samples, data->Out("samples")) << data->id;
    EXPECT_EQ(result.ints, data->Out("ints")) << data->id;
  }
}

TEST(LSPSpeed, AtSpeedOneTheInputComesThroughButForRounding) {
  for (const int channels : {1, 2, 6}) {
    LSoundSource source = Opened(NewNoise(6000, channels), 1), plain(NewNoise(6000, channels));
    std::vector<int> heard, wanted;
    ReadInto(heard, source, 6000);
    ReadInto(wanted, plain, 6000);
    for (std::size_t i = 0; i < heard.size(); ++i) ASSERT_NEAR(heard[i], wanted[i], 4) << i << " of " << channels;
  }
}

TEST(LSPSpeed, OddSpeedsAndLengthsStayWithinBounds) {
  const double none = std::nan(""), infinite = HUGE_VAL;
  for (const int frames : {0, 1, 100, 30000})
    for (const double speed : {0.0, -1.0, 0.513, -7.77, 1e9, -1e300, none, infinite, -infinite})
      for (const bool outputTime : {false, true})
        for (const int rate : {1, 44100, 2000000000}) {
          TestSource* noise = NewNoise(frames, 2, rate);
          noise->clamp = true;
          LSoundSource source = Opened(noise, speed, outputTime, -speed, 100);
          std::vector<int> out(2 * 1500);
          for (const int place : {0, 700, -700, 2147483647}) {
            source.Seek(place);
            source.Read(out.data(), 1500);
            source.Read(out.data(), 1);
            EXPECT_GE(source.GetPositionSample(), 0) << speed;
            source.AdjustRelativeOffset(-1000, place);
          }
          EXPECT_GE(source.GetEndSample(), 0) << speed << " " << outputTime;
        }
}

TEST(LSPSpeed, SpeedZeroRepeatsOneGrain) {
  LSoundSource source = Opened(NewNoise(9000, 1), 0);
  source.Seek(3000);
  std::vector<int> out, again;
  ReadInto(out, source, 490 * 4);
  const int position = source.GetPositionSample();
  ReadInto(again, source, 490);
  EXPECT_TRUE(std::equal(again.begin(), again.end(), out.begin() + 490 * 3));
  EXPECT_EQ(source.GetPositionSample(), position);
  EXPECT_EQ(source.AdjustRelativeOffset(-77, position), -77);
}

TEST(LSPSpeed, ReadsWithoutAllocatingAndAnyBlockSizeGivesTheSame) {
  for (const double speed : {0.5, 1.37, 9.0, -1.3}) {
    LSoundSource whole = Opened(NewNoise(60000, 2), speed), cut = Opened(NewNoise(60000, 2), speed);
    std::vector<int> wanted(2 * 8000), heard(wanted.size());
    whole.Seek(30000);
    cut.Seek(30000);
    const AllocationGuard guard;
    whole.Read(wanted.data(), 8000);
    for (int at = 0, frames = 1; at < 8000; at += frames, frames = std::min(frames * 2 % 997, 8000 - at))
      cut.Read(heard.data() + 2 * at, frames);
    EXPECT_EQ(guard.Count(), 0) << speed;
    EXPECT_EQ(heard, wanted) << speed;
  }
}

TEST(LSpeedTimeMap, GoesBackThroughItsEntries) {
  LSpeedTimeMap map;
  EXPECT_EQ(map.ToInput(-100, 50, 1.5), -150);  // empty: by the speed alone
  map.Push(200, 100);
  map.Push(100, 300);
  map.Push(100, 200);  // newest
  struct {
    long long skip;
    int offset, wanted;
  } const rows[] = {
      {0, -50, -100},    // within the newest entry
      {0, -150, -350},   // 200, and 50 / 100 of 300
      {0, -400, -600},   // all of them
      {0, -500, -800},   // 100 more at speed 2
      {150, -20, -40},   // a quarter of the newest lies behind the place: 25 out, 50 in
      {150, -75, -200},  // those 25, and 50 of the next
      {200, -50, -150},  // from the border of two entries
      {900, -50, -100},  // beyond the map
      {-30, -50, -100},  // the place is newer than the map
  };
  for (const auto& row : rows)
    EXPECT_EQ(map.ToInput(row.offset, row.skip, 2), row.wanted) << row.offset << " " << row.skip;

  map.Clear();
  map.Push(100, -200);
  EXPECT_EQ(map.ToInput(-20, -150, -2), 40);  // backward, so further back is a higher position
  EXPECT_EQ(map.ToInput(-75, -150, -2), 150);
}

TEST(LSpeedTimeMap, ForgetsWhatLiesTooFarBack) {
  LSpeedTimeMap map;
  for (int i = 0; i < LSpeedTimeMap::kMaxFrames; ++i) map.Push(1, 3);
  EXPECT_EQ(map.ToInput(-LSpeedTimeMap::kMaxFrames - 10, 0, 1), -3 * LSpeedTimeMap::kMaxFrames - 10);
  for (int i = 0; i < 1000; ++i) map.Push(490, 490);
  const int held = LSpeedTimeMap::kMaxFrames / 490 * 490;
  EXPECT_EQ(map.ToInput(-held - 1000, 0, 2), -held - 2000);
}
