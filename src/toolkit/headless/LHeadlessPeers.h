// Peers that show nothing. The plain classes hold the state; here is only what a screen would add to it.
// Threads  [main]
#pragma once
#include "toolkit/LListView.h"
#include "toolkit/LMainWindow.h"
#include "toolkit/LToolkit.h"
#include "toolkit/headless/LHeadlessToolkit.h"

struct LHeadlessState {
  int redraws = 0;
};

template <class Interface>
class LHeadlessPeer : public Interface {
 public:
  void* NativeParent() override { return &state_; }
  void SetVisible(bool) override {}
  void SetEnabled(bool) override {}
  void SetBounds(const LRect&) override {}
  void SetText(const std::string&) override {}
  void SetToolTip(const std::string&) override {}
  void SetAccessibleName(const std::string&) override {}
  void SetFocus() override {}
  void Redraw(const LRect&) override { ++state_.redraws; }

 private:
  LHeadlessState state_;
};

class LHeadlessMainWindow final : public LHeadlessPeer<LMainWindowPeer> {
 public:
  LHeadlessMainWindow(LHeadlessToolkit& toolkit, LMainWindow& window) : toolkit_(toolkit), window_(window) {}
  // All of the window is content: there is no bar and no status line.
  void SetBounds(const LRect& bounds) override { window_.PeerContentSize(bounds.width, bounds.height); }
  void SetMinimumSize(int, int) override {}
  void SetMaximised(bool) override {}
  void SetStatusText(const std::string& text) override { toolkit_.Tell("Status: " + text); }
  void SetMenu(LMenu&) override {}
  void UpdateMenuItem(unsigned) override {}
  void Activate() override {}
  bool Grab(const std::string&) override { return false; }

 private:
  LHeadlessToolkit& toolkit_;
  LMainWindow& window_;
};

class LHeadlessPaintControl final : public LHeadlessPeer<LPaintControlPeer> {
 public:
  void SetTakesFocus(bool) override {}
  void SetOpaque(bool) override {}
  void SetCursor(LCursor) override {}
  void MoveCursor(LPoint) override {}
  void AccessibleChanged() override {}
};

class LHeadlessListView final : public LHeadlessPeer<LListViewPeer> {
 public:
  void Rebuild() override { Redraw({}); }
  void RefreshRows(int, int) override { Redraw({}); }
  void ShowSelection() override {}
  void ScrollTo(int) override {}
  void EditCell(int, int) override {}
};

class LHeadlessTabBar final : public LHeadlessPeer<LTabBarPeer> {
 public:
  void Rebuild() override {}
  void ShowSelection() override {}
};

class LHeadlessDialog final : public LDialogPeer {
 public:
  void Update(int) override {}
  void SetFocus(int) override {}
  void Ended() override {}
};

class LHeadlessProgressDialog final : public LProgressDialogPeer {
 public:
  LHeadlessProgressDialog(LHeadlessToolkit& toolkit, std::string title) : toolkit_(toolkit), title_(std::move(title)) {}
  void Show() override { toolkit_.Tell("Progress: " + title_); }
  void Update() override {}

 private:
  LHeadlessToolkit& toolkit_;
  std::string title_;
};
