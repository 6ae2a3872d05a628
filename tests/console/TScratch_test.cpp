#include "console/TScratch.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <sstream>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

class NumberedTrack final : public LSoundSourceBase {
 public:
  explicit NumberedTrack(int endFrames) : LSoundSourceBase(kDeckRate, 2, kPeak16), endFrames_(endFrames) {}
  void Read(int* out, int frames) override {
    framesRead += frames;
    for (int i = 0; i < frames; ++i, ++position_) {
      const bool inside = position_ >= 0 && position_ < endFrames_;
      *out++ = inside ? position_ + 1 : 0;
      *out++ = inside ? -position_ - 1 : 0;
    }
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return endFrames_; }
  void Seek(int frame) override { position_ = frame; }

  long long framesRead = 0;

 private:
  int endFrames_;
  int position_ = 0;
};

struct ScratchRig {
  ScratchRig(int endFrames, int startFrame)
      : track(new NumberedTrack(endFrames)), input(track), hand(input, startFrame, transitions) {}
  std::vector<int> Read(int frames) {
    std::vector<int> samples(std::size_t(frames) * 2, 7);
    hand.Read(samples.data(), frames);
    return samples;
  }
  LTransitionManager transitions;
  NumberedTrack* track;
  LSoundSource input;
  TSRCScratch hand;
};

const std::vector<int> kSilence(2 * 1000);

}  // namespace

TEST(TScratch, WalksAsTheEngineData) {
  for (const EngineCase* data : Engine::CasesBelow("scratch/walk/")) {
    SCOPED_TRACE(data->id);
    LTransitionManager transitions;
    std::istringstream moves(data->Text("transitions")), reads(data->Text("reads"));
    for (std::string move; moves >> move;)
      transitions.AddTransition(std::stoi(move), std::stoi(move.substr(move.find(':') + 1)));
    LSoundSource input(NewTestSource(*data));
    LSoundSource source = TScratch(data->Int("position"), transitions).OpenSource(input);
    std::vector<int> samples;
    for (int frames = 0; reads >> frames;) ReadInto(samples, source, frames);
    EXPECT_EQ(samples, data->Out("samples"));
    const auto& hand = dynamic_cast<TSRCScratch&>(*source);
    EXPECT_EQ((std::vector{hand.GetCurrentFrame(), hand.GetWindowStart(), hand.GetWindowEnd(), transitions.Count()}),
              data->Out("ints"));
  }
}

TEST(TScratchClock, AgreesWithTheEngineData) {
  for (const EngineCase* data : Engine::CasesBelow("scratch/ticks/")) {
    SCOPED_TRACE(data->id);
    TScratchClock clock;
    clock.Start(std::uint32_t(data->Int("start")));
    std::vector<int> ticks;
    for (const int now : data->In("now")) ticks.push_back(clock.Step(std::uint32_t(now)));
    EXPECT_EQ(ticks, data->Out("ticks"));
  }
}

TEST(TScratchClock, GivesMovesOfOneMillisecondTimesOfTheirOwn) {
  TScratchClock clock;
  clock.Start(UINT32_MAX);  // the clock's wrap lies within the scratch
  // The third runs ahead by 7, so does the fourth, and each call ahead of the clock is one shorter, down to 1.
  const std::pair<std::uint32_t, int> steps[] = {{4, 5}, {4, 7}, {4, 6}, {4, 5}, {4, 4}, {4, 3},
                                                 {4, 2}, {4, 1}, {4, 1}, {5, 1}, {5, 1}, {106, 100}};
  for (const auto& [now, ticks] : steps) EXPECT_EQ(clock.Step(now), ticks) << now;
}

TEST(LTransitionManager, MergesWhatDoesNotFitAndLosesNoTime) {
  LTransitionManager transitions;
  EXPECT_EQ(transitions.PeekNextTransition(), nullptr);
  transitions.DeleteTransition();
  EXPECT_EQ(transitions.Count(), 0);
  const AllocationGuard guard;
  int added = 0, taken = 0, last = -1;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 200; ++i, ++added) transitions.AddTransition(added, 10);
    for (int left = round < 2 ? 130 : transitions.Count(); left > 0; --left) {
      const LTransition next = *transitions.PeekNextTransition();
      ASSERT_GT(next.target, last);
      last = next.target;
      taken += next.durationMs;
      transitions.DeleteTransition();
    }
  }
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(last, added - 1);
  EXPECT_EQ(taken, added * 10);
  for (int i = 0; i <= LTransitionManager::kCapacity; ++i) transitions.AddTransition(i, INT_MAX);
  EXPECT_EQ(transitions.Count(), LTransitionManager::kCapacity);
  transitions.Clear();
  EXPECT_EQ(transitions.PeekNextTransition(), nullptr);
}

TEST(TScratch, StandsStillInSilenceAndComesBackToTheFrame) {
  ScratchRig rig(1000000, 300000);
  EXPECT_EQ(rig.Read(1000), kSilence);
  EXPECT_EQ(rig.track->framesRead, 2 * TSRCScratch::kReachFrames);
  EXPECT_EQ(rig.hand.GetPositionSample(), 300000);
  for (int round = 0; round < 50; ++round)
    for (const int target : {303331, 288123, 300000}) {
      rig.transitions.AddTransition(target, 7 + round);
      while (rig.transitions.Count() > 0) rig.Read(500);
      EXPECT_EQ(rig.hand.GetCurrentFrame(), target);
    }
  EXPECT_EQ(rig.Read(1000), kSilence);
  EXPECT_EQ(rig.track->framesRead, 2 * TSRCScratch::kReachFrames);  // the hand never left the window
}

TEST(TScratch, SharesOutAMoveThatOutlastsTheBlock) {
  ScratchRig rig(1000000, 200000);
  rig.transitions.AddTransition(204410, 100);  // 4410 frames of time for 4410 frames of way
  rig.transitions.AddTransition(204400, 1);
  rig.Read(1000);  // 22 whole ms of the 100: 970 frames of the way
  EXPECT_EQ(rig.hand.GetCurrentFrame(), 200970);
  EXPECT_EQ(rig.transitions.PeekNextTransition()->durationMs, 78);
  // The rest lasts 3439 frames, then the last move fills the block.
  const std::vector<int> rest = rig.Read(4000);
  EXPECT_EQ(rig.hand.GetCurrentFrame(), 204400);
  EXPECT_EQ(rig.transitions.Count(), 0);
  EXPECT_EQ(rest[0], 200971);
  EXPECT_EQ(rest[2 * 3439], 204411);
}

// Back by 0.441 frames a frame: 0.882 samples less than one frame each, a whole frame less whenever 2 have come together.
TEST(TScratch, WalksBackAndIsSilentOutsideItsWindow) {
  ScratchRig rig(300000, 100000);
  rig.transitions.AddTransition(99559, 10);
  const std::vector<int> back = rig.Read(1000);
  const int frames[] = {0, 1, 2, 2, 3, 3, 4, 4};
  for (std::size_t i = 0; i < std::size(frames); ++i) EXPECT_EQ(back[2 * i], 100001 + frames[i]) << i;

  rig.transitions.AddTransition(200000, 10);  // a window cut short by the track's end, where the first one still lies
  rig.Read(1000);
  for (const int target : {290000, 299999, 293001, 298765}) {  // the walk overtakes the hand
    rig.transitions.AddTransition(target, 100);
    const std::vector<int> samples = rig.Read(8000);
    bool outside = false;
    for (std::size_t i = 0; i < samples.size(); i += 2) {
      outside = outside || samples[i] == 0;
      ASSERT_EQ(outside, std::abs(samples[i]) <= 188200) << target << " " << i;
      ASSERT_EQ(outside, std::abs(samples[i + 1]) <= 188200) << target << " " << i;
    }
  }
}

TEST(TScratch, RefillsAtTheEndsOfTheTrackOnlyOnce) {
  ScratchRig rig(500000, 1000);
  for (int round = 0; round < 5; ++round)
    for (const int target : {0, 900, 0}) {
      rig.transitions.AddTransition(target, 10);
      rig.Read(1000);
      EXPECT_EQ(rig.hand.GetCurrentFrame(), target);
    }
  EXPECT_EQ(rig.hand.GetPositionSample(), 0);
  EXPECT_EQ(rig.track->framesRead, 89200 + 88200);
  ScratchRig end(500000, 460000);
  end.transitions.AddTransition(500000, 10);
  end.transitions.AddTransition(480000, 10);
  end.transitions.AddTransition(480100, 10);
  const std::vector<int> samples = end.Read(2000);
  EXPECT_EQ(end.hand.GetWindowStart(), 411800);
  EXPECT_EQ(samples[2 * 441], 480001);
}

// Whatever targets, durations and tracks there are: no access outside the window (the sanitizers look), no sample that
// is not of the track, and the hand ends where it was led.
TEST(TScratch, SurvivesTenThousandWildTargets) {
  std::mt19937 random(5);
  const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  for (const int endFrames : {0, 1, 100, 300000, INT_MAX}) {
    ScratchRig rig(endFrames, endFrames / 2);
    std::vector<int> out(2 * kMaxBlockFrames);
    const int highest = endFrames < INT_MAX ? endFrames : 0;
    const AllocationGuard guard;
    for (int move = 0; move < 2000; ++move) {
      const auto near = int(random() % 20000) - 10000 + rig.hand.GetCurrentFrame() / 2 + endFrames / 4;
      const int target = move % 100 == 0  ? extremes[random() % std::size(extremes)]
                         : move % 50 == 1 ? int(random() % 900000u) - 300000
                                          : near;
      rig.transitions.AddTransition(target, move % 30 == 0 ? extremes[random() % 7] : int(random() % 30));
      if (random() % 3 == 0) continue;
      const auto frames = int(random() % 2000);
      rig.hand.Read(out.data(), frames);
      for (int i = 0; highest > 0 && i < 2 * frames; ++i) ASSERT_LE(std::abs(out[std::size_t(i)]), highest);
      ASSERT_LE(rig.hand.GetWindowEnd() - rig.hand.GetWindowStart(), TSRCScratch::kWindowFrames);
    }
    rig.transitions.Clear();
    const int home = endFrames / 3;
    rig.transitions.AddTransition(home, 20);
    rig.hand.Read(out.data(), kMaxBlockFrames);
    EXPECT_EQ(rig.hand.GetCurrentFrame(), home);
    EXPECT_EQ(guard.Count(), 0);
  }
}

TEST(TScratch, IsSilentOverWhatIsNotStereoOrBroken) {
  LTransitionManager transitions;
  LSoundSource mono(new TestSource(std::vector<int>(100, 5), kDeckRate, 1)), broken;
  for (LSoundSource* input : {&mono, &broken}) {
    LSoundSource hand = TScratch(0, transitions).OpenSource(*input);
    EXPECT_EQ(hand.GetError(), lseInputError);
    transitions.AddTransition(50, 5);
    std::vector<int> out(10, 7);
    hand.Read(out.data(), 10);
    EXPECT_EQ(out, std::vector<int>(10));
  }
}
