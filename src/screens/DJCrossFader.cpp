#include "screens/DJCrossFader.h"

#include <algorithm>

#include "screens/DJTheme.h"

namespace {

constexpr int kKnobPx = 22, kTrackPx = 8, kLetterPx = 16;

}  // namespace

DJCrossFader::DJCrossFader(LWindow& parent, int id) : LPaintControl(parent, id) {
  SetAccessibleRole(LAccessibleRole::Slider);
  SetAccessibleName("Crossfader");
  SetAccessibleValue("50");
}

void DJCrossFader::SetPosition(int position) {
  position = std::clamp(position, 0, 100);
  if (position == position_) return;
  position_ = position;
  SetAccessibleValue(std::to_string(position_));
  Redraw();
}

int DJCrossFader::KnobX() const { return position_ * std::max(Width() - kKnobPx, 1) / 100; }

void DJCrossFader::Ask(int position) {
  position = std::clamp(position, 0, 100);
  if (position != position_ && changed_) changed_(position);
}

void DJCrossFader::MoveTo(int x) { Ask((x - grabOffset_) * 100 / std::max(Width() - kKnobPx, 1)); }

void DJCrossFader::EvMouseDown(const LMouseEvent& event) {
  if (event.button != LMouseButton::Left) return;
  const int into = event.at.x - KnobX();
  const bool onKnob = into >= 0 && into < kKnobPx;
  grabOffset_ = onKnob ? into : kKnobPx / 2;
  if (!onKnob) MoveTo(event.at.x);
}

void DJCrossFader::EvMouseMove(const LMouseEvent& event) {
  if (IsCaptured()) MoveTo(event.at.x);
}

void DJCrossFader::EvMouseDoubleClick(const LMouseEvent&) { Ask(50); }

bool DJCrossFader::EvMouseWheel(const LMouseEvent&, double steps) {
  Ask(position_ + (steps > 0 ? 2 : -2));
  return true;
}

void DJCrossFader::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  const LRect letters = box.TakeTop(kLetterPx);
  context.DrawText(letters, "A", DJTheme::kBold, DJTheme::GetDeckColour(kDeckA));
  context.DrawText(letters, "B", DJTheme::kBold, DJTheme::GetDeckColour(kDeckB), ltaRight);
  const int middle = box.y + box.height / 2;
  const LRect track{0, middle - kTrackPx / 2, Width(), kTrackPx};
  context.FillRoundedRect(track, 4, DJTheme::kWell);
  context.DrawRoundedRect(track, 4, {DJTheme::kFrame});
  context.FillRect({Width() / 2, middle - 10, 1, 20}, DJTheme::kTextDim);
  const LRect knob{KnobX(), middle - 15, kKnobPx, 30};
  const bool hot = IsHovered() || IsCaptured();
  context.FillRoundedRect(knob, 4, hot ? DJTheme::kText : DJTheme::kFrameHot);
  context.DrawRoundedRect(knob, 4, {DJTheme::kDark});
  context.FillRect({knob.x + kKnobPx / 2 - 1, knob.y + 4, 2, 22}, DJTheme::kDark);
}
