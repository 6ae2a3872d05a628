#include "shell/TScript.h"

#include <gtest/gtest.h>

#include "shell/TCommandLine.h"
#include "shell/TFreestDeck.h"
#include "shell/TSafeLive.h"

namespace {

TEST(TScript, RefusesTheFirstWrongLineByItsNumber) {
  const struct {
    const char* text;
    const char* says;
  } kCases[] = {
      {"x load A a.wav", "Zeile 1: \"x\" ist keine Zeit"},
      {"# fine\n\n0 load C a.wav", "Zeile 3: \"C a.wav\" ist kein gültiges Argument"},
      {"0 load A", "Zeile 1"},
      {"-1 quit", "keine Zeit"},
      {"nan quit", "keine Zeit"},
      {"0 crossfade 101", "Zeile 1"},
      {"0 crossfade fifty", "Zeile 1"},
      {"0 command No Such Thing", "Zeile 1"},
      {"0 command 12", "Zeile 1"},
      {"0 volume C -3", "Zeile 1"},
      {"0 volume master 200", "Zeile 1"},
      {"0 midi 144 1 2", "Das Kommando \"midi\" ist nicht bekannt"},
      {"0 eq A 6 50", "Zeile 1"},
      {"0 eq A 1 101", "Zeile 1"},
      {"0 effect add Nonsense", "Zeile 1"},
      {"0 effect add 12", "Zeile 1"},
      {"0 effect apply master 1 A on", "Zeile 1"},
      {"0 effect set 0 1 5", "Zeile 1"},
      {"0 effect save", "Zeile 1"},
      {"0 pitch A 1001", "Zeile 1"},
      {"0 pitch 500", "Zeile 1"},
      {"0 loop A -2", "Zeile 1"},
      {"0 bpm A 120", "Zeile 1"},
      {"0 bpm A 120 -1", "Zeile 1"},
      {"0 scratch A start", "Zeile 1"},
      {"0 command Cue Point 9 A", "Zeile 1"},
      {"0 quit now", "Zeile 1"},
  };
  for (const auto& c : kCases) {
    std::string error;
    EXPECT_TRUE(TScript::Parse(c.text, error).events.empty()) << c.text;
    EXPECT_NE(error.find(c.says), std::string::npos) << c.text << ": " << error;
  }
}

TEST(TScript, SortsByTimeAndKeepsNamesWithBlanksWhole) {
  std::string error;
  const TScript script =
      TScript::Parse("5 quit\r\n1.5 load b  /music/Zwei Namen, ein Lied.wav \r\n1.5 volume phones -6\n", error);
  ASSERT_EQ(error, "");
  ASSERT_EQ(script.events.size(), 3u);
  EXPECT_EQ(script.events[0].path, "/music/Zwei Namen, ein Lied.wav");
  EXPECT_EQ(script.events[0].deck, kDeckB);
  EXPECT_EQ(script.events[1].target, 1);
  EXPECT_EQ(script.events[2].verb, TScriptEvent::Quit);
}

TEST(TCommandLine, ReadsOptionsAndRefusesWrongUsage) {
  std::string error;
  const TStartOptions options = TCommandLine::Parse(
      {"--offline", "--script", "s.txt", "--record", "Mix.WAV", "--duration", "12.5", "a.wav"}, error);
  EXPECT_EQ(error, "");
  EXPECT_TRUE(options.offline && options.headless);
  EXPECT_EQ(*options.durationSeconds, 12.5);
  EXPECT_EQ(options.tracks, std::vector<std::string>{"a.wav"});
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"--nonsense"},
                                             {"--record"},
                                             {"--record", "mix.mp4"},
                                             {"--duration", "soon"},
                                             {"--duration", "-1"},
                                             {"--offline"},
                                             {"a", "b", "c"},
                                             {"--demo", "a.wav"},
                                             {"--headless", "--screenshot", "x.png"}}) {
    TCommandLine::Parse(wrong, error);
    EXPECT_NE(error, "") << wrong.front();
  }
}

TEST(FindFreestDeck, FollowsItsOrder) {
  TFreestDeckInput input;
  EXPECT_EQ(FindFreestDeck(input), kDeckA);
  input.deck[0].converting = true;
  EXPECT_EQ(FindFreestDeck(input), kDeckB);
  input.deck[0].loaded = input.deck[1].loaded = true;
  EXPECT_EQ(FindFreestDeck(input), kDeckB);  // neither played: they alternate
  input.lastLoaded = kDeckB;
  EXPECT_EQ(FindFreestDeck(input), kDeckA);
  input.lastLoaded = kDeckA;
  input.deck[1].playedSinceLoad = true;
  EXPECT_EQ(FindFreestDeck(input), kDeckB);
  input.deck[1].playing = true;
  EXPECT_EQ(FindFreestDeck(input), kDeckA);
  input.deck[0].playing = true;
  for (const auto& [crossFade, deck] : {std::pair{0, kDeckB}, {50, kNoDeck}, {99, kNoDeck}, {100, kDeckA}}) {
    input.crossFade = crossFade;
    EXPECT_EQ(FindFreestDeck(input), deck) << crossFade;
  }
}

struct FakeView final : TSafeLiveView {
  bool playing[2] = {};
  int crossFade = 50;
  bool IsDeckPlaying(DJDeckPosition deck) const override { return playing[deck]; }
  bool IsMainPlayerRunning() const override { return playing[0] || playing[1]; }
  int GetCrossFadePosition() const override { return crossFade; }
};

TEST(TSafeLive, TheThreeTests) {
  FakeView view;
  TSafeLive safe(view);
  EXPECT_TRUE(safe.AllowsPlayPause(kDeckA));
  safe.Toggle();
  EXPECT_TRUE(safe.AllowsPlayPause(kDeckA) && safe.AllowsCrossFade(100) && safe.AllowsProgramAction());
  view.playing[kDeckA] = true;
  EXPECT_FALSE(safe.AllowsPlayPause(kDeckA) || safe.AllowsPlayPause(kDeckB) || safe.AllowsDeckAction(kDeckA));
  EXPECT_TRUE(safe.AllowsDeckAction(kDeckB));
  EXPECT_FALSE(safe.AllowsCrossFade(51) || safe.AllowsCrossFade(50) || safe.AllowsProgramAction());
  EXPECT_TRUE(safe.AllowsCrossFade(49));
  view.crossFade = 100;
  EXPECT_TRUE(safe.AllowsPlayPause(kDeckA) && safe.AllowsDeckAction(kDeckA));
  view.playing[kDeckB] = true;
  EXPECT_TRUE(safe.AllowsCrossFade(0));
}

}  // namespace
