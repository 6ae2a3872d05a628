// The window system, as an abstract factory of peers and of the modal conversations that need no state of their own.
// Reached as LPlatform::Toolkit(). toolkit/qt shows windows; toolkit/headless keeps state and answers from a script.
// Law      Run and every modal call keep LMainLoop going; the toolkit is the host of that loop.
// Units    waits in ms; sizes in device-independent pixels.
// Threads  [main]
// Failure  a conversation that cannot be held is answered as if it were cancelled.
#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "foundation/LSignalObject.h"
#include "toolkit/LGuiFont.h"
#include "toolkit/LWindowPeer.h"

class LAlert;
class LBubbleTip;
class LDialog;
class LFileDialog;
class LListView;
class LMainWindow;
class LMenu;
class LPaintControl;
class LProgressDialog;
class LPropertySheet;
class LTabBar;
class LWindow;

struct LTextSize {
  int width = 0, height = 0;  // height of one line
};

class LToolkit {
 public:
  virtual ~LToolkit() = default;

  virtual std::unique_ptr<LMainWindowPeer> NewMainWindow(LMainWindow& window) = 0;
  virtual std::unique_ptr<LPaintControlPeer> NewPaintControl(LPaintControl& control) = 0;
  virtual std::unique_ptr<LListViewPeer> NewListView(LListView& list) = 0;
  virtual std::unique_ptr<LTabBarPeer> NewTabBar(LTabBar& bar) = 0;
  virtual std::unique_ptr<LDialogPeer> NewDialog(LDialog& dialog) = 0;
  virtual std::unique_ptr<LProgressDialogPeer> NewProgressDialog(LProgressDialog& dialog, LWindow* parent) = 0;
  virtual std::unique_ptr<LBubbleTipPeer> NewBubbleTip(LBubbleTip& tip, LWindow& window, const LRect& area) = 0;

  // Modal: return when the user is done. A null parent is the screen.
  virtual int RunAlert(LAlert& alert, LWindow* parent) = 0;  // index of the button
  virtual bool RunFileDialog(LFileDialog& dialog, LWindow* parent) = 0;
  virtual unsigned RunPopupMenu(LMenu& menu, LWindow& window, LPoint where) = 0;  // the id chosen, 0 for none
  virtual void RunDialog(LDialog& dialog, LWindow* parent) = 0;                   // until dialog.IsEnded()
  virtual void RunPropertySheet(LPropertySheet& sheet, LWindow* parent) = 0;

  virtual void Run() = 0;  // until LMainLoop::Quit
  // Runs the loop until one of the group is signalled (true), the time is over or the loop has ended (false).
  virtual bool RunUntil(LSignalObjectGroup& group, unsigned ms) = 0;
  virtual void ClearEventQueue() = 0;  // drops clicks and keys that wait

  virtual LTextSize MeasureText(const LGuiFont& font, std::string_view text) = 0;
  virtual bool RevealFile(const std::string& path) = 0;  // shows it in the file manager

  // While anything is modal the main window does not close.
  bool IsModal() const { return modalDepth_ > 0; }
  void EnterModal() { ++modalDepth_; }
  void LeaveModal() { --modalDepth_; }

 private:
  int modalDepth_ = 0;
};

class LModalScope {
 public:
  explicit LModalScope(LToolkit& toolkit) : toolkit_(toolkit) { toolkit_.EnterModal(); }
  ~LModalScope() { toolkit_.LeaveModal(); }
  LModalScope(const LModalScope&) = delete;
  LModalScope& operator=(const LModalScope&) = delete;

 private:
  LToolkit& toolkit_;
};
