#include "toolkit/LPaintControl.h"

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

LPaintControl::LPaintControl(LWindow& parent, int id) : LWindow(&parent, id) {
  auto peer = LPlatform::Toolkit().NewPaintControl(*this);
  control_ = peer.get();
  SetPeer(std::move(peer));
}

void LPaintControl::SetTakesFocus(bool takes) {
  takesFocus_ = takes;
  control_->SetTakesFocus(takes);
}

void LPaintControl::SetAccessibleRole(LAccessibleRole role) {
  role_ = role;
  control_->AccessibleChanged();
}

void LPaintControl::SetAccessibleValue(const std::string& value) {
  if (value_ == value) return;
  value_ = value;
  control_->AccessibleChanged();
}

void LPaintControl::PeerMouseDown(const LMouseEvent& event, bool second) {
  captured_ = true;
  if (second)
    EvMouseDoubleClick(event);
  else
    EvMouseDown(event);
}

void LPaintControl::PeerMouseUp(const LMouseEvent& event, bool lastButton) {
  if (lastButton) captured_ = false;
  EvMouseUp(event);
}

void LPaintControl::PeerHover(bool over) {
  hovered_ = over;
  EvHover(over);
}

void LPaintControl::PeerFocus(bool has) {
  hasFocus_ = has;
  EvFocus(has);
}
