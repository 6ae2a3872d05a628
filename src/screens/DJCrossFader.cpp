#include "screens/DJCrossFader.h"

#include <algorithm>

#include "screens/DJTheme.h"

namespace {

constexpr int kKnobPx = 28, kKnobHeightPx = 40, kTrackPx = 8, kTrackRadiusPx = 4, kLetterPx = 36, kGapPx = 14;
constexpr int kLongestTrackPx = 760;  // a hand on the mouse still gets from end to end in one move
constexpr int kTicks = 4;

}  // namespace

DJCrossFader::DJCrossFader(LWindow& parent, int id) : LPaintControl(parent, id) {
  SetOpaque(true);
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

LRect DJCrossFader::Track() const {
  const int width = std::clamp(Width() - 2 * (kLetterPx + 2 * kGapPx), kKnobPx + 1, kLongestTrackPx);
  return {(Width() - width) / 2, (Height() - kTrackPx) / 2, width, kTrackPx};
}

int DJCrossFader::KnobX() const { return Track().x + position_ * (Track().width - kKnobPx) / 100; }

void DJCrossFader::Ask(int position) {
  position = std::clamp(position, 0, 100);
  if (position != position_ && changed_) changed_(position);
}

void DJCrossFader::MoveTo(int x) { Ask((x - grabOffset_ - Track().x) * 100 / (Track().width - kKnobPx)); }

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
  DJTheme::DrawPanel(context, {0, 0, Width(), Height()});
  const LRect track = Track();
  const int letterY = (Height() - kLetterPx) / 2;
  PaintLetter(context, kDeckA, {track.x - kGapPx - kLetterPx, letterY, kLetterPx, kLetterPx});
  PaintLetter(context, kDeckB, {track.Right() + kGapPx, letterY, kLetterPx, kLetterPx});

  for (int i = 0; i <= kTicks; ++i) {
    const int x = track.x + kKnobPx / 2 + i * (track.width - kKnobPx) / kTicks;
    const int half = i * 2 == kTicks ? kKnobHeightPx / 2 + 2 : kKnobHeightPx / 2 - 6;
    context.FillRect({x, Height() / 2 - half, 1, 2 * half}, DJTheme::kFrameHot);
  }
  context.FillRoundedRect(track, kTrackRadiusPx, DJTheme::kWell);
  context.DrawRoundedRect(track, kTrackRadiusPx, {DJTheme::kFrame});

  const LRect knob{KnobX(), (Height() - kKnobHeightPx) / 2, kKnobPx, kKnobHeightPx};
  context.FillRoundedRect(knob, 5, IsHovered() || IsCaptured() ? DJTheme::kText : DJTheme::kThumb);
  context.DrawRoundedRect(knob, 5, {DJTheme::kDark});
  context.FillRect({knob.x + kKnobPx / 2 - 1, knob.y + 5, 2, kKnobHeightPx - 10}, DJTheme::kDark);
}

void DJCrossFader::PaintLetter(LPaintContext& context, DJDeckPosition deck, const LRect& box) const {
  const bool heard = position_ != (deck == kDeckA ? 100 : 0);
  const LGuiColor colour = DJTheme::GetDeckColour(deck);
  const char letter[] = {DeckLetter(deck), 0};
  if (heard) context.FillRoundedRect(box, 5, colour);
  context.DrawRoundedRect(box, 5, {colour});
  context.DrawText(box, letter, DJTheme::kTitle, heard ? DJTheme::kDark : colour, ltaCentre);
}
