#include <cmath>

#include "ScreenRig.h"
#include "screens/DJTheme.h"

namespace {

using Controls = ScreenRig;

TEST_F(Controls, TheSliderFollowsTheThumbFromMutedToTheMaximum) {
  TDBEditSlider slider(window, 1, "Master");
  std::vector<int> told;
  slider.SetChanged([&](LLevel level) { told.push_back(level.Get()); });
  slider.SetBounds({0, 0, 124, 45});  // 108 px of way for 54 dB: two pixels a decibel, thumb of 0 dB at 96..111
  EXPECT_EQ(slider.GetLevel(), LLevel(0));
  Press(slider, {100, 30});  // 4 px into the thumb: nothing moves yet
  EXPECT_TRUE(told.empty());
  Drag(slider, {88, 30});
  Drag(slider, {500, 30});
  Drag(slider, {5, 30});   // 1 px from the left: the minimum plus one half step, rounded up
  Drag(slider, {3, -90});  // left of it
  Release(slider, {3, 30});
  EXPECT_EQ(told, (std::vector<int>{-6, 6, -47, LLevel::kMuted}));
  Drag(slider, {60, 30});  // the button is up: only hovering
  EXPECT_TRUE(slider.GetLevel().IsMuted());
  EXPECT_EQ(slider.GetAccessibleValue(), "stumm");
  EXPECT_TRUE(LPaintRecorder(slider).HasText("stumm"));
  slider.PeerMouseDown({.at = {3, 30}, .button = LMouseButton::Left}, true);
  EXPECT_EQ(slider.GetLevel(), LLevel(0));
}

TEST_F(Controls, TheSlidersKeysStepFromMutedToTheMaximumAndBack) {
  TDBEditSlider slider(window, 1, "Master");
  slider.ShowLevel(-48);
  EXPECT_TRUE(slider.GetLevel().IsMuted());
  slider.KeyLevelDown();
  EXPECT_TRUE(slider.GetLevel().IsMuted());
  slider.KeyLevelUp();
  EXPECT_EQ(slider.GetLevel(), LLevel(-47));
  for (int i = 0; i < 100; ++i) slider.KeyLevelUp();
  EXPECT_EQ(slider.GetLevel(), LLevel(6));
  for (int i = 0; i < 53; ++i) slider.KeyLevelDown();
  EXPECT_EQ(slider.GetLevel(), LLevel(-47));
  slider.KeyLevelDown();
  EXPECT_TRUE(slider.GetLevel().IsMuted());
}

TEST_F(Controls, ShowingALevelTellsNobodyAndTheSameLevelPaintsNothing) {
  TDBEditSlider slider(window, 1, "Master");
  slider.SetChanged([](LLevel) { ADD_FAILURE(); });
  slider.ShowLevel(-10);
  const int redraws = toolkit.RedrawCount(slider);
  slider.ShowLevel(-10);
  EXPECT_EQ(toolkit.RedrawCount(slider), redraws);
}

TEST_F(Controls, TheCrossfaderKeepsTheGrabAndStopsAtItsEnds) {
  DJCrossFader fader(window, 1);
  fader.SetChanged([&](int position) { fader.SetPosition(position); });
  fader.SetBounds({0, 0, 1046, 64});  // the longest track: 760 px from 143, 732 px of way; the knob of 50 at 509..536
  Press(fader, {511, 32});
  EXPECT_EQ(fader.GetPosition(), 50);
  Drag(fader, {511 + 74, 32});  // a tenth of the way
  EXPECT_EQ(fader.GetPosition(), 60);
  Drag(fader, {5000, 400});
  EXPECT_EQ(fader.GetPosition(), 100);
  Drag(fader, {-5000, 0});
  EXPECT_EQ(fader.GetPosition(), 0);
  Release(fader, {0, 0});
  Drag(fader, {700, 32});
  EXPECT_EQ(fader.GetPosition(), 0);
  Press(fader, {143 + 14 + 366, 32});  // beside the knob: its middle comes to the mouse
  EXPECT_EQ(fader.GetPosition(), 50);
}

TEST_F(Controls, TheLetterOfADeckGoesOutWhenTheCrossfaderShutsItOut) {
  DJCrossFader fader(window, 1);
  fader.SetBounds({0, 0, 1046, 64});
  const auto filled = [&](DJDeckPosition deck) {
    int count = 0;
    for (const auto& op : LPaintRecorder(fader).Find(DJTheme::GetDeckColour(deck)))
      count += op.kind == LPaintRecorder::RoundedFill;
    return count;
  };
  const struct { int position, a, b; } kCases[] = {{0, 1, 0}, {1, 1, 1}, {50, 1, 1}, {99, 1, 1}, {100, 0, 1}};
  for (const auto& c : kCases) {
    fader.SetPosition(c.position);
    EXPECT_EQ(filled(kDeckA), c.a) << c.position;
    EXPECT_EQ(filled(kDeckB), c.b) << c.position;
  }
}

TEST_F(Controls, TheMeterRisesAtOnceAndFallsTwentyDecibelsASecond) {
  TLevelMeter meter(window, 1, "Pegel");
  meter.SetBounds({0, 0, 34, 486});
  Run(2000);
  meter.SetLevels(-4, -10);
  EXPECT_EQ(meter.ShownDb(0), -4);
  EXPECT_EQ(meter.ShownDb(1), -10);
  meter.Clear();
  Run(1000);
  EXPECT_NEAR(meter.ShownDb(0), -24, 0.7);  // a frame of 33 ms is 0.66 dB
  EXPECT_NEAR(meter.ShownDb(1), -30, 0.7);
  Run(1500);
  EXPECT_EQ(meter.ShownDb(0), TLevelMeter::kLowDb);
  const int redraws = toolkit.RedrawCount(meter);
  Run(5000);
  EXPECT_EQ(toolkit.RedrawCount(meter), redraws);  // at rest it costs nothing
}

TEST_F(Controls, TheMeterIsGreenThenYellowFromMinusNineThenRedFromMinusThree) {
  TLevelMeter meter(window, 1, "Pegel");
  meter.SetBounds({0, 0, 34, 486});  // 480 px of bar, ten a decibel
  const auto lit = [&](LGuiColor colour) {
    const auto ops = LPaintRecorder(meter).Find(colour);
    return ops.empty() ? 0 : ops.front().box.height;
  };
  const struct {
    int db, green, yellow, red;
  } kCases[] = {{-48, 0, 0, 0},   {-20, 280, 0, 0}, {-9, 390, 0, 0},  {-6, 390, 30, 0},
                {-3, 390, 60, 0}, {0, 390, 60, 30}, {20, 390, 60, 30}};
  for (const auto& c : kCases) {
    meter.SetLevels(c.db, c.db);
    EXPECT_EQ(lit(DJTheme::kGreen), c.green) << c.db;
    EXPECT_EQ(lit(DJTheme::kYellow), c.yellow) << c.db;
    EXPECT_EQ(lit(DJTheme::kRed), c.red) << c.db;
  }
}

TEST_F(Controls, AButtonSendsItsCommandOnlyForAPressAndReleaseInside) {
  LCoolButton button(window, host, 1374, LCoolButton::Icon::Record, "Aufnahme", DJTheme::kRed);
  button.SetBounds({0, 0, 100, 30});
  Click(button);
  EXPECT_EQ(host.commands, std::vector<int>{1374});
  Press(button, {5, 5});
  Release(button, {5, 50});  // thought better of it
  button.PeerMouseDown({.at = {5, 5}, .button = LMouseButton::Right}, false);
  button.PeerMouseUp({.at = {5, 5}, .button = LMouseButton::Right}, true);
  EXPECT_EQ(host.commands.size(), 1u);
  button.PeerHover(false);
  button.SetOn(true);
  EXPECT_EQ(button.GetAccessibleValue(), "an");
  EXPECT_FALSE(LPaintRecorder(button).Find(DJTheme::kRed).empty());
}

double Luminance(LGuiColor c) {  // WCAG 2, relative luminance
  const auto linear = [](int v) {
    const double s = v / 255.0;
    return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(c.red) + 0.7152 * linear(c.green) + 0.0722 * linear(c.blue);
}

TEST_F(Controls, EveryTextStandsOutFromItsGround) {
  using namespace DJTheme;
  const LGuiColor a = GetDeckColour(kDeckA), b = GetDeckColour(kDeckB);
  const struct {
    LGuiColor ink, ground;
    double least;
  } kPairs[] = {{kText, kPanel, 4.5},     {kTextDim, kPanel, 4.5},   {kText, kWell, 4.5}, {kTextDim, kWell, 4.5},
                {kRed, kWell, 4.5},       {a, kWell, 4.5},           {b, kWell, 4.5},     {kText, kButton, 4.5},
                {kText, kButtonHot, 4.5}, {kText, kButtonDown, 4.5}, {kDark, kRed, 4.5},  {kDark, kGreen, 4.5},
                {kDark, kYellow, 4.5},    {kDark, a, 4.5},           {kDark, b, 4.5},     {a, kPanel, 4.5},
                {b, kPanel, 4.5},         {kTextOff, kButtonOff, 3}};
  for (std::size_t i = 0; i < std::size(kPairs); ++i) {
    const double x = Luminance(kPairs[i].ink) + 0.05, y = Luminance(kPairs[i].ground) + 0.05;
    EXPECT_GE(std::max(x, y) / std::min(x, y), kPairs[i].least) << "pair " << i;
  }
}

}  // namespace
