// What a DJ does with a deck that may be playing: cue points, loops, pitch, sync, key lock and the hand on the record.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "Rig.h"
#include "console/DJPitchLaw.h"
#include "foundation/LText.h"

namespace {

constexpr int kBeat = 22050;                        // frames at 120 BPM
constexpr std::size_t kReach = 5 * 512 + 3 * 1470;  // frames until a change has been heard and faded in
constexpr int kTolerance = 4 + kEqualizerLoss;      // of a fade between equal signals, which loses last bits too
constexpr int kLongTrack = 10 * kDeckRate + kDeckRate / 2;  // still below full scale as numbered frames

// Frame n holds n + 1: what is heard tells where it was read.
std::vector<int> Numbered(int frames) {
  std::vector<int> samples;
  for (int frame = 1; frame <= frames; ++frame) samples.insert(samples.end(), {frame, frame});
  return samples;
}

struct Listener final : DJConsoleNotify {
  void djcntfDeckPitchUpdate(DJDeck& deck) override { calls += LText::Format("p%c ", deck.GetLetter()); }
  void djcntfFreeSlave(DJDeck& deck) override { calls += LText::Format("f%c ", deck.GetLetter()); }
  std::string calls;
};

struct MovesRig : ConsoleRig {
  MovesRig() { console->SetNotify(&listener); }
  ~MovesRig() { console.reset(); }  // while the listener lives
  void LoadBeats(DJDeck& deck, std::vector<int> samples, double bpm, int offset = 0) {
    Load(deck.GetPosition(), std::move(samples));
    deck.SetBPM(bpm, offset);
  }
  void SetPitch(DJDeck& deck, int slider) {
    console->CmDeckSetPitch(deck, slider);
    RunMs(2 * DJConsole::kTimerMs);
  }
  Listener listener;
  DJDeck& a = Deck(kDeckA);
  DJDeck& b = Deck(kDeckB);
};

std::vector<double> SyncStateOf(const DJDeck& deck) {
  return {deck.GetPitch(),         double(deck.GetSyncState()),  double(deck.GetPlayPosition()),
          double(deck.GetState()), double(deck.GetLoop().start), double(deck.GetCuePosition(0))};
}

// Where in the track the deck is, whatever its pitch.
double AudibleSeconds(const ConsoleRig& rig, const DJDeck& deck) {
  return deck.GetRealPosition(rig.console->GetLag(true)) * deck.GetPitch() / kDeckRate;
}

// The largest difference of neighbouring samples.
int LargestStep(const std::vector<int>& samples, std::size_t from) {
  int largest = 0;
  for (std::size_t i = from + 1; i < samples.size(); ++i)
    largest = std::max(largest, std::abs(samples[i] - samples[i - 1]));
  return largest;
}

}  // namespace

TEST(DeckSync, EachAttemptEndsAsItMust) {
  const auto loadBoth = [](double bpmA, double bpmB) {
    return [=](MovesRig& rig) {
      rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), bpmA);
      rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), bpmB);
    };
  };
  const auto also = [](auto first, auto second) { return [=](MovesRig& rig) { first(rig), second(rig); }; };
  const struct {
    const char* what;
    std::function<void(MovesRig&)> arrange;
    DJSyncResult result;
    double pitch;  // of deck A, on success
  } cases[] = {
      {"both empty", [](MovesRig&) {}, syncNoTitle, 0},
      {"this empty", [](MovesRig& rig) { rig.LoadBeats(rig.b, Tone(441, 1000, 5000), 120); }, syncNoTitle, 0},
      {"other empty", [](MovesRig& rig) { rig.LoadBeats(rig.a, Tone(441, 1000, 5000), 120); }, syncNoOtherTitle, 0},
      {"other without beats", loadBoth(120, 0), syncMasterWithoutBpm, 0},
      {"other's beat below a frame", loadBoth(120, 1e7), syncMasterWithoutBpm, 0},
      {"this without beats", loadBoth(0, 120), syncNoBpm, 0},
      {"1.6 times as fast", loadBoth(75, 120), syncOutOfRange, 0},
      {"0.4 times as fast", loadBoth(150, 60), syncOutOfRange, 0},
      {"this is a master", also(loadBoth(120, 120), [](MovesRig& rig) { rig.console->CtlDeckSync(rig.b); }),
       syncIsMaster, 0},
      {"other stands", also(loadBoth(120, 120), [](MovesRig& rig) { rig.a.Play(), rig.RunMs(200); }),
       syncOtherNotPlaying, 0},
      {"the highest pitch", loadBoth(80, 120), syncDone, 1.5},
      {"the lowest pitch", loadBoth(120, 60), syncDone, 0.5},
      {"again", also(loadBoth(100, 110), [](MovesRig& rig) { rig.console->CtlDeckSync(rig.a); }), syncDone, 1.1},
      {"to a pitched one", also(loadBoth(100, 110), [](MovesRig& rig) { rig.SetPitch(rig.b, 600); }), syncDone, 1.21},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    MovesRig rig;
    c.arrange(rig);
    rig.listener.calls.clear();
    const auto a = SyncStateOf(rig.a), b = SyncStateOf(rig.b);
    EXPECT_EQ(rig.console->CtlDeckSync(rig.a), c.result);
    if (c.result == syncDone) {
      EXPECT_NEAR(rig.a.GetPitch(), c.pitch, 1e-12);
      EXPECT_EQ(rig.a.GetSyncState(), DJDeck::Slave);
      EXPECT_EQ(rig.b.GetSyncState(), DJDeck::Master);
      EXPECT_EQ(rig.listener.calls, "pA ");
    } else {
      EXPECT_EQ(SyncStateOf(rig.a), a);
      EXPECT_EQ(SyncStateOf(rig.b), b);
      EXPECT_EQ(rig.listener.calls, "");
    }
  }
}

TEST(DeckSync, AMasterTooFastForItsSlaveFreesItOnce) {
  for (const bool play : {false, true}) {
    MovesRig rig;
    rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), 100);
    rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 80);
    if (play) rig.a.Play(), rig.b.Play();
    ASSERT_EQ(rig.console->CtlDeckSync(rig.b), syncDone);
    EXPECT_EQ(rig.b.GetPitch(), 1.25);
    rig.listener.calls.clear();
    rig.SetPitch(rig.a, 700);  // 100 * 1.2 / 80 is just allowed
    EXPECT_NEAR(rig.b.GetPitch(), 1.5, 1e-12);
    EXPECT_EQ(rig.listener.calls, "pA pB ");
    rig.SetPitch(rig.a, 701);
    EXPECT_EQ(rig.b.GetPitch(), 1.0);
    EXPECT_EQ(rig.listener.calls, "pA pB pA pB fB ");
    EXPECT_EQ(rig.a.GetSyncState() + rig.b.GetSyncState(), DJDeck::Free);
    rig.SetPitch(rig.a, 600);
    EXPECT_EQ(rig.b.GetPitch(), 1.0);
    EXPECT_EQ(rig.listener.calls, "pA pB pA pB fB pA ");
  }
}

TEST(DeckSync, EndsByUnsyncAndWithTheMaster) {
  const struct {
    const char* what;
    std::function<void(MovesRig&)> end;
    double slavePitch;
  } cases[] = {
      {"unsync of the slave", [](MovesRig& rig) { rig.console->CmDeckUnsync(rig.b); }, 1.0},
      {"master cleared", [](MovesRig& rig) { rig.console->CmDeckClear(rig.a); }, 1.25},
      {"slave cleared", [](MovesRig& rig) { rig.console->CmDeckClear(rig.b); }, 1.25},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    MovesRig rig;
    rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), 100);
    rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 80);
    rig.a.Play(), rig.b.Play();
    ASSERT_EQ(rig.console->CtlDeckSync(rig.b), syncDone);
    rig.console->CmDeckUnsync(rig.a);  // the master: nothing
    ASSERT_EQ(rig.a.GetSyncState(), DJDeck::Master);
    c.end(rig);
    EXPECT_EQ(rig.a.GetSyncState() + rig.b.GetSyncState(), DJDeck::Free);
    EXPECT_EQ(rig.b.GetPitch(), c.slavePitch);
  }
}

TEST(DeckSync, AMasterThatIsResetTakesItsSlaveAlong) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), 100);
  rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 80);
  rig.a.Play(), rig.b.Play();
  ASSERT_EQ(rig.console->CtlDeckSync(rig.b), syncDone);
  rig.console->CmDeckNudgePitch(rig.a, 600);
  rig.RunMs(60);
  EXPECT_NEAR(rig.b.GetPitch(), 1.375, 1e-12);
  rig.console->CmDeckReset(rig.a);
  EXPECT_EQ(rig.a.GetPitch(), 1.0);
  EXPECT_EQ(rig.b.GetPitch(), 1.25);
  rig.console->CmDeckNudgePitch(rig.a, 550);  // the first of two again
  rig.RunMs(60);
  EXPECT_NEAR(rig.a.GetPitch(), 1.05, 1e-12);
}

TEST(DeckSync, APlayingSlaveTakesItsMastersPlaceInTheBarAtMostABarAway) {
  for (const int delayMs : {0, 130, 470, 900, 1310})
    for (const int slider : {500, 537}) {
      MovesRig rig;
      rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), 120, 3000);
      rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 126, 17000);
      rig.SetPitch(rig.a, slider);
      rig.a.Play();
      rig.RunMs(3000 + delayMs);
      rig.b.Play();
      rig.RunMs(4000);
      const double was = AudibleSeconds(rig, rig.b);
      ASSERT_EQ(rig.console->CtlDeckSync(rig.b), syncDone);
      const TBeatGrid master = rig.a.GetBeatGrid(), slave = rig.b.GetBeatGrid();
      double apart = master.GetRelativeBarPosition(rig.a.GetRealPosition(0)) -
                     slave.GetRelativeBarPosition(rig.b.GetRealPosition(0));
      apart -= std::round(apart);
      EXPECT_NEAR(apart * 4 * slave.Step(), 0, 3) << delayMs;
      EXPECT_LE(std::fabs(AudibleSeconds(rig, rig.b) - was), 4 * 60 / 126.0 + 0.001) << delayMs;
    }
}

TEST(DeckPitch, FollowsTheSliderAndRefusesTheRest) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Tone(441, 1000, kLongTrack), 120);
  rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 120);
  rig.a.Play();
  for (const auto& [slider, pitch] : {std::pair{0, 0.5}, {1000, 1.5}, {500, 1.0}, {501, 1.001}}) {
    EXPECT_TRUE(rig.console->CmDeckSetPitch(rig.a, slider));
    EXPECT_FALSE(rig.console->CmDeckSetPitch(rig.a, slider)) << "queued already";
    rig.RunMs(60);
    EXPECT_FALSE(rig.console->CmDeckSetPitch(rig.a, slider)) << "applied already";
    EXPECT_NEAR(rig.a.GetPitch(), pitch, kPitchTolerance);
  }
  for (const int outside : {-1, 1001, INT_MIN, INT_MAX}) {
    EXPECT_FALSE(rig.console->CmDeckSetPitch(rig.a, outside)) << outside;
    rig.console->CmDeckNudgePitch(rig.a, outside);
    rig.RunMs(60);
    EXPECT_NEAR(rig.a.GetPitch(), 1.001, kPitchTolerance);
    rig.console->CmDeckNudgePitch(rig.a, outside);
  }
  rig.b.Play();
  ASSERT_EQ(rig.console->CtlDeckSync(rig.b), syncDone);
  EXPECT_FALSE(rig.console->CmDeckSetPitch(rig.b, 600)) << "a slave that keeps to its beats";
  rig.b.ToggleStrictBeats();
  EXPECT_TRUE(rig.console->CmDeckSetPitch(rig.b, 600));
}

TEST(DeckPitch, TwoNudgesReturnExactly) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Tone(441, 1000, 6 * kLongTrack), 120);
  rig.a.Play();
  for (const int slider : {500, 473, 999})
    for (const int pauseMs : {0, 100}) {
      rig.SetPitch(rig.a, slider);
      const double pitch = rig.a.GetPitch();
      rig.console->CmDeckNudgePitch(rig.a, 540);
      rig.RunMs(pauseMs);
      rig.console->CmDeckNudgePitch(rig.a, 900);
      rig.RunMs(100);
      EXPECT_EQ(rig.a.GetPitch(), pitch) << slider;
    }
}

TEST(DeckPitch, AMoveInPlayMakesNoClick) {
  constexpr int kAmplitude = 300000;
  for (const bool keyLock : {false, true}) {
    MovesRig rig;
    rig.LoadBeats(rig.a, Tone(441, kAmplitude, kLongTrack), 120);
    rig.console->CmDeckPitchLock(rig.a, keyLock);
    rig.a.Play();
    for (const int slider : {500, 580, 420, 500, 580}) rig.RunMs(700), rig.console->CmDeckSetPitch(rig.a, slider);
    rig.RunMs(700);
    const double ownStep = kAmplitude * 2 * M_PI * 441 * (keyLock ? 1.0 : 1.08) / kDeckRate;
    const double ratio = LargestStep(rig.Heard(), 0) / ownStep;
    EXPECT_LE(ratio, 1.5) << keyLock;
    RecordProperty(keyLock ? "step_ratio_key_lock" : "step_ratio", LText::Format("%.3f", ratio));
  }
}

TEST(DeckPitch, KeyLockGoesOnAndOffInPlayWithoutAGapOrAJump) {
  constexpr int kAmplitude = 300000;
  MovesRig rig;
  rig.LoadBeats(rig.a, Tone(441, kAmplitude, kLongTrack), 120);
  rig.a.Play();
  rig.SetPitch(rig.a, 580);
  for (int i = 0; i < 6; ++i) {
    rig.RunMs(500);
    const int position = rig.a.GetPlayPosition();
    const std::size_t at = rig.heard.size() / 2;
    rig.console->CmDeckPitchLock(rig.a, i % 2 == 0);
    EXPECT_NEAR(rig.a.GetPlayPosition(), position, 2048);
    rig.RunMs(300);
    EXPECT_NEAR(rig.a.GetPlayPosition() - position, int(rig.heard.size() / 2 - at), 2048);
    const auto left = rig.Heard();
    for (std::size_t from = at; from + 1000 <= left.size(); from += 500)
      ASSERT_GT(Rms(left, from, 1000), kAmplitude * 0.4) << i << " " << from - at;
  }
}

TEST(DeckLoop, IsCutToTheTrackAndNeverEnds) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Numbered(2 * kDeckRate), 120);
  rig.a.SetBeatLoopWithStart(32, kDeckRate);
  EXPECT_EQ(rig.a.GetLoop().start, kDeckRate);
  EXPECT_EQ(rig.a.GetLoop().length, kDeckRate);
  rig.a.Play();
  rig.RunMs(6000);
  EXPECT_TRUE(rig.a.IsPlaying());
  rig.console->CmDeckLoopTrack(rig.a);
  rig.RunMs(6000);
  EXPECT_TRUE(rig.a.IsPlaying());
  EXPECT_EQ(rig.a.GetLoop().length, 2 * kDeckRate);
  rig.console->CmDeckRemoveCueBeatLoop(rig.a);
  rig.RunMs(2500);
  EXPECT_FALSE(rig.a.IsPlaying());
}

TEST(DeckLoop, WithoutLengthIsNeverOn) {
  MovesRig rig;
  for (const bool play : {false, true}) {
    rig.Load(kDeckA, Numbered(kLongTrack));
    if (play) rig.a.Play(), rig.RunMs(100);
    rig.a.Cues().SetLoopLength(0, 5);
    rig.a.SetBeatLoop(4);
    EXPECT_FALSE(rig.a.GetLoop().on);
    rig.a.SetBeatLoopWithStart(4, 1000);
    EXPECT_FALSE(rig.a.GetLoop().on);
    rig.console->CmDeckApplyCueBeatLoop(rig.a, 0);
    EXPECT_FALSE(rig.a.GetLoop().on);
  }
  // No room left: at the very end of the track.
  rig.console->CmDeckClear(rig.a);
  rig.LoadBeats(rig.a, Numbered(kBeat * 4), 120);
  for (const int start : {4 * kBeat, 5 * kBeat, INT_MAX}) {
    rig.a.SetBeatLoopWithStart(1, start);
    EXPECT_EQ(rig.a.GetLoop().on, rig.a.GetLoop().length > 0) << start;
  }
}

TEST(DeckLoop, LeavingItKeepsTheAudiblePosition) {
  for (const int slot : {0, 1}) {  // by removing the slot's loop, and by setting it to no beats
    MovesRig rig;
    rig.LoadBeats(rig.a, Numbered(kLongTrack), 120);
    rig.a.Play();
    rig.RunMs(200);
    rig.a.SetBeatLoopWithStart(1, 4 * kBeat);
    rig.RunMs(1750);  // 3.5 rounds
    const auto at = rig.Heard().size();
    if (slot == 0)
      rig.console->CmDeckRemoveCueBeatLoop(rig.a);
    else
      rig.a.SetBeatLoopWithStart(0, 0);
    rig.RunMs(1000);
    const auto left = rig.Heard();
    for (std::size_t i = at; i < left.size(); ++i) ASSERT_NEAR(left[i] - left[i - 1], 1, kTolerance) << i - at;
    EXPECT_GT(left.back(), 5 * kBeat);
  }
}

TEST(DeckCue, PauseLeavesTheDeckStoppedAtTheCueAndMovesTheLoop) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Numbered(kLongTrack), 120);
  rig.a.SetCuePointAtIndex(2, 7 * kBeat + 100);
  rig.a.SetBeatLoopWithStart(2, 0);
  rig.a.Play();
  rig.RunMs(300);
  for (const int ignored : {-1, 3, 8, INT_MAX}) {
    rig.console->CmDeckSetCuePoint(rig.a, ignored == 3 ? -1 : ignored);
    rig.console->CmDeckCuePause(rig.a, ignored);
    EXPECT_TRUE(rig.a.IsPlaying());
  }
  rig.console->CmDeckCuePause(rig.a, 2);
  EXPECT_EQ(rig.a.GetState(), DJDeck::Stopped);
  EXPECT_EQ(rig.a.GetPlayPosition(), 7 * kBeat);
  EXPECT_EQ(rig.a.GetLoop().start, 7 * kBeat);
  EXPECT_EQ(rig.a.GetLoop().length, 2 * kBeat);
  EXPECT_FALSE(rig.console->IsMainPlayerRunning());
  rig.a.Play();
  rig.RunMs(100);
  EXPECT_EQ(rig.Heard().back() > 7 * kBeat, true);
}

TEST(DeckCue, SurvivesPitchChangesAndBack) {
  MovesRig rig;
  rig.Load(kDeckA, Numbered(kLongTrack));
  const int frames[] = {0, 1, 1000, 123456, kLongTrack - 1, kLongTrack};
  for (int i = 0; i < 6; ++i) rig.a.SetCuePointAtIndex(i, frames[i]);
  for (const int slider : {0, 1000, 537, 463, 501, 500, 999, 500}) {
    rig.SetPitch(rig.a, slider);
    for (int i = 0; i < 6; ++i)
      EXPECT_NEAR(rig.a.GetCuePosition(i), frames[i] / PitchFromSlider(slider), 1.5) << slider;
  }
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(rig.a.GetCuePosition(i), frames[i], 1);
  EXPECT_EQ(rig.a.GetCuePosition(0), 0);
  EXPECT_EQ(rig.a.GetCuePosition(6), kNoCue);
}

TEST(DeckCue, StartsAStoppedDeckAtTheCue) {
  for (const bool otherPlays : {false, true}) {
    MovesRig rig;
    rig.LoadBeats(rig.a, Numbered(kLongTrack), 120);
    rig.Load(kDeckB, std::vector<int>(2 * kLongTrack));
    if (otherPlays) rig.b.Play(), rig.RunMs(300);
    const std::size_t at = rig.Heard().size();
    ASSERT_TRUE(rig.a.CuePlay(5 * kBeat));
    EXPECT_TRUE(rig.a.IsPlaying());
    rig.RunMs(500);
    const auto left = rig.Heard();
    const auto first = std::find_if(left.begin() + std::ptrdiff_t(at), left.end(), [](int s) { return s != 0; });
    EXPECT_LE(std::size_t(first - left.begin()), at + kReach);
    const std::ptrdiff_t latency = left.end() - first;  // the cue's frame is the first heard
    EXPECT_NEAR(left.back(), 5 * kBeat + latency, kTolerance);
  }
}

TEST(DeckScratch, APlayingDeckGoesOnFromTheHandAndAStoppedOneStaysThere) {
  for (const bool play : {true, false}) {
    MovesRig rig;
    rig.LoadBeats(rig.a, Numbered(kLongTrack), 120);
    rig.a.Seek(kDeckRate);
    if (play) rig.a.Play(), rig.RunMs(500);
    int hand = rig.a.GetPlayPosition();
    rig.console->CmScratchStart(rig.a, hand);
    for (int i = 0; i < 10; ++i) rig.RunMs(20), rig.console->CmScratchToPosition(rig.a, hand += 1500);
    rig.RunMs(100);
    rig.console->CmScratchEnd(rig.a);
    EXPECT_EQ(rig.a.IsPlaying(), play);
    EXPECT_FALSE(rig.a.IsScratching());
    const std::size_t at = rig.Heard().size();
    rig.RunMs(500);
    if (!play) {
      EXPECT_EQ(rig.a.GetPlayPosition(), hand);
      EXPECT_EQ(rig.Heard().size(), at);
      continue;
    }
    const auto left = rig.Heard();
    // What waited in the ring is the silence of the still hand; the track goes on behind it.
    EXPECT_LE(left[at + kReach], hand + int(kReach) + 1 + kEqualizerLoss);
    EXPECT_GE(left[at + kReach], hand + int(kReach) - 5 * 512);
    for (std::size_t i = at + kReach; i < left.size(); ++i)
      ASSERT_NEAR(left[i] - left[i - 1], 1, kEqualizerLoss) << i - at;
  }
}

TEST(DeckScratch, AWheelStopsAtBothEndsOfTheTrack) {
  MovesRig rig;
  rig.LoadBeats(rig.a, Numbered(kLongTrack), 120);
  rig.a.Seek(kDeckRate);
  rig.SetPitch(rig.a, 600);
  rig.console->CmStartMidiScratch(rig.a);
  for (const auto& [delta, position] : {std::pair{-1000, -1000}, {INT_MIN, INT_MIN}, {50, 50}, {INT_MAX, INT_MAX}}) {
    const int expected = delta == -1000    ? int(kDeckRate / 1.1) - 1000
                         : position < 0    ? 0
                         : position > 1000 ? rig.a.GetTrackEnd()
                                           : position;
    rig.console->CmMidiScratchToPosition(rig.a, delta);
    rig.RunMs(50);
    EXPECT_NEAR(rig.console->GetMidiScratchPosition(rig.a), expected, 1);
    EXPECT_EQ(rig.a.GetRawPosition(), rig.console->GetMidiScratchPosition(rig.a));
  }
  rig.console->CmScratchEnd(rig.a);
  EXPECT_EQ(rig.a.GetPlayPosition(), rig.a.GetTrackEnd());
}

TEST(Deck, TracksOfNoneOneAndAHundredFramesGoThroughEverything) {
  for (const int frames : {0, 1, 100})
    for (const bool beats : {false, true})
      for (const int slider : {500, 540}) {
        // A converter in a loop of one frame starts anew at every frame: too slow to wait for.
        if (frames == 1 && slider != 500) continue;
        SCOPED_TRACE(LText::Format("%d frames, beats %d, slider %d", frames, int(beats), slider));
        MovesRig rig;
        rig.LoadBeats(rig.a, Numbered(frames), beats ? 120 : 0);
        rig.LoadBeats(rig.b, Tone(441, 1000, kLongTrack), 120);
        rig.b.Play();
        rig.SetPitch(rig.a, slider);
        const std::function<void()> moves[] = {
            [&] { rig.a.Play(); },
            [&] { rig.console->CmDeckSetCuePoint(rig.a, 0); },
            [&] { rig.a.CuePlay(50); },
            [&] { rig.console->CmDeckLoopTrack(rig.a); },
            [&] { rig.a.Play(); },
            [&] { rig.SetPitch(rig.a, 1000 - slider); },
            [&] { rig.console->CmDeckCuePause(rig.a, 0); },
            [&] { rig.console->CmDeckRemoveCueBeatLoop(rig.a); },
            [&] { rig.a.Play(), rig.a.SetBeatLoop(4); },
            [&] { rig.console->CtlDeckSync(rig.a), rig.console->CtlDeckSync(rig.b); },
            [&] { rig.a.Cues().SetLoopLength(0, 0), rig.console->CmDeckApplyCueBeatLoop(rig.a, 0); },
            [&] { rig.a.CuePlay(0), rig.console->CmDeckPitchLock(rig.a, true); },
            [&] { rig.console->CmDeckNudgePitch(rig.a, 510); },
            [&] { rig.console->CmScratchStart(rig.a, 0), rig.console->CmScratchToPosition(rig.a, frames); },
            [&] { rig.console->CmScratchToPosition(rig.a, 0), rig.console->CmDeckSetPitch(rig.a, 490); },
            [&] { rig.console->CmScratchEnd(rig.a); },
            [&] { rig.console->CmSeek(frames, rig.a), rig.a.SetBeatLoop(0); },
            [&] { rig.console->CmStartMidiScratch(rig.a), rig.console->CmMidiScratchToPosition(rig.a, 300); },
            [&] { rig.console->CmScratchEnd(rig.a), rig.console->CmDeckUnsync(rig.a); },
            [&] { rig.console->CmDeckReset(rig.a); },
        };
        for (const auto& move : moves) {
          move();
          rig.RunMs(40);
          const TDeckLoop& loop = rig.a.GetLoop();
          EXPECT_TRUE(!loop.on || loop.length > 0) << &move - moves;
          EXPECT_LE(loop.End(), rig.a.GetTrackEnd()) << &move - moves;
          EXPECT_GE(rig.a.GetPlayPosition(), 0);
        }
        rig.console->CmDeckClear(rig.a);
        rig.RunMs(100);
        EXPECT_TRUE(rig.b.IsPlaying());
      }
}
