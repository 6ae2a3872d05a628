#include "shell/TDeckScratch.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "foundation/TSettings.h"
#include "support/LTestPlatform.h"

namespace {

using Log = std::vector<std::string>;

class FakeHost final : public TDeckScratchHost {
 public:
  Log Take() { return std::exchange(log, {}); }

  TScratchDeck LookAtDeck(DJDeckPosition deck) const override { return decks[deck]; }
  bool IsAutoPlayOn() const override { return autoPlay; }
  void ShowAutoPlayBubble() override { log.emplace_back("bubble"); }
  void CmScratchStart(DJDeckPosition deck, int frame) override { Note("start", deck, frame); }
  void CmStartMidiScratch(DJDeckPosition deck) override { Note("midi start", deck, midiFrame[deck]); }
  void CmScratchToPosition(DJDeckPosition deck, int frame) override { Note("to", deck, frame); }
  void CmMidiScratchToPosition(DJDeckPosition deck, int delta) override {
    Note("by", deck, delta);
    midiFrame[deck] += delta;
  }
  int GetMidiScratchPosition(DJDeckPosition deck) const override { return midiFrame[deck]; }
  void CmScratchEnd(DJDeckPosition deck) override { Note("end", deck, 0); }
  void CmDeckPitch(DJDeckPosition deck, int value) override { Note("pitch", deck, slider[deck] = value); }
  int GetPitchSlider(DJDeckPosition deck) const override { return slider[deck]; }
  double GetFramesPerPixel(DJDeckPosition) const override { return 400; }
  void ScratchStopLoop(DJDeckPosition deck) override { Note("loop off", deck, 0); }
  void ScratchResumeLoop(DJDeckPosition deck) override { Note("loop on", deck, 0); }
  void ShowDeckState(DJDeckPosition) override {}
  void ShowHand(DJDeckPosition deck, int frame) override { shown[deck] = frame; }
  void ShowHandOnDetail(DJDeckPosition deck, int frame) override { detail[deck] = frame; }

  TScratchDeck decks[kDeckCount] = {{true, false, true, 1.0, 100000}, {true, false, true, 1.0, 100000}};
  bool autoPlay = false;
  int slider[kDeckCount] = {500, 500}, midiFrame[kDeckCount] = {5000, 6000};
  int shown[kDeckCount] = {-1, -1}, detail[kDeckCount] = {-1, -1};

 private:
  void Note(const std::string& what, DJDeckPosition deck, int value) {
    log.push_back(what + " " + DeckLetter(deck) + " " + std::to_string(value));
  }
  Log log;
};

class DeckScratch : public testing::Test {
 protected:
  void RunLoop() { platform.RunMs(20); }
  LTestPlatform machine;
  LOfflineRun& platform = machine.run;
  FakeHost host;
  TDeckScratch hand{host};
};

const Log kNothing;

}  // namespace

TEST_F(DeckScratch, MouseMovesWithinTheTrack) {
  hand.CmDeckBeginScratch(kDeckA, -5);
  EXPECT_EQ(host.Take(), (Log{"start A 0", "loop off A 0"}));
  for (const auto& [asked, moved] : {std::pair{200, 200}, {INT_MIN, 0}, {INT_MAX, 100000}}) {
    hand.CmDeckScratch(kDeckA, asked);
    EXPECT_EQ(host.Take(), Log{"to A " + std::to_string(moved)});
    EXPECT_EQ(host.shown[kDeckA], moved);
  }
  EXPECT_EQ(host.detail[kDeckA], -1);
  hand.CmDeckEndScratch(kDeckA);
  EXPECT_EQ(host.Take(), (Log{"end A 0", "loop on A 0"}));
  hand.CmDeckScratch(kDeckA, 300);
  hand.CmDeckEndScratch(kDeckA);
  hand.CmDeckBeginScratch(kNoDeck, 0);
  EXPECT_EQ(host.Take(), kNothing);
}

TEST_F(DeckScratch, WithoutVinylModeAPlayingDeckIsBentAndReturns) {
  host.decks[kDeckA].playing = true;
  host.decks[kDeckA].vinylMode = false;
  host.slider[kDeckA] = 480;
  hand.CmDeckBeginScratch(kDeckA, 7000);
  hand.CmDeckScratch(kDeckA, 3);
  hand.CmDeckScratch(kDeckA, -5);
  hand.CmDeckScratch(kDeckA, INT_MAX);
  host.decks[kDeckA].vinylMode = true;  // what the hand began it ends
  hand.CmDeckEndScratch(kDeckA);
  EXPECT_EQ(host.Take(), (Log{"pitch A 510", "pitch A 430", "pitch A 1000", "pitch A 480"}));

  host.decks[kDeckA].vinylMode = false;
  hand.DeckMidiDragWave(kDeckA, 66);
  hand.DeckMidiDragWave(kDeckA, 63);
  RunLoop();
  hand.CmDeckMidiStopScratch(kDeckA);
  EXPECT_EQ(host.Take(), (Log{"pitch A 580", "pitch A 430", "pitch A 480"}));

  host.decks[kDeckA].vinylMode = true;
  hand.CmDeckBeginScratch(kDeckA, 7000);
  EXPECT_EQ(host.Take(), (Log{"start A 7000", "loop off A 0"}));
}

TEST_F(DeckScratch, JogEventsOfOneRunAreOneMove) {
  host.decks[kDeckB].pitch = 1.08;
  for (const int value : {65, 68, 62}) hand.DeckMidiDragWave(kDeckA, value);
  hand.DeckMidiDragWave(kDeckB, 65);
  EXPECT_TRUE(hand.IsMidiScratching(kDeckA));
  EXPECT_EQ(host.Take(), (Log{"midi start A 5000", "loop off A 0", "midi start B 6000", "loop off B 0"}));
  RunLoop();
  EXPECT_EQ(host.Take(), (Log{"by A 1200", "by B 432"}));
  EXPECT_EQ(host.shown[kDeckA], 6200);
  EXPECT_EQ(host.detail[kDeckB], 6432);
  RunLoop();
  EXPECT_EQ(host.Take(), kNothing);
  hand.DeckMidiDragWave(kDeckA, 60);
  hand.CmDeckMidiStopScratch(kDeckA);  // in the same run: the last turn still counts
  EXPECT_EQ(host.Take(), (Log{"by A -1600", "end A 0", "loop on A 0"}));
  RunLoop();
  EXPECT_EQ(host.Take(), kNothing);
  EXPECT_FALSE(hand.IsMidiScratching(kDeckA));
}

TEST_F(DeckScratch, ReadsTheWheelAsItsSettingsSay) {
  struct Row {
    const char *config, *magnitude, *invert;
    int value, delta;
  };
  const Row rows[] = {
      {"", "", "", 64, 0},     {"0", "", "0", 127, 63}, {"0", "3", "", 0, -192},  {"1", "", "", 1, 1},
      {"1", "", "", 63, 63},   {"1", "", "", 64, -64},  {"1", "2", "", 127, -2},  {"1", "5", "1", 127, 5},
      {"2", "5", "1", 100, 0}, {"0", "", "1", 65, -1},  {"0", "", "", 40000, 63}, {"1", "", "", -7, 0},
  };
  for (const Row& row : rows) {
    const std::pair<const char*, const char*> settings[] = {{"MidiJogWheelConfig", row.config},
                                                            {"MidiJogWheelMagnitude", row.magnitude},
                                                            {"MidInvertJogWheelDirection", row.invert}};
    for (const auto& [key, value] : settings)
      if (*value)
        LUserSettingSetString("Settings", key, value);
      else
        LUserSettingDeleteItem("Settings", key);
    EXPECT_EQ(TDeckScratch::JogDelta(row.value), row.delta) << row.config << " " << row.value;
  }
}

TEST_F(DeckScratch, LatchedModeEndsWithTheLatch) {
  hand.CmMidiToggleScratchMode(kDeckA);
  EXPECT_TRUE(hand.IsMidiScratchMode(kDeckA));
  EXPECT_EQ(host.Take(), (Log{"midi start A 5000", "loop off A 0"}));
  hand.DeckMidiDragWave(kDeckA, 65);
  RunLoop();
  hand.CmDeckMidiStopScratch(kDeckA);  // the wheel has been let go: the latch holds
  EXPECT_EQ(host.Take(), Log{"by A 400"});
  hand.CmMidiToggleScratchMode(kDeckA);
  EXPECT_EQ(host.Take(), (Log{"end A 0", "loop on A 0"}));

  hand.CmMidiToggleScratchMode(kDeckA);
  hand.DeckMidiDragWave(kDeckA, 65);
  RunLoop();
  host.Take();
  hand.CmMidiToggleScratchMode(kDeckA);  // the wheel is still turned: its stop ends the scratch
  EXPECT_EQ(host.Take(), kNothing);
  hand.CmDeckMidiToggleScratch(kDeckA);
  EXPECT_EQ(host.Take(), (Log{"end A 0", "loop on A 0"}));
  hand.CmDeckMidiToggleScratch(kDeckA);
  EXPECT_TRUE(hand.IsMidiScratching(kDeckA));
  hand.CmMidiToggleScratchMode(kDeckA);
  hand.CmMidiToggleScratchMode(kDeckA);  // turns of an earlier scratch do not keep this one
  EXPECT_FALSE(hand.IsMidiScratching(kDeckA));
}

TEST_F(DeckScratch, AutoPlayAndEmptyDecksAreNotMoved) {
  host.autoPlay = true;
  hand.CmDeckBeginScratch(kDeckA, 5);
  hand.CmDeckScratch(kDeckA, 9);
  hand.CmDeckEndScratch(kDeckA);
  EXPECT_EQ(host.Take(), Log{"bubble"});
  hand.DeckMidiDragWave(kDeckA, 70);
  RunLoop();
  EXPECT_EQ(host.Take(), Log{"bubble"});
  EXPECT_FALSE(hand.IsMidiScratching(kDeckA));
  host.autoPlay = false;
  host.decks[kDeckB].loaded = false;
  hand.CmDeckBeginScratch(kDeckB, 5);
  hand.DeckMidiDragWave(kDeckB, 70);
  RunLoop();
  EXPECT_EQ(host.Take(), kNothing);
}

TEST_F(DeckScratch, OneHandTakesOverFromTheOther) {
  hand.CmDeckBeginScratch(kDeckA, 5);
  host.Take();
  hand.DeckMidiDragWave(kDeckA, 70);
  EXPECT_EQ(host.Take(), (Log{"end A 0", "loop on A 0", "midi start A 5000", "loop off A 0"}));
  hand.CmDeckMidiBeginScratch(kDeckA);  // a second touch is the same hand
  EXPECT_EQ(host.Take(), kNothing);
}
