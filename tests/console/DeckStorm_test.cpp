// Whatever a DJ does in whatever order: ten thousand random operations on two decks that play most of the time, and what
// must hold after each of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>

#include "Rig.h"
#include "console/DJPitchLaw.h"
#include "foundation/LText.h"

namespace {

constexpr int kOperations = 10000;
constexpr int kSettledMs = 70;       // after two rounds of the timer every deck knows its audible position
constexpr int kLoopReachFrames = 2;  // a loop of the track's end may reach this far past what the converter makes of it

struct Track {
  double bpm;
  int frames, offset;
};
constexpr Track kTracks[] = {{120, 12 * kDeckRate, 0},        {126, 15 * kDeckRate, 17000},
                             {91.3, 9 * kDeckRate + 17, 777}, {174.2, 14 * kDeckRate, 131072},
                             {0, 10 * kDeckRate, 0},          {75, 13 * kDeckRate, 44099}};

// A tone, twice as loud at the start of each beat.
std::vector<int> Music(const Track& track) {
  std::vector<int> samples = Tone(180 + track.bpm, 150000, track.frames);
  const double beat = track.bpm > 1 ? 60 * kDeckRate / track.bpm : kDeckRate;
  for (double at = track.offset; at + 2000 < track.frames; at += beat)
    for (std::size_t i = 2 * std::size_t(at); i < 2 * (std::size_t(at) + 2000); ++i) samples[i] *= 2;
  return samples;
}

struct Storm : ConsoleRig {
  Storm() {
    for (const Track& track : kTracks) music.push_back(Music(track));
    for (const DJDeckPosition deck : {kDeckA, kDeckB}) LoadAny(Deck(deck));
  }
  ~Storm() { console.reset(); }

  int Below(int limit) { return int(random() % unsigned(limit)); }
  int Between(int low, int high) { return low + Below(high - low + 1); }
  // Seldom so near the end that a loop is cut to a few frames: a stretched one then starts anew thousands of times a
  // second.
  int AnyFrame(const DJDeck& deck) {
    const int end = std::max(deck.GetTrackEnd(), 0);
    return Below((Below(5000) == 0 ? end : end / 8 * 7) + 1);
  }
  int AnySlot() { return Between(-1, kCuePoints); }
  double AnyBeats() { return Below(10) == 0 ? kWholeTrack : arLoopLengths[std::size_t(Below(kLoopLengths))]; }
  void LoadAny(DJDeck& deck) {
    const auto which = std::size_t(Below(int(std::size(kTracks))));
    Load(deck.GetPosition(), music[which]);
    deck.SetBPM(kTracks[which].bpm, kTracks[which].offset);
  }

  std::mt19937 random{20260};
  std::vector<std::vector<int>> music;
  int passedMs = 0;  // with the latest operation
};

void LetTimePass(Storm& s, DJDeck&) { s.RunMs(s.passedMs = s.Below(201) * s.Below(201) / 200); }

void ClearAndLoad(Storm& s, DJDeck& deck) {
  s.console->CmDeckClear(deck);
  EXPECT_FALSE(deck.IsLoaded() || deck.GetLoop().on || deck.IsScratching() || deck.IsPlaying());
  EXPECT_EQ(deck.GetLoop().length + deck.GetBeatInterval() + deck.GetBeatOffset() + deck.GetPlayPosition(), 0);
  EXPECT_EQ(deck.GetBPM(), 0);
  for (int slot = 0; slot < kCuePoints; ++slot) {
    EXPECT_EQ(deck.GetCuePosition(slot), kNoCue);
    EXPECT_EQ(deck.Cues().LoopLength(slot), kNoLoopLength);
  }
  if (s.Below(8) != 0) s.LoadAny(deck);
}

struct Operation {
  const char* name;
  int weight;
  void (*run)(Storm&, DJDeck&);
};
// The guards are those of the operations' only callers, the commands.
constexpr Operation kTable[] = {
    {"time", 12, LetTimePass},
    {"load", 1,
     [](Storm& s, DJDeck& d) {
       if (!d.IsLoaded()) s.LoadAny(d);
     }},
    {"clear and load", 1, ClearAndLoad},
    {"play", 14,
     [](Storm&, DJDeck& d) {
       if (!d.IsPlaying()) d.Play();
     }},
    {"stop", 2, [](Storm&, DJDeck& d) { d.Stop(); }},
    {"seek", 4,
     [](Storm& s, DJDeck& d) {
       if (!d.IsScratching()) s.console->CmSeek(s.AnyFrame(d), d);
     }},
    {"volume", 3, [](Storm& s, DJDeck& d) { d.SetVolume(s.Between(-127, 12)); }},
    {"crossfader", 3, [](Storm& s, DJDeck&) { s.console->SetCrossFadePosition(s.Between(-20, 120)); }},
    {"master volume", 2, [](Storm& s, DJDeck&) { s.console->SetVolume(s.Between(-60, 12), s.Between(-60, 12)); }},
    {"headphone", 1, [](Storm&, DJDeck& d) { d.SetHeadphoneMode(!d.IsHeadphoneOn()); }},
    {"set cue", 5, [](Storm& s, DJDeck& d) { s.console->CmDeckSetCuePoint(d, s.AnySlot()); }},
    {"set cue at", 3, [](Storm& s, DJDeck& d) { d.SetCuePointAtIndex(s.AnySlot(), s.AnyFrame(d)); }},
    {"clear cue", 1, [](Storm& s, DJDeck& d) { d.Cues().Clear(s.AnySlot()); }},
    {"cue play", 6,
     [](Storm& s, DJDeck& d) {
       const int cue = d.GetCuePosition(s.AnySlot());
       if (cue != kNoCue) d.CuePlay(cue);
     }},
    {"cue pause", 2, [](Storm& s, DJDeck& d) { s.console->CmDeckCuePause(d, s.AnySlot()); }},
    {"slot length", 4, [](Storm& s, DJDeck& d) { d.Cues().SetLoopLength(s.AnySlot(), s.Between(-2, kLoopLengths)); }},
    {"apply slot", 5, [](Storm& s, DJDeck& d) { s.console->CmDeckApplyCueBeatLoop(d, s.AnySlot()); }},
    {"remove loop", 6, [](Storm& s, DJDeck& d) { s.console->CmDeckRemoveCueBeatLoop(d); }},
    {"loop track", 1, [](Storm& s, DJDeck& d) { s.console->CmDeckLoopTrack(d); }},
    {"beat loop", 4, [](Storm& s, DJDeck& d) { d.SetBeatLoop(s.AnyBeats()); }},
    {"end beat loop", 3, [](Storm&, DJDeck& d) { d.SetBeatLoop(0); }},
    {"loop from", 3, [](Storm& s, DJDeck& d) { d.SetBeatLoopWithStart(s.AnyBeats(), s.AnyFrame(d)); }},
    {"end loop from", 2, [](Storm& s, DJDeck& d) { d.SetBeatLoopWithStart(0, s.AnyFrame(d)); }},
    {"move loop", 2, [](Storm& s, DJDeck& d) { d.SetBeatLoopStart(s.AnyFrame(d)); }},
    {"pitch", 5,
     [](Storm& s, DJDeck& d) {
       s.console->CmDeckSetPitch(d, s.Below(2) == 0 ? kPitchSliderCentre : s.Between(-50, 1050));
     }},
    {"small pitch", 5,
     [](Storm& s, DJDeck& d) {
       s.console->CmDeckSetPitch(d, s.Below(2) == 0 ? kPitchSliderCentre : s.Between(460, 540));
     }},
    {"nudge", 4, [](Storm& s, DJDeck& d) { s.console->CmDeckNudgePitch(d, s.Between(0, 1000)); }},
    {"key lock", 3, [](Storm& s, DJDeck& d) { s.console->CmDeckPitchLock(d, s.Below(6) == 0); }},
    {"sync", 8, [](Storm& s, DJDeck& d) { s.console->CtlDeckSync(d); }},
    {"unsync", 3, [](Storm& s, DJDeck& d) { s.console->CmDeckUnsync(d); }},
    {"strict beats", 2, [](Storm&, DJDeck& d) { d.ToggleStrictBeats(); }},
    {"vinyl mode", 1, [](Storm&, DJDeck& d) { d.ToggleVinylMode(); }},
    {"scratch", 1,
     [](Storm& s, DJDeck& d) {
       if (d.IsLoaded() && !d.IsScratching()) s.console->CmScratchStart(d, s.AnyFrame(d));
     }},
    {"wheel scratch", 1,
     [](Storm& s, DJDeck& d) {
       if (d.IsLoaded() && !d.IsScratching()) s.console->CmStartMidiScratch(d);
     }},
    {"hand", 8,
     [](Storm& s, DJDeck& d) { s.console->CmScratchToPosition(d, d.GetRawPosition() + s.Between(-3000, 3000)); }},
    {"hand anywhere", 1, [](Storm& s, DJDeck& d) { s.console->CmScratchToPosition(d, s.AnyFrame(d) * 2 - 100000); }},
    {"wheel", 6, [](Storm& s, DJDeck& d) { s.console->CmMidiScratchToPosition(d, s.Between(-5000, 5000)); }},
    {"end scratch", 10, [](Storm& s, DJDeck& d) { s.console->CmScratchEnd(d); }},
    {"reset", 1, [](Storm& s, DJDeck& d) { s.console->CmDeckReset(d); }},
    {"bpm", 1,
     [](Storm& s, DJDeck& d) {
       if (d.IsLoaded()) d.SetBPM(s.Between(60, 180), s.Below(50000));
     }},
    {"no bpm", 1,
     [](Storm& s, DJDeck& d) {
       if (s.Below(4) == 0) d.SetBPM(0, 0);
     }},
};
static_assert(std::size(kTable) >= 30);

void CheckLoop(const Storm& s, const DJDeck& deck) {
  const TDeckLoop& loop = deck.GetLoop();
  EXPECT_TRUE(!loop.on || loop.length > 0);
  EXPECT_GE(loop.start, 0);
  EXPECT_GE(loop.length, 0);
  EXPECT_LE(loop.End(), deck.GetTrackEnd());
  if (!loop.on || !deck.IsPlaying() || deck.IsScratching()) return;
  for (const int position : {deck.GetChainPosition(), deck.GetRealPosition(s.console->GetLag(true))}) {
    EXPECT_GE(position, loop.start);
    EXPECT_LE(position, loop.End() + kLoopReachFrames);
  }
  if (s.passedMs < kSettledMs) return;
  EXPECT_GE(deck.GetPlayPosition(), loop.start);
  EXPECT_LE(deck.GetPlayPosition(), loop.End() + kLoopReachFrames);
}

void CheckSync(const Storm& s, const DJDeck& deck) {
  const DJDeck& other = *s.console->GetOtherDeck(deck.GetPosition());
  switch (deck.GetSyncState()) {
    case DJDeck::Free:
      EXPECT_EQ(other.GetSyncState(), DJDeck::Free);
      break;
    case DJDeck::Master:
      EXPECT_EQ(other.GetSyncState(), DJDeck::Slave);
      EXPECT_EQ(other.GetMasterDeck(), deck.GetPosition());
      break;
    case DJDeck::Slave:
      EXPECT_EQ(other.GetSyncState(), DJDeck::Master);
      EXPECT_EQ(deck.GetMasterDeck(), other.GetPosition());
      break;
  }
}

void CheckDeck(const Storm& s, const DJDeck& deck) {
  EXPECT_TRUE(IsPitchAllowed(deck.GetPitch())) << deck.GetPitch();
  EXPECT_GE(deck.GetPlayPosition(), 0);
  EXPECT_TRUE(deck.GetState() == DJDeck::Playing || deck.GetState() == DJDeck::Stopped);
  EXPECT_TRUE(deck.IsLoaded() || !deck.IsPlaying());
  for (int slot = 0; slot < kCuePoints; ++slot) {
    const int cue = deck.GetCuePosition(slot);
    EXPECT_TRUE(cue == kNoCue || (cue >= 0 && cue <= deck.GetTrackEnd())) << cue << " of " << deck.GetTrackEnd();
  }
  CheckLoop(s, deck);
  CheckSync(s, deck);
}

void CheckConsole(Storm& s) {
  EXPECT_EQ(s.console->IsMainPlayerRunning(), s.console->IsAnyDeckPlaying());
  EXPECT_GE(s.console->GetCrossFadePosition(), 0);
  EXPECT_LE(s.console->GetCrossFadePosition(), 100);
  const int loudest = std::accumulate(s.heard.begin(), s.heard.end(), 0,
                                      [](int most, int v) { return std::max(most, std::abs(v >> 12)); });
  EXPECT_LE(loudest, kPeak16 + 1);
  s.heard.clear();
}

// How often the decks were in which state: a storm that never loops or syncs proves nothing.
struct Weather {
  void Note(const DJDeck& deck) {
    playing += int(deck.IsPlaying());
    looping += int(deck.IsPlaying() && deck.GetLoop().on);
    scratching += int(deck.IsScratching());
    following += int(deck.IsPlaying() && deck.GetSyncState() == DJDeck::Slave);
    keyLocked += int(deck.IsPlaying() && deck.IsKeyLocked());
  }
  int playing = 0, looping = 0, scratching = 0, following = 0, keyLocked = 0;  // of twice the operations
};

}  // namespace

TEST(DeckStorm, TenThousandOperationsLeaveEveryInvariantWhole) {
  std::vector<const Operation*> drawn;
  for (const Operation& operation : kTable) drawn.insert(drawn.end(), std::size_t(operation.weight), &operation);
  Storm s;
  std::vector<std::string> latest;
  Weather weather;
  for (int i = 0; i < kOperations; ++i) {
    const Operation& operation = *drawn[std::size_t(s.Below(int(drawn.size())))];
    DJDeck& deck = s.Deck(s.Below(2));
    latest.push_back(LText::Format("%d %s %c", i, operation.name, deck.GetLetter()));
    s.passedMs = 0;
    operation.run(s, deck);
    CheckDeck(s, s.Deck(kDeckA));
    CheckDeck(s, s.Deck(kDeckB));
    CheckConsole(s);
    for (const DJDeckPosition position : {kDeckA, kDeckB}) weather.Note(s.Deck(position));
    if (!HasFailure()) continue;
    for (std::size_t k = latest.size() > 12 ? latest.size() - 12 : 0; k < latest.size(); ++k)
      ADD_FAILURE() << latest[k];
    break;
  }
  EXPECT_GT(weather.playing, kOperations);
  EXPECT_GT(weather.looping, kOperations / 4);
  for (const int seldom : {weather.scratching, weather.following, weather.keyLocked})
    EXPECT_GT(seldom, kOperations / 20);
  RecordProperty("deck_states",
                 LText::Format("playing %d, looping %d, scratching %d, following %d, key locked %d", weather.playing,
                               weather.looping, weather.scratching, weather.following, weather.keyLocked));
}
