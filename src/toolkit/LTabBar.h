// A row of tabs, each with a tag of the caller's; some can be closed.
// Law      a selection by the user calls EvTabChanged; one by the program does not. Closing is only told: the owner
//          removes the tab.
// Threads  [main]
#pragma once
#include "toolkit/LWindow.h"

class LTabBar : public LWindow {
 public:
  struct Tab {
    std::string text;
    int tag = 0;
    bool closable = false;
  };
  LTabBar(LWindow& parent, int id);

  void AddTab(const std::string& text, int tag, bool closable = false);
  void RemoveTab(int tag);  // its right neighbour, else the last one, is selected in its place
  void SelectTab(int tag);
  int SelectedTag() const { return selected_; }  // -1 without tabs
  const std::vector<Tab>& Tabs() const { return tabs_; }
  void SetCloseToolTip(const std::string& text) { closeToolTip_ = text; }
  const std::string& CloseToolTip() const { return closeToolTip_; }

  virtual void EvTabChanged(int /*tag*/) {}
  virtual void EvTabClose(int /*tag*/) {}

  void PeerSelected(int tag);

 private:
  LTabBarPeer* bar_;  // the base's peer
  std::vector<Tab> tabs_;
  std::string closeToolTip_;
  int selected_ = -1;
};
