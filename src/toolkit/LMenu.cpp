#include "toolkit/LMenu.h"

namespace {

std::vector<LMenu::Node> ReadNodes(const LMenuItem*& item, const LMenuItem* end) {
  std::vector<LMenu::Node> nodes;
  while (item != end) {
    const LMenuItem& row = *item++;
    const bool hasText = row.text && row.text[0] != '\0';
    if (row.id == kMenuSub && !hasText) break;
    if (row.id == kMenuSub)
      nodes.push_back({LMenu::Node::Sub, 0, row.text, ReadNodes(item, end)});
    else if (row.id == 0)
      nodes.push_back({LMenu::Node::Separator, 0, "", {}});
    else
      nodes.push_back({LMenu::Node::Item, row.id, "", {}});
  }
  return nodes;
}

}  // namespace

void LMenu::SetItems(const LMenuItem* items, int count, const LKeyToCommandMap* keys, int keyCount) {
  const LMenuItem* item = items;
  nodes_.clear();
  // A closing row too many ends a level early; what follows it still belongs to the menu.
  while (item != items + count) {
    std::vector<Node> nodes = ReadNodes(item, items + count);
    nodes_.insert(nodes_.end(), nodes.begin(), nodes.end());
  }
  states_.clear();
  for (int i = 0; i < count; ++i)
    if (items[i].id != 0 && items[i].id != kMenuSub) states_[items[i].id].text = items[i].text ? items[i].text : "";
  for (int i = 0; i < keyCount; ++i) {
    LMenuItemState* state = Edit(unsigned(keys[i].command));
    if (state && state->keyText.empty()) state->keyText = keys[i].key.GetDisplayText();  // the first key counts
  }
}

const LMenuItemState* LMenu::Find(unsigned id) const {
  const auto found = states_.find(id);
  return found == states_.end() ? nullptr : &found->second;
}

LMenuItemState* LMenu::Edit(unsigned id) {
  const auto found = states_.find(id);
  return found == states_.end() ? nullptr : &found->second;
}

bool LMenu::SetText(unsigned id, const std::string& text) {
  LMenuItemState* state = Edit(id);
  if (state) state->text = text;
  return state != nullptr;
}

bool LMenu::Check(unsigned id, bool checked) {
  LMenuItemState* state = Edit(id);
  if (state) state->checked = checked, state->checkable = true;
  return state != nullptr;
}

bool LMenu::CheckRadio(unsigned first, unsigned last, unsigned id) {
  bool any = false;
  for (auto at = states_.lower_bound(first); at != states_.end() && at->first <= last; ++at) {
    at->second.radio = at->second.checkable = true;
    at->second.checked = at->first == id;
    any = true;
  }
  return any;
}

bool LMenu::Enable(unsigned id, bool enabled) {
  LMenuItemState* state = Edit(id);
  if (state) state->enabled = enabled;
  return state != nullptr;
}
