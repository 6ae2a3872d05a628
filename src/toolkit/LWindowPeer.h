// What the plain window classes ask of a window system. LToolkit makes a peer for each window; the peer calls the Ev
// operations of its window and outlives no window.
// Units    device-independent pixels.
// Threads  [main]
#pragma once
#include <string>

#include "toolkit/LDialogRow.h"
#include "toolkit/LRect.h"

class LMenu;

enum class LCursor { Arrow, Hand, SizeAcross, SizeUpDown, Hidden };
enum class LAccessibleRole { Panel, Button, CheckBox, Slider, Meter, Text };

class LWindowPeer {
 public:
  virtual ~LWindowPeer() = default;
  virtual void* NativeParent() = 0;  // where children of this window go; the toolkit's own type
  virtual void SetVisible(bool visible) = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void SetBounds(const LRect& bounds) = 0;
  virtual void SetText(const std::string& text) = 0;
  virtual void SetToolTip(const std::string& text) = 0;
  virtual void SetAccessibleName(const std::string& name) = 0;
  virtual void SetFocus() = 0;
  virtual void Redraw(const LRect& box) = 0;  // an empty box is all of it
};

class LMainWindowPeer : public LWindowPeer {
 public:
  virtual void SetMinimumSize(int width, int height) = 0;
  virtual void SetMaximised(bool maximised) = 0;
  virtual void SetStatusText(const std::string& text) = 0;
  virtual void SetMenu(LMenu& menu) = 0;         // builds the bar anew; the menu outlives it
  virtual void UpdateMenuItem(unsigned id) = 0;  // its text, tick, enabled state or key changed
  virtual void Activate() = 0;
  virtual bool Grab(const std::string& path) = 0;  // a PNG of the window; false: no picture could be written
};

class LPaintControlPeer : public LWindowPeer {
 public:
  virtual void SetTakesFocus(bool takes) = 0;
  virtual void SetOpaque(bool opaque) = 0;
  virtual void SetCursor(LCursor cursor) = 0;
  virtual void MoveCursor(LPoint where) = 0;  // where the system allows it
  virtual void AccessibleChanged() = 0;       // role or value text of the control
};

class LListViewPeer : public LWindowPeer {
 public:
  virtual void Rebuild() = 0;  // columns and rows anew
  virtual void RefreshRows(int first, int last) = 0;
  virtual void ShowSelection() = 0;
  virtual void ScrollTo(int row) = 0;
  virtual void EditCell(int row, int column) = 0;
};

class LTabBarPeer : public LWindowPeer {
 public:
  virtual void Rebuild() = 0;
  virtual void ShowSelection() = 0;
};

// The controls of a dialog or of one page. State lives in LDialog; Update pushes one control's state to the screen.
class LDialogPeer {
 public:
  virtual ~LDialogPeer() = default;
  virtual void Update(int id) = 0;
  virtual void SetFocus(int id) = 0;
  virtual void Ended() = 0;  // the dialog's End was called
};

class LProgressDialogPeer {
 public:
  virtual ~LProgressDialogPeer() = default;  // closes it
  virtual void Show() = 0;                   // until then it is modal but unseen
  virtual void Update() = 0;                 // lines, bar and stop button anew from the dialog
};

class LBubbleTipPeer {
 public:
  virtual ~LBubbleTipPeer() = default;  // closes it
};
