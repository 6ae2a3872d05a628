// Threads  [main]
#pragma once
#include <QTabBar>

#include "toolkit/LTabBar.h"
#include "toolkit/qt/LQtPeer.h"

// Tabs that can be closed, on Qt's tab bar.
class LQtTabBar final : public LQtPeer<LTabBarPeer> {
 public:
  explicit LQtTabBar(LTabBar& bar);
  void Rebuild() override;
  void ShowSelection() override;

 private:
  QTabBar* View() const { return static_cast<QTabBar*>(Widget()); }
  LTabBar& bar_;
};
