// A control that draws itself and takes the mouse, the wheel, keys and dropped files.
// Law      a press captures the mouse until the last button is let go: moves outside the control still arrive, and
//          IsCaptured tells them from hovering. A disabled or hidden control gets nothing.
// Units    device-independent pixels of the control; wheel in steps of a notch, up is positive, fractions are usual.
// Threads  [main]
#pragma once
#include "toolkit/LPaintContext.h"
#include "toolkit/LWindow.h"

enum class LMouseButton { None, Left, Right, Middle };

struct LMouseEvent {
  LPoint at;
  LMouseButton button = LMouseButton::None;  // the one that changed; none for moves
  unsigned modifiers = 0;                    // LKey masks
};

class LPaintControl : public LWindow {
 public:
  LPaintControl(LWindow& parent, int id);

  void SetTakesFocus(bool takes);                               // false at first; then keys go to whoever has the focus
  void SetOpaque(bool opaque) { control_->SetOpaque(opaque); }  // true: EvPaint covers all, nothing is painted beneath
  bool TakesFocus() const { return takesFocus_; }
  bool HasFocus() const { return hasFocus_; }
  bool IsCaptured() const { return captured_; }
  bool IsHovered() const { return hovered_; }
  void SetCursor(LCursor cursor) { control_->SetCursor(cursor); }
  void MoveCursor(LPoint where) { control_->MoveCursor(where); }
  void SetAccessibleRole(LAccessibleRole role);
  LAccessibleRole GetAccessibleRole() const { return role_; }
  void SetAccessibleValue(const std::string& value);  // "-6 dB", "an"
  const std::string& GetAccessibleValue() const { return value_; }

  virtual void EvPaint(LPaintContext& context) = 0;
  virtual void EvMouseDown(const LMouseEvent&) {}
  virtual void EvMouseMove(const LMouseEvent&) {}
  virtual void EvMouseUp(const LMouseEvent&) {}
  virtual void EvMouseDoubleClick(const LMouseEvent&) {}  // the second press; its EvMouseUp follows
  virtual bool EvMouseWheel(const LMouseEvent&, double /*steps*/) { return false; }  // false: the parent may scroll
  virtual void EvHover(bool /*over*/) {}
  virtual void EvFocus(bool /*has*/) {}

  // The peer's, and a test's, way in.
  void PeerMouseDown(const LMouseEvent& event, bool second);
  void PeerMouseMove(const LMouseEvent& event) { EvMouseMove(event); }
  void PeerMouseUp(const LMouseEvent& event, bool lastButton);
  void PeerCaptureLost() { captured_ = false; }
  void PeerHover(bool over);
  void PeerFocus(bool has);

 private:
  LPaintControlPeer* control_;  // the base's peer
  bool takesFocus_ = false, hasFocus_ = false, captured_ = false, hovered_ = false;
  LAccessibleRole role_ = LAccessibleRole::Panel;
  std::string value_;
};
