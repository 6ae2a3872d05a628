#include "screens/TDBEditSlider.h"

#include <algorithm>
#include <cmath>

#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kThumbPx = 14, kLabelPx = 20;

std::string LevelText(LLevel level) { return level.IsMuted() ? "stumm" : LText::Format("%+d dB", level.Get()); }

}  // namespace

TDBEditSlider::TDBEditSlider(LWindow& parent, int id, std::string name) : LPaintControl(parent, id), name_(std::move(name)) {
  SetAccessibleRole(LAccessibleRole::Slider);
  SetAccessibleName(name_);
  SetAccessibleValue(LevelText(level_));
}

void TDBEditSlider::ShowLevel(LLevel level) {
  const int db = std::min(level.Get(), kMaximumDb);
  level_ = db > kMinimumDb ? LLevel(db) : LLevel(LLevel::kMuted);
  SetAccessibleValue(LevelText(level_));
  Redraw();
}

void TDBEditSlider::SetLevel(LLevel level) {
  const LLevel before = level_;
  ShowLevel(level);
  if (level_ != before && changed_) changed_(level_);
}

void TDBEditSlider::KeyLevelUp() { SetLevel(level_.IsMuted() ? kMinimumDb + 1 : std::min(level_.Get() + 1, kMaximumDb)); }

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

void TDBEditSlider::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  const LRect label = box.TakeTop(kLabelPx);
  context.DrawText(label, name_, DJTheme::kSmall, DJTheme::kTextDim);
  context.DrawText(label, LevelText(level_), DJTheme::kSmall, DJTheme::kText, ltaRight);
  const int middle = box.y + box.height / 2;
  const LRect track{0, middle - 3, Width(), 6};
  context.FillRoundedRect(track, 3, DJTheme::kWell);
  context.FillRoundedRect({0, middle - 3, ThumbX() + kThumbPx / 2, 6}, 3, DJTheme::kTextDim);
  // The place of 0 dB.
  const int zero = -kMinimumDb * (Width() - kThumbPx) / (kMaximumDb - kMinimumDb) + kThumbPx / 2;
  context.FillRect({zero, middle + 5, 1, 4}, DJTheme::kTextDim);
  const LRect thumb{ThumbX(), middle - 9, kThumbPx, 18};
  context.FillRoundedRect(thumb, 3, IsHovered() || IsCaptured() ? DJTheme::kText : DJTheme::kFrameHot);
  context.FillRect({thumb.x + kThumbPx / 2, thumb.y + 3, 1, 12}, DJTheme::kDark);
}
