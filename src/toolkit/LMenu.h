// A menu bar's or pop-up's items as a table, and what of them changes: texts, ticks, what is enabled. A key is shown
// beside its item and never triggers it: keys go through EvKeyDown alone.
// Law      id 0 is a separator; kMenuSub with a text opens a sub-menu, without one closes it.
// Threads  [main]
// Failure  an unknown id is ignored; sub-menus that are never closed end with the table.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "foundation/LKey.h"

inline constexpr unsigned kMenuSub = 0xFFFFFFFF;

struct LMenuItem {
  unsigned id;
  const char* text;
};

struct LKeyToCommandMap {
  LKey key;
  int command;
};

struct LMenuItemState {
  std::string text, keyText;
  bool enabled = true, checked = false;
  bool checkable = false;  // has been ticked or unticked at least once
  bool radio = false;
};

class LMenu {
 public:
  struct Node {
    enum Kind { Item, Separator, Sub } kind = Item;
    unsigned id = 0;          // Item
    std::string text;         // Sub
    std::vector<Node> nodes;  // Sub
  };

  void SetItems(const LMenuItem* items, int count, const LKeyToCommandMap* keys = nullptr, int keyCount = 0);
  const std::vector<Node>& Nodes() const { return nodes_; }
  const LMenuItemState* Find(unsigned id) const;  // null: no such item

  // Each tells whether the item is there; a peer is told by the owner.
  bool SetText(unsigned id, const std::string& text);
  bool Check(unsigned id, bool checked);
  bool CheckRadio(unsigned first, unsigned last, unsigned id);  // one of a range of ids
  bool Enable(unsigned id, bool enabled);

 private:
  LMenuItemState* Edit(unsigned id);
  std::vector<Node> nodes_;
  std::map<unsigned, LMenuItemState> states_;
};
