// Builds Qt's menus from ours and keeps their items up to date. Keys stand beside the texts; no action has a shortcut.
// Threads  [main]
#pragma once
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <functional>
#include <map>

#include "toolkit/LMenu.h"

class LQtMenu {
 public:
  using Chosen = std::function<void(unsigned id)>;
  void Build(QMenuBar& bar, const LMenu& menu, const Chosen& chosen);
  void Build(QMenu& popup, const LMenu& menu, const Chosen& chosen);
  void Update(unsigned id);

 private:
  void Fill(QMenu& into, const std::vector<LMenu::Node>& nodes);
  void Apply(QAction& action, const LMenuItemState& state);
  const LMenu* menu_ = nullptr;
  Chosen chosen_;
  std::multimap<unsigned, QPointer<QAction>> actions_;  // an id may stand in the menu twice
};
