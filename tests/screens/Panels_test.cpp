#include <algorithm>
#include <functional>
#include <set>

#include "ScreenRig.h"
#include "audiofile/LWaveFile.h"
#include "control/TAVIID.h"
#include "screens/DJTheme.h"

namespace {

struct Panels : ScreenRig {
  Panels() { Layout(1056, 545); }
  void Layout(int width, int height) {
    const auto layout = DJWindowLayout::For(width, height);
    deckA.SetBounds(layout.deckA);
    deckB.SetBounds(layout.deckB);
    gui.SetBounds(layout.console);
    gui.CrossFader().SetBounds(layout.crossFader);
  }
  void Load(DJDeck& deck, const std::string& name, int seconds) {
    const std::string path = platform.TempPath(name);
    {
      LSoundSink sink = LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0);
      const std::vector<int> block(2 * 4410, 100000);
      for (int i = 0; i < 10 * seconds; ++i) sink.Write(block.data(), 4410);
    }
    deck.Load(path, LWaveFile::OpenSource(path), 0, 0);
  }
  static LPaintControl& Child(LWindow& parent, int id) { return dynamic_cast<LPaintControl&>(*parent.FindChild(id)); }
  static TDeckInfoWindow& Info(DJDeckGUI& panel) { return dynamic_cast<TDeckInfoWindow&>(Child(panel, 1100)); }

  DJConsole console;
  DJConsoleGUI gui{window, host};
  DJDeckGUI deckA{window, host, console.AddDeck(kDeckA)}, deckB{window, host, console.AddDeck(kDeckB)};
};

TEST_F(Panels, AnEmptyDeckSaysSoAndDoesNotOfferToPlay) {
  EXPECT_TRUE(LPaintRecorder(Info(deckA)).HasText("Kein Titel geladen"));
  EXPECT_FALSE(Child(deckA, idPlayPauseA).IsEnabled());
  EXPECT_TRUE(Child(deckA, idAddToDeckA).IsEnabled());
}

TEST_F(Panels, ALoadedDeckShowsTitleLengthAndTimes) {
  Load(*console.GetDeck(kDeckA), "Nachtfahrt.wav", 75);
  deckA.EvLoaded();
  deckA.EnableControls();
  EXPECT_TRUE(Child(deckA, idPlayPauseA).IsEnabled());
  TDeckInfoWindow& info = Info(deckA);
  EXPECT_TRUE(LPaintRecorder(info).HasText("Nachtfahrt"));
  EXPECT_TRUE(LPaintRecorder(info).HasText("0:01:15"));
  EXPECT_EQ(info.GetAccessibleValue(), "Nachtfahrt");
  info.SetDeckTime(61234);
  EXPECT_EQ(info.ElapsedText(), "+ 0:01:01.2");
  EXPECT_EQ(info.RemainingText(), "- 0:00:13.8");
  const int redraws = toolkit.RedrawCount(info);
  info.SetDeckTime(61235);  // the same tenth, the same pixel
  EXPECT_EQ(toolkit.RedrawCount(info), redraws);
  EXPECT_TRUE(LPaintRecorder(info).Find(DJTheme::kRed).empty());
  deckA.CmDeckPlay();  // the last half minute runs
  EXPECT_EQ(LPaintRecorder(info).Find(DJTheme::kRed).size(), 1u);
  deckA.EvCleared();
  EXPECT_TRUE(LPaintRecorder(info).HasText("Kein Titel geladen"));
}

TEST_F(Panels, APressOnThePlaceBarSeeksThere) {
  Load(*console.GetDeck(kDeckA), "a.wav", 60);
  deckA.EvLoaded();
  TDeckInfoWindow& info = Info(deckA);
  const LRect bar = info.PlaceBar();
  Press(info, {bar.x + bar.width / 2, bar.y + 5});
  Drag(info, {bar.Right(), bar.y + 5});
  Drag(info, {bar.x, 0});  // far from the bar: ignored
  Release(info, {bar.x, 0});
  Press(info, {bar.x + 3, bar.y - 20});
  Release(info, {bar.x + 3, bar.y - 20});
  ASSERT_EQ(host.seeks.size(), 2u);
  EXPECT_NEAR(host.seeks[0], 30 * kDeckRate, 0.5 * kDeckRate);
  EXPECT_EQ(host.seeks[1], 60 * kDeckRate);
}

TEST_F(Panels, TheButtonsSendTheCommandsOfTheirDeck) {
  Load(*console.GetDeck(kDeckB), "b.wav", 1);
  deckB.EvLoaded();
  deckB.EnableControls();
  for (const int id : {idAddToDeckB, idJumpToStartB, idPlayPauseB, idHeadphonesB}) Click(Child(deckB, id));
  for (const int id : {idRecord, idSafeLive, idMicrophone}) Click(Child(gui, id));
  EXPECT_EQ(host.commands, (std::vector<int>{idAddToDeckB, idJumpToStartB, idPlayPauseB, idHeadphonesB, idRecord,
                                             idSafeLive, idMicrophone}));
  gui.MasterSlider().SetLevel(-3);
  deckB.VolumeSlider().SetLevel(-5);
  EXPECT_EQ(host.masters, std::vector<int>{-3});
  EXPECT_EQ(host.volumes, std::vector<int>{-5});
}

TEST_F(Panels, AFileDroppedOnAPartOfADeckGoesToThatDeck) {
  LDroppedFileData files;
  files.paths = {"/music/x.wav"};
  EXPECT_TRUE(Info(deckB).EvDropFiles(files));
  EXPECT_EQ(host.drops, std::vector<std::string>{"B/music/x.wav"});
}

TEST_F(Panels, TheRecordButtonCountsTheTime) {
  auto& record = dynamic_cast<LCoolButton&>(Child(gui, idRecord));
  gui.UIApplyRecordState(true);
  EXPECT_TRUE(record.IsOn());
  const struct {
    int atMs;
    const char* text;
  } kCases[] = {{0, "Aufnahme 0:00"}, {12500, "Aufnahme 0:12"}, {725500, "Aufnahme 12:05"}, {3725500, "1:02:05"}};
  int now = 0;
  for (const auto& c : kCases) {
    platform.clock.AdvanceUs(std::uint64_t(c.atMs - now) * 1000);
    now = c.atMs;
    platform.loop.DispatchPending();
    EXPECT_EQ(record.GetCaption(), c.text);
    EXPECT_GE(record.Width(), record.BestWidth());
  }
  gui.UIApplyRecordState(false);
  Run(2000);
  EXPECT_EQ(record.GetCaption(), "Aufnahme");
}

TEST_F(Panels, SafeLiveFlashesSixSecondsAndIsAsItWas) {
  auto& button = dynamic_cast<LCoolButton&>(Child(gui, idSafeLive));
  gui.CmSetSafeMode(true);
  gui.CmShowSafeModeBubbleTip();
  gui.CmShowSafeModeBubbleTip();  // while it flashes: no second bubble
  int changes = 0;
  bool on = button.IsOn();
  for (int i = 0; i < 70; ++i) {
    Run(100);
    if (button.IsOn() != on) ++changes, on = !on;
  }
  EXPECT_GE(changes, 10);
  EXPECT_TRUE(button.IsOn());
  EXPECT_EQ(std::count_if(toolkit.Log().begin(), toolkit.Log().end(),
                          [](const std::string& line) { return line.starts_with("Bubble: Abgesicherter"); }),
            1);
}

void CheckPlaces(LWindow& parent, const LRect& box) {
  const auto& children = parent.Children();
  for (std::size_t i = 0; i < children.size(); ++i) {
    const LRect bounds = children[i]->Bounds();
    EXPECT_FALSE(bounds.IsEmpty()) << children[i]->GetAccessibleName();
    EXPECT_EQ(bounds.Intersected(box), bounds) << children[i]->GetAccessibleName() << " stands outside";
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_TRUE(bounds.Intersected(children[k]->Bounds()).IsEmpty())
          << children[i]->GetAccessibleName() << " overlaps " << children[k]->GetAccessibleName();
    CheckPlaces(*children[i], {0, 0, bounds.width, bounds.height});
  }
}

TEST_F(Panels, NothingOverlapsOrStandsOutsideAtAnySize) {
  // The content area is the window less menu bar and status line.
  for (const auto& [width, height] : {std::pair{936, 511}, {1056, 545}, {1920, 1030}, {2560, 1390}}) {
    SCOPED_TRACE(width);
    Layout(width, height);
    CheckPlaces(window, {0, 0, width, height});
  }
}

TEST_F(Panels, EveryControlHasANameARoleAndATip) {
  std::set<std::string> names;
  const std::function<void(LWindow&)> check = [&](LWindow& parent) {
    for (LWindow* child : parent.Children()) {
      EXPECT_FALSE(child->GetAccessibleName().empty()) << child->Id();
      EXPECT_TRUE(child->Parent() != &gui || names.insert(child->GetAccessibleName()).second)
          << child->GetAccessibleName();
      const auto role = dynamic_cast<LPaintControl&>(*child).GetAccessibleRole();
      EXPECT_EQ(role == LAccessibleRole::Panel, !child->Children().empty()) << child->GetAccessibleName();
      const bool acts = role == LAccessibleRole::Button || role == LAccessibleRole::Slider;
      EXPECT_TRUE(!acts || !child->GetToolTip().empty()) << child->GetAccessibleName();
      check(*child);
    }
  };
  check(window);
}

TEST_F(Panels, TheTextsOfTheControlsFitInTheSmallestWindow) {
  Layout(936, 511);
  Load(*console.GetDeck(kDeckA), "x.wav", 1);
  deckA.EvLoaded();
  const std::function<void(LWindow&)> check = [&](LWindow& parent) {
    for (LWindow* child : parent.Children()) {
      auto* button = dynamic_cast<LCoolButton*>(child);
      EXPECT_TRUE(!button || button->Width() >= button->BestWidth()) << child->GetAccessibleName();
      auto& control = dynamic_cast<LPaintControl&>(*child);
      const LRect inside{0, 0, control.Width(), control.Height()};
      const LPaintRecorder painted(control);
      EXPECT_TRUE(painted.IsBalanced());
      for (const auto& op : painted.Find(LPaintRecorder::Text))
        EXPECT_EQ(op.box.Intersected(inside), op.box) << op.text;
      check(*child);
    }
  };
  check(window);
}

}  // namespace
