#include "screens/TLevelMeter.h"

#include <algorithm>
#include <cmath>

#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kFrameMs = 33, kInsetPx = 3, kBetweenPx = 2;

struct Zone {
  int from, to;  // dB
  LGuiColor lit;
};
constexpr Zone kZones[] = {
    {TLevelMeter::kLowDb, TLevelMeter::kYellowDb, DJTheme::kGreen},
    {TLevelMeter::kYellowDb, TLevelMeter::kRedDb, DJTheme::kYellow},
    {TLevelMeter::kRedDb, TLevelMeter::kHighDb, DJTheme::kRed},
};
constexpr int kNumbersDb[] = {-3, -9, -15, -21, -30, -40};
constexpr int kUnlitPercent = 82;  // towards the ground

}  // namespace

TLevelMeter::TLevelMeter(LWindow& parent, int id, const std::string& name, Scale scale)
    : LPaintControl(parent, id), scale_(scale) {
  SetOpaque(true);
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
  bool above = false;
  for (int i = 0; i < 2; ++i) {
    const LRect bar = Bar(i);
    const int before = BarLength(shown_[i], bar.height);
    shown_[i] = std::max(target_[i], shown_[i] - step);
    const int after = BarLength(shown_[i], bar.height);
    Redraw({bar.x, bar.Bottom() - std::max(before, after), bar.width, std::abs(after - before)});
    above |= shown_[i] > target_[i];
  }
  if (above && !falling_) TimerSet(0, kFrameMs);
  falling_ |= above;
}

int TLevelMeter::BarLength(double db, int length) {
  return int(length * std::clamp((db - kLowDb) / (kHighDb - kLowDb), 0.0, 1.0));
}

LRect TLevelMeter::Numbers() const {
  LRect box{0, 0, Width(), Height()};
  return box.TakeLeft(scale_ == Scale::Numbers ? DJTheme::TextWidth(DJTheme::kSmall, "-40") + 2 * kInsetPx : 0);
}

LRect TLevelMeter::Bar(int channel) const {
  LRect box{0, 0, Width(), Height()};
  box.TakeLeft(Numbers().width);
  box = box.Inset(kInsetPx);
  const int half = (box.width - kBetweenPx) / 2;
  return channel == 0 ? box.TakeLeft(half) : box.TakeRight(half);
}

void TLevelMeter::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  const LRect bars{Bar(0).x, Bar(0).y, Bar(1).Right() - Bar(0).x, Bar(0).height};
  if (context.DirtyRect().Intersected(bars) != context.DirtyRect()) {
    const LRect numbers = box.TakeLeft(Numbers().width);
    context.FillRect(numbers, DJTheme::kPanel);
    DJTheme::DrawWell(context, box);
    PaintNumbers(context);
  }
  for (int i = 0; i < 2; ++i) PaintBar(context, Bar(i), shown_[i]);
}

void TLevelMeter::PaintBar(LPaintContext& context, const LRect& box, double db) const {
  for (const Zone& zone : kZones) {
    const int from = BarLength(zone.from, box.height), to = BarLength(zone.to, box.height);
    const int lit = std::clamp(BarLength(db, box.height), from, to);
    if (lit > from) context.FillRect({box.x, box.Bottom() - lit, box.width, lit - from}, zone.lit);
    if (to > lit)
      context.FillRect({box.x, box.Bottom() - to, box.width, to - lit}, zone.lit.Mixed(DJTheme::kWell, kUnlitPercent));
  }
}

void TLevelMeter::PaintNumbers(LPaintContext& context) const {
  if (scale_ == Scale::None) return;
  LRect column = Numbers();
  column.width -= 2 * kInsetPx;
  const LRect bar = Bar(0);
  const int line = DJTheme::LineHeight(DJTheme::kSmall);
  int above = -line;
  for (const int db : kNumbersDb) {
    const int y = bar.Bottom() - BarLength(db, bar.height);
    context.FillRect({column.Right() + 1, y, kInsetPx, 1}, DJTheme::kTextDim);
    if (y - line / 2 < above || y + line / 2 > Height()) continue;  // no room for it
    context.DrawText({column.x, y - line / 2, column.width, line}, LText::Format("%d", db), DJTheme::kSmall,
                     DJTheme::kTextDim, ltaRight);
    above = y + line / 2;
  }
}
