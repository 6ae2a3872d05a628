#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>

#include "QtFixture.h"
#include "foundation/LThread.h"
#include "toolkit/LAlert.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LProcessDialog.h"
#include "toolkit/LProcessEventsHandler.h"

namespace {

using QtModal = QtTest;

TEST_F(QtModal, AnAlertReturnsTheButtonAndTheCheckBox) {
  struct Case {
    int press;  // -1 Escape
    int escape;
    bool tick;
    int expected;
  };
  for (const Case& c : {Case{1, -1, true, 1}, Case{0, -1, false, 0}, Case{-1, -1, false, 1}, Case{-1, 0, false, 0}}) {
    LAlert alert("Datei zum Deck hinzufügen", "Deck anhalten & laden?", {"Nein", "Laden"});
    alert.checkBoxText = "Bitte nicht mehr warnen.";
    alert.escapeButton = c.escape;
    QtTest::Later user(20, [&c] {
      auto* box = Visible<QMessageBox>();
      ASSERT_NE(box, nullptr);
      EXPECT_TRUE(Toolkit().IsModal());
      if (c.tick) box->checkBox()->click();
      if (c.press < 0)
        Press(box, Qt::Key_Escape);
      else
        box->buttons()[c.press]->click();
    });
    EXPECT_EQ(alert.Run(), c.expected);
    EXPECT_EQ(alert.checked, c.tick);
  }
  EXPECT_FALSE(Toolkit().IsModal());
}

TEST_F(QtModal, TasksAndTimersGoOnWhileATaskAsks) {
  std::string order;
  Later soon(30, [&] { order += " timer"; });  // set before the question, due during it
  Post([&] {
    order += "ask";
    LAlert("Frage", "?").Run();
    order += " answered";
  });
  Post([&] { order += " task"; });
  Later user(60, [&] { Visible<QMessageBox>()->buttons()[0]->click(); });
  Later end(90, [] { Loop().Quit(); });
  Toolkit().Run();
  // Where showing the box takes longer than the timer, that is due first.
  EXPECT_THAT(order, ::testing::AnyOf("ask task timer answered", "ask timer task answered"));
}

TEST_F(QtModal, APopupGivesTheChosenIdAndABubbleGoesByAClick) {
  RecordingWindow window;
  window.SetVisible(true);
  LMenu menu;
  const LMenuItem items[] = {{5, "Eins"}, {6, "Zwei"}};
  menu.SetItems(items, 2);
  Later user(20, [&] {
    auto* popup = Visible<QMenu>();
    ASSERT_NE(popup, nullptr);
    popup->setActiveAction(popup->actions()[1]);
    Press(popup, Qt::Key_Return);
  });
  EXPECT_EQ(Toolkit().RunPopupMenu(menu, window, {10, 10}), 6U);

  LBubbleTip tip;
  tip.BubbleTipRun(window, {0, 0, 50, 20}, "Hier klicken");
  Settle();
  auto* label = WidgetOf(window)->findChild<QLabel*>();
  ASSERT_NE(label, nullptr);
  EXPECT_TRUE(label->isVisible());
  EXPECT_EQ(label->text(), "Hier klicken");
  Mouse(label, QEvent::MouseButtonPress, {2, 2}, Qt::LeftButton, Qt::LeftButton);
  Settle();
  EXPECT_FALSE(tip.IsOpen());
}

struct Work {
  int steps = 0;
  int limit = 1 << 30;
  bool onMainThread = false;
};

LProcessResult Process(LProcessInterface& process, Work& work) {
  work.onMainThread = tlThreadRole == LThreadRole::Main;
  process.SetStatus("Datei lesen", 0);
  while (work.steps < work.limit) {
    process.SetProgress(++work.steps / 1000.0);
    process.SetStatusF(1, "Schritt %d", work.steps);
    if (process.ProcessWait(2) == lpwStopped) return lprStopped;
  }
  process.SetError("Ein Fehler");
  return lprFailed;
}

TEST_F(QtModal, TheStopButtonOfAProgressDialogEndsItsJob) {
  RecordingWindow window;
  window.SetVisible(true);
  Work work;
  LProcessDialog<Work> dialog("Bibliothek wird geladen...", work);
  // Modal from the first moment, unseen for a while.
  Later early(50, [&] {
    EXPECT_EQ(Visible<QDialog>(), nullptr);
    Press(WidgetOf(window)->window(), Qt::Key_Space);
    WidgetOf(window)->window()->close();
  });
  Later user(450, [&] {
    auto* box = Visible<QDialog>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->width(), 420);
    EXPECT_GT(box->findChild<QProgressBar*>()->value(), 0);
    box->findChild<QPushButton*>()->click();
    EXPECT_FALSE(box->findChild<QPushButton*>()->isEnabled());
  });
  EXPECT_TRUE(dialog.Open(&window));
  EXPECT_EQ(dialog.Result(), lprStopped);
  EXPECT_FALSE(work.onMainThread);
  EXPECT_GT(work.steps, 20);
  EXPECT_TRUE(window.keys.empty());
  EXPECT_EQ(window.closeRequests, 0);
  EXPECT_TRUE(WidgetOf(window)->window()->isVisible());
  EXPECT_EQ(dialog.StatusLine(0), "Datei lesen");
}

TEST_F(QtModal, AQuickJobShowsNoDialogButItsError) {
  Work work{.limit = 3};
  LProcessDialog<Work> dialog("Titel", work);
  Later user(60, [] {
    auto* box = Visible<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Ein Fehler");
    box->buttons()[0]->click();
  });
  dialog.Open();
  EXPECT_EQ(dialog.Result(), lprFailed);
  EXPECT_EQ(work.steps, 3);
}

TEST_F(QtModal, TheMainThreadWaitsWithItsEventsRunning) {
  LSignalObject signal;
  Later later(30, [&] { signal.Signal(); });
  EXPECT_TRUE(LProcessEventsHandler::ProcessWaitSignalAndProcessEvents(signal, 5000));
  signal.Reset();
  EXPECT_FALSE(LProcessEventsHandler::ProcessWaitSignalAndProcessEvents(signal, 20));

  LProcessDialogRunInterface direct("Bibliothek wird geladen...");
  direct.DirectOpen();
  int ran = 0;
  Post([&] { ++ran; });
  direct.SetProgress(0.25);
  EXPECT_EQ(ran, 1);
  EXPECT_EQ(Visible<QDialog>(), nullptr);
  EXPECT_EQ(direct.ProcessWait(310), lpwTimedOut);
  direct.SetProgress(0.5);
  auto* box = Visible<QDialog>();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->findChild<QProgressBar*>()->value(), 500);
  direct.DirectClose();
  EXPECT_EQ(Visible<QDialog>(), nullptr);
}

}  // namespace
