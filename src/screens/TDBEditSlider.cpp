#include "screens/TDBEditSlider.h"

#include <algorithm>
#include <cmath>

#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kThumbPx = 16, kThumbHeightPx = 20, kTrackPx = 6, kTrackRadiusPx = 3, kZeroTickPx = 5;

std::string LevelText(LLevel level) {
  if (level.IsMuted()) return "stumm";
  return level.Get() == 0 ? "0 dB" : LText::Format("%+d dB", level.Get());
}

}  // namespace

TDBEditSlider::TDBEditSlider(LWindow& parent, int id, std::string name)
    : LPaintControl(parent, id), name_(std::move(name)) {
  SetOpaque(true);
  SetAccessibleRole(LAccessibleRole::Slider);
  SetAccessibleName(name_);
  SetAccessibleValue(LevelText(level_));
}

void TDBEditSlider::ShowLevel(LLevel level) {
  const int db = std::min(level.Get(), kMaximumDb);
  const LLevel shown = db > kMinimumDb ? LLevel(db) : LLevel(LLevel::kMuted);
  if (shown == level_) return;
  level_ = shown;
  SetAccessibleValue(LevelText(level_));
  Redraw();
}

void TDBEditSlider::SetLevel(LLevel level) {
  const LLevel before = level_;
  ShowLevel(level);
  if (level_ != before && changed_) changed_(level_);
}

void TDBEditSlider::KeyLevelUp() {
  SetLevel(level_.IsMuted() ? kMinimumDb + 1 : std::min(level_.Get() + 1, kMaximumDb));
}

void TDBEditSlider::KeyLevelDown() {
  if (level_.Get() > kMinimumDb) SetLevel(level_.Get() - 1);
}

int TDBEditSlider::ThumbX() const {
  if (level_.IsMuted()) return 0;
  return (level_.Get() - kMinimumDb) * (Width() - kThumbPx) / (kMaximumDb - kMinimumDb);
}

LLevel TDBEditSlider::LevelAt(int x) const {
  const int track = std::max(Width() - kThumbPx, 1), at = x - grabOffset_;
  if (at >= track) return kMaximumDb;
  if (at < 0) return LLevel::kMuted;
  return int(std::lround(double(at) * (kMaximumDb - kMinimumDb) / track)) + kMinimumDb;
}

void TDBEditSlider::EvMouseDown(const LMouseEvent& event) {
  if (event.button != LMouseButton::Left) return;
  const int into = event.at.x - ThumbX();
  dragging_ = true;
  grabOffset_ = into >= 0 && into < kThumbPx ? into : kThumbPx / 2;
  SetLevel(LevelAt(event.at.x));
}

void TDBEditSlider::EvMouseMove(const LMouseEvent& event) {
  if (dragging_ && IsCaptured()) SetLevel(LevelAt(event.at.x));
}

void TDBEditSlider::EvMouseUp(const LMouseEvent&) {
  dragging_ = false;
  Redraw();
}

void TDBEditSlider::EvMouseDoubleClick(const LMouseEvent&) {
  dragging_ = false;
  SetLevel(0);
}

bool TDBEditSlider::EvMouseWheel(const LMouseEvent&, double steps) {
  steps > 0 ? KeyLevelUp() : KeyLevelDown();
  return true;
}

void TDBEditSlider::EvHover(bool) { Redraw(); }

int TDBEditSlider::HeightPx() { return DJTheme::LineHeight(DJTheme::kSmall) + 4 + kThumbHeightPx + kZeroTickPx; }

void TDBEditSlider::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  context.FillRect(box, DJTheme::kPanel);
  const LRect label = box.TakeTop(DJTheme::LineHeight(DJTheme::kSmall) + 2);
  context.DrawText(label, name_, DJTheme::kSmall, DJTheme::kTextDim);
  context.DrawText(label, LevelText(level_), DJTheme::kSmall, DJTheme::kText, ltaRight);

  const int middle = box.y + (box.height - kZeroTickPx) / 2;
  const LRect track{0, middle - kTrackPx / 2, Width(), kTrackPx};
  context.FillRoundedRect(track, kTrackRadiusPx, DJTheme::kWell);
  context.FillRoundedRect({0, track.y, ThumbX() + kThumbPx / 2, kTrackPx}, kTrackRadiusPx, DJTheme::kTextDim);
  const int zero = -kMinimumDb * (Width() - kThumbPx) / (kMaximumDb - kMinimumDb) + kThumbPx / 2;
  context.FillRect({zero, Height() - kZeroTickPx, 1, kZeroTickPx}, DJTheme::kTextDim);  // the place of 0 dB

  const LRect thumb{ThumbX(), middle - kThumbHeightPx / 2, kThumbPx, kThumbHeightPx};
  context.FillRoundedRect(thumb, 4, IsHovered() || IsCaptured() ? DJTheme::kText : DJTheme::kThumb);
  context.DrawRoundedRect(thumb, 4, {DJTheme::kDark});
  context.FillRect({thumb.x + kThumbPx / 2 - 1, thumb.y + 4, 2, kThumbHeightPx - 8}, DJTheme::kDark);
}
