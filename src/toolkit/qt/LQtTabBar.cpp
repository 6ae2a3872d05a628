#include "toolkit/qt/LQtTabBar.h"

#include <QAbstractButton>
#include <QSignalBlocker>

LQtTabBar::LQtTabBar(LTabBar& bar) : LQtPeer(new QTabBar(LQtParent(bar.Parent()))), bar_(bar) {
  View()->setTabsClosable(true);
  View()->setExpanding(false);
  View()->setDrawBase(false);
  View()->setFocusPolicy(Qt::NoFocus);
  View()->setVisible(true);
  QObject::connect(View(), &QTabBar::currentChanged, View(), [this](int index) {
    if (index >= 0) bar_.PeerSelected(View()->tabData(index).toInt());
  });
  // Closing takes the button away that Qt is still inside of, so it is told afterwards.
  QObject::connect(
      View(), &QTabBar::tabCloseRequested, View(),
      [this](int index) { bar_.EvTabClose(View()->tabData(index).toInt()); }, Qt::QueuedConnection);
}

void LQtTabBar::Rebuild() {
  if (!View()) return;
  const QSignalBlocker blocker(View());
  while (View()->count() > 0) View()->removeTab(0);
  for (const LTabBar::Tab& tab : bar_.Tabs()) {
    const int index = View()->addTab(LToQtLabel(tab.text));
    View()->setTabData(index, tab.tag);
    if (!tab.closable) {
      View()->setTabButton(index, QTabBar::RightSide, nullptr);
    } else if (QWidget* button = View()->tabButton(index, QTabBar::RightSide)) {
      button->setToolTip(LToQt(bar_.CloseToolTip()));
      button->setAccessibleName(LToQt(bar_.CloseToolTip()));
    }
  }
  ShowSelection();
}

void LQtTabBar::ShowSelection() {
  if (!View()) return;
  const QSignalBlocker blocker(View());
  for (int index = 0; index < View()->count(); ++index)
    if (View()->tabData(index).toInt() == bar_.SelectedTag()) View()->setCurrentIndex(index);
  View()->update();
}
