#include <gtest/gtest.h>

#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "foundation/LTimerHandler.h"
#include "toolkit/LAlert.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LMainWindow.h"
#include "toolkit/LProcessDialog.h"
#include "toolkit/LPropertySheet.h"
#include "toolkit/headless/LHeadlessToolkit.h"
#include "toolkit/headless/LPaintRecorder.h"

namespace {

class Headless : public testing::Test {
 protected:
  Headless() {
    LPlatform::Fill({.clock = &clock_, .mainLoop = &loop_, .preferences = &preferences_, .toolkit = &toolkit_});
    LTimerHandler::Enable(true);
  }
  ~Headless() override { LPlatform::Clear(); }

  LVirtualClock clock_;
  LMainLoop loop_{clock_};
  LMemoryPreferences preferences_;
  LHeadlessToolkit toolkit_;
};

class Window final : public LMainWindow {
 public:
  void InitDialog() override { order += "init "; }
  void EvRunArguments(char const* const* arguments, int count) override { order += arguments[count - 1]; }
  void Command(int id, int code) override {
    order += " command " + std::to_string(id + code);
    if (id == 99) Close();
  }
  void LayoutControls(int w, int h) override { layout = {0, 0, w, h}; }
  void DestroyDialog() override { order += " destroy"; }
  bool EvKeyDown(LKey key) override { return order += " " + key.GetDisplayText(), true; }
  std::string order;
  LRect layout;
};

class Knob final : public LPaintControl {
 public:
  using LPaintControl::LPaintControl;
  void EvPaint(LPaintContext& context) override {
    LPaintClip clip(context, {0, 0, 20, 20});
    context.FillRect({0, 0, Width(), Height()}, LGuiColor::FromRgb(0x101010));
    context.DrawLine({3.5, 1}, {3.5, 19}, {.colour = LGuiColor::FromRgb(0xFF0000), .width = 2});
    context.DrawText({0, 0, 20, 20}, "-6 dB", {}, LGuiColor::FromRgb(0xFFFFFF));
  }
};

TEST_F(Headless, RunCallsTheStepsOfAProgramInOrder) {
  Window window;
  window.SetMinimumSize(936, 561);
  window.SetSize(100, 100);
  EXPECT_EQ(window.layout, (LRect{0, 0, 936, 561}));
  const char* arguments[] = {"tavi", "-CD"};
  window.PostCommand(5, 2);
  window.PostCommand(99);
  window.PostCommand(6);  // never runs: the window has closed
  EXPECT_EQ(window.Run(2, arguments), 0);
  EXPECT_EQ(window.order, "init -CD command 7 command 99 destroy");
  EXPECT_FALSE(window.IsWindowVisible());
}

TEST_F(Headless, ClosingWaitsForModalConversations) {
  Window window;
  window.SetVisible(true);
  {
    LModalScope modal(toolkit_);
    window.RequestClose();
    EXPECT_TRUE(window.IsVisible());
  }
  window.RequestClose();
  EXPECT_FALSE(window.IsVisible());
}

TEST_F(Headless, AlertsAndFileDialogsAreAnsweredFromTheScript) {
  LAlert alert("Titel", "Text", {"Nein", "Laden"});
  EXPECT_EQ(alert.Run(), 0);
  toolkit_.AnswerAlert(1, true);
  toolkit_.AnswerAlert(7);
  EXPECT_EQ(alert.Run(), 1);
  EXPECT_TRUE(alert.checked);
  EXPECT_EQ(alert.Run(), 1);  // held to the buttons there are
  EXPECT_EQ(toolkit_.Log().front(), "Alert: Titel: Text");

  LFileDialog save(LFileDialog::Kind::Save, "Sichern");
  save.extension = ".wav";
  EXPECT_FALSE(save.Run());
  toolkit_.AnswerFileDialog({"/musik/mix"});
  toolkit_.AnswerFileDialog({"/musik/mix.aiff"});
  EXPECT_TRUE(save.Run());
  EXPECT_EQ(save.Path(), "/musik/mix.wav");
  EXPECT_EQ(save.folder, "/musik");
  EXPECT_TRUE(save.Run());
  EXPECT_EQ(save.Path(), "/musik/mix.aiff");
}

TEST_F(Headless, PaintingIsRecordedWithItsClip) {
  Window window;
  Knob knob(window, 3);
  knob.SetBounds({10, 10, 40, 30});
  const int before = toolkit_.RedrawCount(knob);
  knob.Redraw({0, 0, 5, 5});
  knob.Redraw(LRect{});  // nothing to paint
  EXPECT_EQ(toolkit_.RedrawCount(knob), before + 1);
  const LPaintRecorder recorder(knob);
  EXPECT_TRUE(recorder.IsBalanced());
  EXPECT_TRUE(recorder.HasText("-6 dB"));
  ASSERT_EQ(recorder.Ops().size(), 3U);
  EXPECT_EQ(recorder.Ops()[0].box, (LRect{0, 0, 40, 30}));
  EXPECT_EQ(recorder.Ops()[0].clip, (LRect{0, 0, 20, 20}));
  const auto lines = recorder.Find(LGuiColor::FromRgb(0xFF0000));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].kind, LPaintRecorder::Line);
  EXPECT_EQ(lines[0].box, (LRect{3, 1, 0, 18}));
}

TEST_F(Headless, WindowsPassOnKeysAndOutliveTheirParents) {
  auto window = std::make_unique<Window>();
  auto knob = std::make_unique<Knob>(*window, 3);
  Knob inner(*knob, 4);
  EXPECT_TRUE(inner.EvKeyDown(LKey::FromCharacter(u'ö', LKey::kShift)));
  EXPECT_EQ(window->order, " Umschalt+Ö");
  EXPECT_EQ(window->FindChild(4), &inner);
  window->SetVisible(true);
  EXPECT_TRUE(inner.IsWindowVisible());
  knob->SetVisible(false);
  EXPECT_FALSE(inner.IsWindowVisible());
  knob.reset();
  EXPECT_EQ(inner.Parent(), nullptr);
  EXPECT_FALSE(inner.EvKeyDown(LKey::FromCode(LKeyCode::kEscape)));
  EXPECT_TRUE(window->Children().empty());
}

TEST_F(Headless, ABubbleGoesAfterTenSeconds) {
  Window window;
  LBubbleTip tip;
  tip.BubbleTipRun(window, "Hinweis");
  EXPECT_EQ(toolkit_.Log().back(), "Bubble: Hinweis");
  clock_.AdvanceUs(9999000);
  loop_.DispatchPending();
  EXPECT_TRUE(tip.IsOpen());
  clock_.AdvanceUs(1000);
  loop_.DispatchPending();
  EXPECT_FALSE(tip.IsOpen());
}

TEST_F(Headless, AMenuTableMakesATreeAndForgivesABadOne) {
  const LMenuItem items[] = {{kMenuSub, "Datei"}, {1, "Neu"},          {kMenuSub, "Mehr"}, {2, "Alt"},
                             {kMenuSub, ""},      {0, nullptr},        {3, "Ende"},        {kMenuSub, ""},
                             {kMenuSub, ""},      {kMenuSub, "Hilfe"}, {4, "Über"}};
  const LKeyToCommandMap keys[] = {{LKey(0x1004E), 1}, {LKey(0x4E), 1}, {LKey(0x58), 77}};
  LMenu menu;
  menu.SetItems(items, 11, keys, 3);
  ASSERT_EQ(menu.Nodes().size(), 2U);
  EXPECT_EQ(menu.Nodes()[0].nodes.size(), 4U);
  EXPECT_EQ(menu.Nodes()[0].nodes[1].nodes[0].id, 2U);
  EXPECT_EQ(menu.Nodes()[1].nodes[0].id, 4U);
  EXPECT_EQ(menu.Find(1)->keyText, "Strg+N");
  EXPECT_TRUE(menu.CheckRadio(1, 3, 2));
  EXPECT_TRUE(menu.CheckRadio(1, 3, 3));
  EXPECT_FALSE(menu.Find(2)->checked);
  EXPECT_TRUE(menu.Find(3)->checked);
  EXPECT_FALSE(menu.Check(77, true));
}

TEST_F(Headless, DialogsRunFromAScriptAndASheetStaysAtThePageThatRefuses) {
  constexpr LDialogRow kRows[] = {{LControlKind::Radio, 1001, "a"},
                                  {LControlKind::Radio, 1002, "b"},
                                  {LControlKind::Line, 0, ""},
                                  {LControlKind::Radio, 1003, "c"},
                                  {LControlKind::Number, 1004, "", 0, 1, 1, 1, 2, 300}};
  class Page final : public LDialog {
   public:
    Page(const char* title, const LDialogRow* rows) : LDialog(title, rows, 5) {}
    bool CmOk() override { return GetValue(1004) > 5; }
  };
  Page page("Seite", kRows), second("Zwei", kRows);
  EXPECT_EQ(page.Run(), LDialog::kCancel);
  toolkit_.AnswerDialog([](LDialog& dialog) {
    dialog.PeerChecked(1001, true);
    dialog.PeerChecked(1003, true);
    dialog.PeerChecked(1002, true);  // its group is the first two
    dialog.PeerValue(1004, 1000);
    dialog.Press(LDialog::kOk);
  });
  EXPECT_EQ(page.Run(), LDialog::kOk);
  EXPECT_FALSE(page.IsChecked(1001));
  EXPECT_TRUE(page.IsChecked(1002));
  EXPECT_TRUE(page.IsChecked(1003));
  EXPECT_EQ(page.GetValue(1004), 300);
  EXPECT_EQ(page.GetText(4711) + std::to_string(page.GetSelected(4711)), "-1");

  LPropertySheet sheet("Blätter");
  sheet.AddPage(page);
  sheet.AddPage(second);
  toolkit_.AnswerSheet([&](LPropertySheet& shown) {
    shown.Press(LDialog::kOk);
    EXPECT_EQ(shown.SelectedPage(), 1);
    second.SetValue(1004, 6);
    shown.Press(LDialog::kOk);
  });
  EXPECT_EQ(sheet.Run(), LDialog::kOk);
}

struct Count {
  LMainLoop* loop;
  int turns = 0;
};
LProcessResult Process(LProcessInterface& process, Count& count) {
  count.loop->Quit();  // the program ends while the job runs
  while (process.ProcessWait(1) != lpwStopped) ++count.turns;
  return lprStopped;
}

TEST_F(Headless, AJobEndsWithTheLoop) {
  Count count{&loop_};
  LProcessDialog<Count> dialog("Titel", count);
  EXPECT_TRUE(dialog.Open());
  EXPECT_EQ(dialog.Result(), lprStopped);
}

}  // namespace
