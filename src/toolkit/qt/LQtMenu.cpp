#include "toolkit/qt/LQtMenu.h"

#include <QAction>
#include <QActionGroup>

#include "toolkit/qt/LQtConvert.h"

void LQtMenu::Build(QMenuBar& bar, const LMenu& menu, const Chosen& chosen) {
  menu_ = &menu;
  chosen_ = chosen;
  actions_.clear();
  bar.clear();
  for (const LMenu::Node& node : menu.Nodes())
    if (node.kind == LMenu::Node::Sub) Fill(*bar.addMenu(LToQtLabel(node.text)), node.nodes);
}

void LQtMenu::Build(QMenu& popup, const LMenu& menu, const Chosen& chosen) {
  menu_ = &menu;
  chosen_ = chosen;
  actions_.clear();
  Fill(popup, menu.Nodes());
}

void LQtMenu::Fill(QMenu& into, const std::vector<LMenu::Node>& nodes) {
  for (const LMenu::Node& node : nodes) {
    if (node.kind == LMenu::Node::Separator) {
      into.addSeparator();
    } else if (node.kind == LMenu::Node::Sub) {
      Fill(*into.addMenu(LToQtLabel(node.text)), node.nodes);
    } else {
      QAction* action = into.addAction(QString());
      action->setMenuRole(QAction::NoRole);
      actions_.emplace(node.id, action);
      QObject::connect(action, &QAction::triggered, &into, [this, id = node.id] {
        Update(id);  // Qt has ticked it by itself; what is ticked is the program's word
        chosen_(id);
      });
      if (const LMenuItemState* state = menu_->Find(node.id)) Apply(*action, *state);
    }
  }
}

void LQtMenu::Apply(QAction& action, const LMenuItemState& state) {
  QString text = LToQtLabel(state.text);
  if (!state.keyText.empty()) text += u'\t' + LToQt(state.keyText);
  action.setText(text);
  action.setEnabled(state.enabled);
  action.setCheckable(state.checkable);
  action.setChecked(state.checked);
  if (state.radio && !action.actionGroup()) {
    // A group of its own gives the item a round tick; which of the others is ticked is told by the program.
    auto* group = new QActionGroup(&action);
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    group->addAction(&action);
  }
}

void LQtMenu::Update(unsigned id) {
  const LMenuItemState* state = menu_ ? menu_->Find(id) : nullptr;
  if (!state) return;
  const auto [first, last] = actions_.equal_range(id);
  for (auto at = first; at != last; ++at)
    if (at->second) Apply(*at->second, *state);
}
