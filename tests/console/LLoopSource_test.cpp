#include "console/LLoopSource.h"

#include <gtest/gtest.h>

#include <climits>

#include "console/LLoopSaveSource.h"
#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

// Frame n holds n + 1, -n - 1.
LSoundSource Counting(int frames) {
  std::vector<int> samples;
  for (int frame = 1; frame <= frames; ++frame) samples.insert(samples.end(), {frame, -frame});
  return LSoundSource(new TestSource(samples, kDeckRate, 2));
}

std::vector<int> Left(LSoundSource& source, int frames) {
  std::vector<int> samples, left;
  ReadInto(samples, source, frames);
  for (std::size_t i = 0; i < samples.size(); i += 2) left.push_back(samples[i]);
  return left;
}

struct FitCase {
  int start, end, inputEnd, fittedStart, fittedEnd;
};

}  // namespace

TEST(LLoopSource, AgreesWithTheEngineData) {
  for (const EngineCase* data : Engine::CasesBelow("cue/loop/")) {
    SCOPED_TRACE(data->id);
    LSoundSource input(NewTestSource(*data));
    const int end = input.GetEndSample();
    LSoundSource loop = LLoopSource::OpenSource(input, data->Int("start"), data->Int("end"));
    const ScriptResult result = RunSourceScript(*data, loop);
    EXPECT_EQ(result.ints, data->Out("ints"));
    if (data->HasOut("samples")) {
      EXPECT_EQ(result.samples, data->Out("samples"));
    }
    if (data->HasOut("range")) {
      const LLoopRange range = LLoopRange::Fit(data->Int("start"), data->Int("end"), end);
      EXPECT_EQ((std::vector{range.start, range.end, range.Length()}), data->Out("range"));
    }
  }
}

TEST(LLoopSource, FitsAnyRangeToItsSource) {
  const FitCase cases[] = {
      {10, 20, 100, 10, 20},
      {-10, -5, 100, 0, 0},
      {90, 400, 100, 90, 100},
      {100, 140, 100, 100, 100},  // a start at the end is not beyond it
      {110, 150, 100, 70, 100},   // moves back by its length
      {150, 160, 100, 100, 100},  // that was not enough
      {50, 20, 100, 50, 50},
      {10, 20, 0, 0, 0},
      {0, 20, 1, 0, 1},
      {INT_MIN, INT_MAX, 100, 0, 100},
      {INT_MAX, INT_MIN, 100, 100, 100},
      {INT_MIN, INT_MIN, INT_MAX, 0, 0},
  };
  for (const FitCase& c : cases) {
    const LLoopRange range = LLoopRange::Fit(c.start, c.end, c.inputEnd);
    EXPECT_EQ(range.start, c.fittedStart) << c.start << ".." << c.end;
    EXPECT_EQ(range.end, c.fittedEnd) << c.start << ".." << c.end;
  }
}

TEST(LLoopSource, WrapsSeeksOffsetsAndMessages) {
  LSoundSource input = Counting(100);
  LSoundSource loop = LLoopSource::OpenSource(input, 20, 30);
  EXPECT_EQ(loop.GetPeak(), kPeakHeadroom);
  const int seeks[][2] = {{25, 25}, {19, 29}, {20, 20},  {30, 30},      {31, 21},
                          {40, 20}, {10, 30}, {-13, 27}, {INT_MAX, 27}, {INT_MIN, 22}};
  for (const auto& [frame, landed] : seeks) {
    loop.Seek(frame);
    EXPECT_EQ(loop.GetPositionSample(), landed) << frame;
  }
  loop.Seek(18 + 10);
  EXPECT_EQ(Left(loop, 4), (std::vector{29, 30, 21, 22}));
  // 5 frames in front of frame 22 lies, through the jump, frame 27.
  EXPECT_EQ(loop.AdjustRelativeOffset(-5, 22), 5);
  EXPECT_EQ(loop.AdjustRelativeOffset(-1, 22), -1);
  EXPECT_LE(loop.AdjustRelativeOffset(INT_MIN, INT_MIN), INT_MAX);
  long value = -5;
  EXPECT_TRUE(loop.ControlMessage(lccRelativeOffset, &value));
  EXPECT_EQ(value, 5);
  value = 19;
  EXPECT_TRUE(loop.ControlMessage(lccWrapPosition, &value));
  EXPECT_EQ(value, 29);
  value = 31;
  EXPECT_TRUE(loop.ControlMessage(lccWrapPosition, &value));
  EXPECT_EQ(value, 31);
  EXPECT_FALSE(loop.ControlMessage(lccLookAhead, &value));
}

TEST(LLoopSource, GoesRoundWithoutAllocatingAndIsSilentWithoutLength) {
  LSoundSource input = Counting(3);
  LSoundSource loop = LLoopSource::OpenSource(input, 2, 3);
  std::vector<int> out(2 * 1000);
  const AllocationGuard guard;
  loop.Read(out.data(), 1000);
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(out[1998], 3);
  for (const int frames : {0, 1, 100}) {
    LSoundSource track = Counting(frames);
    LSoundSource empty = LLoopSource::OpenSource(track, frames, frames + 50);
    EXPECT_EQ(Left(empty, 5), std::vector<int>(5)) << frames;
    empty.Seek(INT_MIN);
    EXPECT_EQ(empty.GetPositionSample(), frames);
  }
  LSoundSource broken;
  LSoundSource refused = LLoopSource::OpenSource(broken, 0, 100);
  EXPECT_EQ(refused.GetError(), lseInputError);
  int sample = 1;
  refused.Read(&sample, 1);
  EXPECT_EQ(sample, 0);
}

TEST(LLoopSaveSource, PlaysTheLoopOnceInItsOwnCoordinates) {
  LSoundSource input = Counting(100);
  input.Seek(77);
  LSoundSource save = LSoundSource::Make<LLoopSaveSource>(input, 20, 25);
  EXPECT_EQ(save.GetEndSample(), 5);
  EXPECT_EQ(save.GetPositionSample(), 0);
  EXPECT_EQ(Left(save, 8), (std::vector{21, 22, 23, 24, 25, 0, 0, 0}));
  EXPECT_EQ(input.GetPositionSample(), 25);  // nothing was read past the loop
  EXPECT_EQ(Left(save, 2), (std::vector{0, 0}));
  const int seeks[][2] = {{INT_MIN, 0}, {3, 3}, {INT_MAX, 5}};
  for (const auto& [frame, landed] : seeks) {
    save.Seek(frame);
    EXPECT_EQ(save.GetPositionSample(), landed);
    EXPECT_EQ(input.GetPositionSample(), 20 + landed);
  }
}
