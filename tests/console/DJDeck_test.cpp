#include "console/DJDeck.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "foundation/TSettings.h"
#include "support/EngineData.h"

namespace {

TEST(DJDeck, PositionsBeatsAndLevelRingEqualTheIndependentData) {
  const EngineCase& real = Engine::Case("deck/real_position");
  const auto rows = real.In("rows");
  for (std::size_t i = 0; i < rows.size() / 5; ++i) {
    const int* row = rows.data() + 5 * i;
    EXPECT_EQ(DJDeck::RealPosition(row[3], row[4], row[0] != 0, row[1], row[2]), real.Out("position")[i]) << i;
  }

  ConsoleRig rig;
  const EngineCase& beats = Engine::Case("deck/set_bpm");
  const auto bpm = beats.In<double>("bpm");
  for (std::size_t i = 0; i < bpm.size(); ++i) {
    DJDeck& deck = rig.Deck(kDeckA);
    deck.Load("memory", LSoundSource(lseNoSource), 0, 9);
    deck.SetBPM(bpm[i], 1234);
    EXPECT_EQ(deck.GetBeatInterval(), beats.Out("result")[2 * i]) << bpm[i];
    EXPECT_EQ(deck.GetBeatOffset(), beats.Out("result")[2 * i + 1]) << bpm[i];
  }

  constexpr int kBlocks = 300, kFrames = 512;  // block k is the noise, k % 13 bits lower
  const EngineCase& ring = Engine::Case("deck/level_ring");
  auto samples = ring.In("source");
  samples.resize(std::size_t(kBlocks * kFrames * 2));
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] >>= (i / (kFrames * 2)) % 13;
  DJDeckSourceBaseInfo info;
  info.SetVolume(ring.Int("volume"));
  LSoundSource source =
      LSoundSource::Make<DJDeckSourceBase>(LSoundSource(new TestSource(samples, kDeckRate, 2)), &info);
  EXPECT_EQ(info.GetLevelsFromSoundTime(0).levels[0].Get(), -127);  // empty
  std::vector<int> through;
  for (int block = 0; block < kBlocks; ++block) ReadInto(through, source, kFrames);
  EXPECT_EQ(through, samples);
  const auto queries = ring.In("query"), levels = ring.Out("levels");
  for (std::size_t i = 0; i < queries.size(); ++i)
    for (const std::size_t channel : {0, 1})
      EXPECT_EQ(info.GetLevelsFromSoundTime(queries[i]).levels[channel].Get(), levels[2 * i + channel]) << queries[i];
}

TEST(DJDeck, LevelsAreShownBetweenTheMetersEnds) {
  DJDeckSourceBaseInfo info;
  const struct {
    int volume, left, right, shownLeft, shownRight;
  } kCases[] = {{0, -20, -47, -20, -47}, {10, 3, -20, 0, -10}, {-30, -20, -10, -48, -40}, {-127, 3, -127, -48, -48}};
  for (const auto& c : kCases) {
    info.Clear();
    info.SetVolume(c.volume);
    info.AddLevels(100, 110, c.left, c.right);
    EXPECT_EQ(info.GetLevelsFromSoundTime(105).levels[0].Get(), c.shownLeft);
    EXPECT_EQ(info.GetLevelsFromSoundTime(110).levels[1].Get(), c.shownRight);
    EXPECT_EQ(info.GetLevelsFromSoundTime(111).levels[0].Get(), 0);
  }
  info.SetVolume(0);
  info.SetScratching(true);
  info.AddLevels(200, 210, -5, -6);
  info.AddLevels(200, 230, -9, -9);  // the same place again under the needle
  const LLevels scratch = info.GetScratchLevel();
  EXPECT_EQ(scratch.levels[0].Get(), -5);
  EXPECT_EQ(scratch.levels[1].Get(), -6);
  EXPECT_EQ(info.GetScratchLevel().levels[0].Get(), -127);
}

// The deck panel's place: hears everything, may refuse.
struct Panel : DJDeckNotify {
  bool djntfPlay(DJDeck& deck) override {
    calls += 'p', states += char('0' + deck.GetState());
    return !refuses;
  }
  void djntfStop(DJDeck& deck) override { calls += 's', states += char('0' + deck.GetState()); }
  void djntfTime(LSoundTime& time, DJDeck&) override { lastTime = time; }
  void djntfBeats(DJDeck&) override { calls += 'b'; }
  bool refuses = false;
  std::string calls, states;
  LSoundTime lastTime = -1;
};

struct PanelRig : ConsoleRig {
  PanelRig() { deck.AddNotify(panel); }
  ~PanelRig() { console.reset(); }  // while the panel lives
  DJDeck& deck = Deck(kDeckA);
  Panel panel;
};

TEST(DJDeck, StatesAndRefusals) {
  PanelRig rig;
  EXPECT_FALSE(rig.deck.Play());  // empty
  rig.deck.Stop();
  EXPECT_EQ(rig.panel.calls, "");

  rig.Load(kDeckA, Tone(400, 100000, kDeckRate));
  EXPECT_EQ(rig.deck.GetState(), DJDeck::Stopped);
  ASSERT_TRUE(rig.deck.Play());
  EXPECT_EQ(rig.deck.GetState(), DJDeck::Playing);
  rig.RunMs(300);
  EXPECT_NEAR(rig.panel.lastTime, 300, 60);
  rig.deck.Stop();
  rig.deck.Stop();
  EXPECT_EQ(rig.panel.calls, "ps");
  EXPECT_EQ(rig.panel.states, "20");

  rig.panel.refuses = true;
  EXPECT_FALSE(rig.deck.Play());
  EXPECT_EQ(rig.deck.GetState(), DJDeck::Stopped);
  EXPECT_FALSE(rig.console->IsMainPlayerRunning());
  rig.panel.refuses = false;
  ASSERT_TRUE(rig.deck.Play());
  rig.RunMs(100);
  rig.console->CmDeckClear(rig.deck);
  EXPECT_EQ(rig.panel.calls, "pspsp");  // clearing is the panel's own doing
  EXPECT_FALSE(rig.console->IsMainPlayerRunning());
  EXPECT_FALSE(rig.deck.IsLoaded());

  rig.deck.Load("gone", LSoundSource(lseCannotOpen), 0, 0);
  rig.deck.Play();
  rig.RunMs(500);
  EXPECT_NE(rig.deck.GetState(), DJDeck::Playing);
}

TEST(DJDeck, UnloadLeavesNothing) {
  PanelRig rig;
  rig.Load(kDeckA, Tone(400, 100000, 5 * kDeckRate));
  rig.deck.SetBPM(128, 500);
  rig.deck.Seek(-3000);
  EXPECT_EQ(rig.deck.GetPlayPosition(), 0);
  rig.deck.Play();
  rig.RunMs(200);
  rig.deck.Unload();
  EXPECT_EQ(rig.panel.calls, "bps");
  EXPECT_EQ(rig.deck.GetState(), DJDeck::Stopped);
  EXPECT_EQ(rig.deck.GetPath(), "");
  EXPECT_EQ(rig.deck.GetBPM(), 0);
  EXPECT_EQ(rig.deck.GetBeatInterval() + rig.deck.GetBeatOffset(), 0);
  EXPECT_EQ(rig.deck.GetPlayPosition() + rig.deck.GetFirstSoundPosition() + rig.deck.GetEndSample(), 0);
  EXPECT_FALSE(rig.deck.Play());
  ASSERT_NO_FATAL_FAILURE(rig.RunMs(200));
}

TEST(DJDeck, SilenceDetectionStartsAtTheFirstSound) {
  constexpr int kSilence = 3 * kDeckRate;
  std::vector<int> track(std::size_t(2 * kSilence));
  const auto tone = Tone(400, 300000, kDeckRate);
  track.insert(track.end(), tone.begin(), tone.end());
  for (const bool on : {true, false}) {
    PanelRig rig;
    TSettings::kSilenceDetection.Set(on);
    rig.Load(kDeckA, track);
    EXPECT_NEAR(rig.deck.GetFirstSoundPosition(), on ? kSilence : 0, 2048);
    EXPECT_EQ(rig.deck.GetPlayPosition(), rig.deck.GetFirstSoundPosition());
    rig.deck.Seek(0);
    rig.deck.Play();
    rig.RunMs(200);
    EXPECT_EQ(Rms(rig.Heard(), 4000, 4000) > 100000, on);
    TSettings::kSilenceDetection.Set(false);
    rig.deck.ResetFirstSoundPosition();
    EXPECT_EQ(rig.deck.GetFirstSoundPosition(), 0);
  }
}

}  // namespace
