#include "screens/TLevelMeter.h"

#include <algorithm>

#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kFrameMs = 33;

}  // namespace

TLevelMeter::TLevelMeter(LWindow& parent, int id, const std::string& name) : LPaintControl(parent, id) {
  SetAccessibleRole(LAccessibleRole::Meter);
  SetAccessibleName(name);
}

void TLevelMeter::SetLevels(LLevel left, LLevel right) {
  target_[0] = std::clamp(left.Get(), kLowDb, kHighDb);
  target_[1] = std::clamp(right.Get(), kLowDb, kHighDb);
  Fall();
}

void TLevelMeter::Clear() { SetLevels(LLevel::kMuted, LLevel::kMuted); }

void TLevelMeter::EvTimer(int) {
  falling_ = false;
  Fall();
}

void TLevelMeter::Fall() {
  const std::uint32_t now = LPlatform::Clock().NowMs();
  const double step = std::min(now - lastMs_, 1000u) * kFallDbPerSecond / 1000.0;
  lastMs_ = now;
  bool changed = false, above = false;
  for (int i = 0; i < 2; ++i) {
    const double next = std::max(target_[i], shown_[i] - step);
    changed |= BarLength(next, Height()) != BarLength(shown_[i], Height());
    shown_[i] = next;
    above |= shown_[i] > target_[i];
  }
  if (changed) Redraw();
  if (above && !falling_) TimerSet(0, kFrameMs);
  falling_ |= above;
}

int TLevelMeter::BarLength(double db, int length) {
  return int(length * std::clamp((db - kLowDb) / (kHighDb - kLowDb), 0.0, 1.0));
}

void TLevelMeter::EvPaint(LPaintContext& context) {
  const LRect box{0, 0, Width(), Height()};
  DJTheme::DrawWell(context, box);
  LRect inside = box.Inset(3);
  const int half = (inside.width - 2) / 2;
  PaintBar(context, inside.TakeLeft(half), shown_[0]);
  PaintBar(context, inside.TakeRight(half), shown_[1]);
}

void TLevelMeter::PaintBar(LPaintContext& context, const LRect& box, double db) const {
  struct Zone {
    int from, to;
    LGuiColor colour;
  };
  constexpr Zone kZones[] = {{kLowDb, kYellowDb, DJTheme::kGreen}, {kYellowDb, kRedDb, DJTheme::kYellow}, {kRedDb, kHighDb, DJTheme::kRed}};
  for (const Zone& zone : kZones) {
    const int from = BarLength(zone.from, box.height);
    const int to = BarLength(std::min<double>(zone.to, db), box.height);
    if (to > from) context.FillRect({box.x, box.Bottom() - to, box.width, to - from}, zone.colour);
  }
}
