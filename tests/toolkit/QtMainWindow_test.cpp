#include <QAccessible>
#include <QImage>
#include <QMenuBar>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>
#include <thread>

#include "QtFixture.h"
#include "toolkit/LAlert.h"

namespace {

using QtMainWindow = QtTest;

TEST_F(QtMainWindow, ControlsHaveNameRoleValueAndToolTip) {
  RecordingWindow window;
  RecordingControl control(window, 7);
  control.SetAccessibleName("Crossfader");
  control.SetAccessibleRole(LAccessibleRole::Slider);
  control.SetAccessibleValue("50 %");
  control.SetToolTip("Überblenden <A/B>");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(WidgetOf(control));
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Crossfader");
  EXPECT_EQ(accessible->text(QAccessible::Value), "50 %");
  EXPECT_EQ(accessible->role(), QAccessible::Slider);
  EXPECT_EQ(WidgetOf(control)->toolTip(), QStringLiteral("<qt>Überblenden &lt;A/B&gt;</qt>"));
  EXPECT_EQ(window.FindChild(7), &control);
}

TEST_F(QtMainWindow, KeysArriveWithTheirStoredValues) {
  struct Case {
    int key;
    Qt::KeyboardModifiers modifiers;
    std::uint32_t value;
  };
  const Case cases[] = {
      {Qt::Key_O, Qt::ControlModifier, 0x1004F},
      {Qt::Key_O, Qt::ShiftModifier, 0x2004F},
      {Qt::Key_Space, Qt::AltModifier, 0x80020},
      {Qt::Key_Udiaeresis, Qt::NoModifier, 0xDC},
      {0x0416, Qt::MetaModifier, 0x100416},  // Cyrillic Zhe, with Control
      {Qt::Key_Backspace, Qt::ControlModifier | Qt::AltModifier, 0x33090000},
      {Qt::Key_Return, Qt::NoModifier, 0x24000000},
      {Qt::Key_Enter, Qt::KeypadModifier, 0x24000000},
      {Qt::Key_5, Qt::KeypadModifier, 0x35},
      {Qt::Key_Insert, Qt::NoModifier, 0x72000000},
      {Qt::Key_F1, Qt::ShiftModifier, 0x7A020000},
      {Qt::Key_F20, Qt::NoModifier, 0x5A000000},
      {Qt::Key_Left, Qt::NoModifier, 0x7B000000},
  };
  class Window final : public RecordingWindow {
   public:
    bool EvKeyDown(LKey key) override { return values.push_back(key.Value()), true; }
    std::vector<std::uint32_t> values;
  } window;
  std::vector<std::uint32_t> expected;
  for (const Case& c : cases) {
    Press(WidgetOf(window)->window(), c.key, c.modifiers);
    expected.push_back(c.value);
  }
  // Neither a modifier alone nor a key without a value is a key.
  Press(WidgetOf(window)->window(), Qt::Key_Shift, Qt::ShiftModifier);
  Press(WidgetOf(window)->window(), Qt::Key_LaunchMail);
  EXPECT_EQ(window.values, expected);
}

TEST_F(QtMainWindow, KeysOfAFocusedControlReachTheWindowOnce) {
  RecordingWindow window;
  RecordingControl outer(window, 1);
  RecordingControl inner(outer, 2);
  inner.SetTakesFocus(true);
  Press(WidgetOf(inner), Qt::Key_Space);
  Press(WidgetOf(inner), Qt::Key_Space, Qt::NoModifier, true);
  EXPECT_EQ(window.keys, (std::vector<std::string>{"Leertaste", "repeat Leertaste"}));
}

TEST_F(QtMainWindow, MenuShowsKeysThatDoNotTriggerAndPostsItsCommands) {
  RecordingWindow window;
  const LMenuItem items[] = {
      {kMenuSub, "Loops & Samples"}, {1397, "Hinzufügen..."}, {0, nullptr}, {1370, "Auto"}, {kMenuSub, nullptr}};
  const LKeyToCommandMap keys[] = {{LKey(0x1004F), 1397}};
  window.SetMenu(items, 5, keys, 1);
  auto* bar = WidgetOf(window)->window()->findChild<QMenuBar*>();
  ASSERT_EQ(bar->actions().size(), 1);
  EXPECT_EQ(bar->actions()[0]->text(), "Loops && Samples");
  const QList<QAction*> actions = bar->actions()[0]->menu()->actions();
  ASSERT_EQ(actions.size(), 3);
  EXPECT_EQ(actions[0]->text(), QStringLiteral("Hinzufügen...\tStrg+O"));
  EXPECT_TRUE(actions[0]->shortcut().isEmpty());
  EXPECT_TRUE(actions[1]->isSeparator());

  window.SetVisible(true);
  Press(WidgetOf(window), Qt::Key_O, Qt::ControlModifier);
  Settle();
  EXPECT_EQ(window.keys, std::vector<std::string>{"Strg+O"});
  EXPECT_TRUE(window.commands.empty());

  window.CheckMenuItem(1370, true);
  EXPECT_TRUE(actions[2]->isChecked());
  actions[2]->trigger();
  EXPECT_TRUE(window.commands.empty());  // posted, not called
  EXPECT_TRUE(actions[2]->isChecked());  // the tick is the program's
  Settle();
  EXPECT_EQ(window.commands, std::vector<int>{1370});
  window.EnableMenuItem(1370, false);
  EXPECT_FALSE(actions[2]->isEnabled());
}

TEST_F(QtMainWindow, DroppedFilesReachTheWindowWithItsCoordinates) {
  RecordingWindow window;
  RecordingControl control(window, 1);
  control.SetBounds({100, 50, 200, 80});
  QMimeData files, text;
  files.setUrls({QUrl::fromLocalFile("/musik/ä b.wav"), QUrl("https://example.org/x.mp3")});
  text.setText("no file");
  for (QMimeData* data : {&files, &text}) {
    QDragEnterEvent enter(QPoint(10, 20), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(WidgetOf(control), &enter);
    EXPECT_EQ(enter.isAccepted(), data == &files);
    if (data != &files) continue;
    QDropEvent event(QPointF(10, 20), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(WidgetOf(control), &event);
    EXPECT_TRUE(event.isAccepted());
  }
  EXPECT_TRUE(window.drops.empty());  // not inside the file manager's event
  Settle();
  ASSERT_EQ(window.drops.size(), 1U);
  EXPECT_EQ(window.drops[0].paths, std::vector<std::string>{"/musik/ä b.wav"});
  EXPECT_EQ(window.drops[0].where, (LPoint{110, 70}));
}

TEST_F(QtMainWindow, LayoutFollowsTheSizeAndTheMinimumHolds) {
  RecordingWindow window;
  window.SetMinimumSize(936, 561);
  window.SetStatusText("Tavi 0.1");
  window.SetSize(1056, 595);
  window.SetVisible(true);
  Settle();
  EXPECT_EQ(window.layoutWidth, 1056);
  EXPECT_LT(window.layoutHeight, 595);  // the status line has the rest
  EXPECT_GT(window.layoutHeight, 520);
  WidgetOf(window)->window()->resize(1400, 800);
  Settle();
  EXPECT_EQ(window.layoutWidth, 1400);
  EXPECT_EQ(window.Bounds().height, 800);
  window.SetSize(10, 10);
  Settle();
  EXPECT_EQ(window.layoutWidth, 936);
  window.StoreFrame("Test");
  RecordingWindow second;
  second.RestoreFrame("Test");
  EXPECT_EQ(second.Bounds().width, 936);
  EXPECT_EQ(second.Bounds().height, 561);
}

TEST_F(QtMainWindow, GrabPaintsTheWindowToAPng) {
  QTemporaryDir folder;
  RecordingWindow window;
  window.SetSize(400, 300);
  RecordingControl control(window, 1);
  control.SetBounds({10, 10, 100, 100});
  control.paint = [](LPaintContext& c) { c.FillRect({0, 0, 100, 100}, LGuiColor::FromRgb(0x12C834)); };
  const QString path = folder.filePath("bild.png");
  ASSERT_TRUE(window.Grab(path.toStdString()));
  const QImage image(path);
  EXPECT_EQ(image.size(), QSize(400, 300));
  EXPECT_EQ(image.pixelColor(60, 60), QColor(0x12, 0xC8, 0x34));
  EXPECT_NE(image.pixelColor(200, 150), QColor(0x12, 0xC8, 0x34));
  EXPECT_FALSE(window.Grab("/nowhere/at/all.png"));
}

TEST_F(QtMainWindow, RunGoesFromInitToDestroyAndClosingMayBeRefused) {
  class Window final : public RecordingWindow {
   public:
    void InitDialog() override { SetSize(300, 200); }
  } window;
  window.mayClose = false;
  Later first(20, [&] { WidgetOf(window)->window()->close(); });
  Later second(60, [&] {
    EXPECT_EQ(window.closeRequests, 1);
    EXPECT_TRUE(WidgetOf(window)->window()->isVisible());
    window.mayClose = true;
    LMainWindow::DoNotQuit scope(window);
    window.RequestClose();
    EXPECT_EQ(window.closeRequests, 1);  // not even asked
    Press(WidgetOf(window)->window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(window.keys.back(), "Strg+Q");  // the window used it
    window.usesKeys = false;
    Press(WidgetOf(window)->window(), Qt::Key_Q, Qt::ControlModifier);
  });
  EXPECT_EQ(window.Run(0, nullptr), 0);
  EXPECT_EQ(window.closeRequests, 2);
  EXPECT_EQ(window.destroyed, 1);
}

TEST_F(QtMainWindow, TasksOfFourThreadsArriveInTheirOrder) {
  constexpr int kThreads = 4, kPosts = 2000;
  std::vector<int> next(kThreads, 0);
  int wrong = 0, done = 0;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < kPosts; ++i)
        Post([&, t, i] {
          wrong += next[std::size_t(t)]++ != i;
          if (++done == kThreads * kPosts) Loop().Quit();
        });
    });
  Toolkit().Run();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(done, kThreads * kPosts);
  EXPECT_EQ(wrong, 0);
}

TEST_F(QtMainWindow, QuitFromAnotherThreadEndsAnOpenAlertAndTheLoop) {
  int pressed = -1;
  Post([&] { pressed = LAlert("Frage", "Wirklich?", {"Ja", "Nein"}).Run(); });
  std::thread other;
  Later later(30, [&] { other = std::thread([] { Loop().Quit(); }); });
  Toolkit().Run();
  other.join();
  EXPECT_EQ(pressed, 1);  // as if it were closed
}

}  // namespace
