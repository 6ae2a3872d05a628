#include "screens/LCoolButton.h"

#include <algorithm>

#include "control/TKeyTable.h"
#include "foundation/LKey.h"
#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kRadiusPx = 5, kInsetPx = 7, kSmallIconPx = 20, kLargeIconPx = 30;

using Icon = LCoolButton::Icon;

struct IconBox {
  LPaintContext& context;
  LRect box;
  LGuiColor colour;
  // Places in a grid of 0..100 both ways.
  LPointF At(double x, double y) const { return {box.x + box.width * x / 100, box.y + box.height * y / 100}; }
  LRect Box(double x, double y, double w, double h) const {
    return {box.x + int(box.width * x / 100), box.y + int(box.height * y / 100), int(box.width * w / 100),
            int(box.height * h / 100)};
  }
  LGuiPen Pen() const { return {.colour = colour, .width = box.width / 10.0, .roundEnds = true}; }
  void Polygon(std::initializer_list<LPointF> points) const {
    context.FillPolygon({points.begin(), points.size()}, colour);
  }
};

void DrawPlay(const IconBox& i) { i.Polygon({i.At(18, 8), i.At(92, 50), i.At(18, 92)}); }

void DrawPause(const IconBox& i) {
  i.context.FillRect(i.Box(18, 10, 24, 80), i.colour);
  i.context.FillRect(i.Box(58, 10, 24, 80), i.colour);
}

void DrawToStart(const IconBox& i) {
  i.context.FillRect(i.Box(10, 10, 14, 80), i.colour);
  i.Polygon({i.At(92, 10), i.At(28, 50), i.At(92, 90)});
}

void DrawHeadphones(const IconBox& i) {
  i.context.DrawArc(i.Box(12, 12, 76, 80), 0, 180, i.Pen());
  i.context.FillRoundedRect(i.Box(6, 48, 22, 42), 2, i.colour);
  i.context.FillRoundedRect(i.Box(72, 48, 22, 42), 2, i.colour);
}

void DrawRecord(const IconBox& i) { i.context.FillEllipse(i.Box(14, 14, 72, 72), i.colour); }

void DrawShield(const IconBox& i) {
  i.Polygon({i.At(50, 4), i.At(90, 18), i.At(86, 58), i.At(50, 96), i.At(14, 58), i.At(10, 18)});
}

void DrawMicrophone(const IconBox& i) {
  i.context.FillRoundedRect(i.Box(34, 4, 32, 54), i.box.width * 0.16, i.colour);
  i.context.DrawArc(i.Box(20, 22, 60, 54), 180, 180, i.Pen());
  i.context.DrawLine(i.At(50, 78), i.At(50, 94), i.Pen());
}

void DrawFolder(const IconBox& i) {
  i.Polygon({i.At(6, 20), i.At(40, 20), i.At(50, 32), i.At(94, 32), i.At(94, 84), i.At(6, 84)});
}

struct IconRow {
  Icon icon;
  void (*draw)(const IconBox&);
};
constexpr IconRow kIcons[] = {
    {Icon::Play, DrawPlay},
    {Icon::Pause, DrawPause},
    {Icon::ToStart, DrawToStart},
    {Icon::Headphones, DrawHeadphones},
    {Icon::Record, DrawRecord},
    {Icon::Shield, DrawShield},
    {Icon::Microphone, DrawMicrophone},
    {Icon::Folder, DrawFolder},
};

}  // namespace

LCoolButton::LCoolButton(LWindow& parent, DJPanelHost& host, int command, Icon icon, const std::string& name,
                         LGuiColor lit)
    : LPaintControl(parent, command), host_(host), icon_(icon), lit_(lit) {
  SetOpaque(true);
  SetAccessibleRole(LAccessibleRole::Button);
  SetAccessibleName(name);
}

void LCoolButton::SetOn(bool on) {
  if (on == on_) return;
  on_ = on;
  SetAccessibleValue(on ? "an" : "aus");
  Redraw();
}

void LCoolButton::SetIcon(Icon icon) {
  if (icon == icon_) return;
  icon_ = icon;
  Redraw();
}

void LCoolButton::SetCaption(const std::string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Redraw();
}

LCoolButton::Look LCoolButton::GetLook() const {
  if (!IsEnabled()) return {DJTheme::kButtonOff, DJTheme::kTextOff};
  const bool down = IsCaptured() && IsHovered();
  if (on_)
    return {down          ? lit_.Mixed(DJTheme::kDark, 25)
            : IsHovered() ? lit_.Mixed(DJTheme::kText, 25)
                          : lit_,
            DJTheme::kDark};
  return {down ? DJTheme::kButtonDown : IsHovered() ? DJTheme::kButtonHot : DJTheme::kButton, DJTheme::kText};
}

void LCoolButton::ShowKeyInToolTip() {
  const std::string key = LKey(TKeyTable::FindByCommand(Id()).key).GetDisplayText();
  const std::string& name = GetAccessibleName();
  SetToolTip(key.empty() ? name : LText::Format("%s (%s)", name.c_str(), key.c_str()));
}

void LCoolButton::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  const Look look = GetLook();
  context.FillRect(box, DJTheme::kPanel);
  context.FillRoundedRect(box, kRadiusPx, look.ground);
  if (!on_)
    context.DrawRoundedRect(box, kRadiusPx, {IsHovered() && IsEnabled() ? DJTheme::kFrameHot : DJTheme::kFrame});

  box = box.Inset(kInsetPx);
  const int side = std::min({box.height, box.width, caption_.empty() ? kLargeIconPx : kSmallIconPx});
  if (icon_ != Icon::None) {
    LRect strip = caption_.empty() ? box : box.TakeLeft(side + kInsetPx);
    const int x = caption_.empty() ? strip.x + (strip.width - side) / 2 : strip.x;
    DrawIcon(context, {x, strip.y + (strip.height - side) / 2, side, side}, look.ink);
  }
  if (caption_.empty()) return;
  context.DrawText(box, caption_, DJTheme::kNormal, look.ink, icon_ == Icon::None ? ltaCentre : ltaLeft);
}

int LCoolButton::BestWidth() const {
  if (caption_.empty()) return kLargeIconPx + 4 * kInsetPx;
  return 2 * kInsetPx + (icon_ == Icon::None ? 0 : kSmallIconPx + kInsetPx) +
         DJTheme::TextWidth(DJTheme::kNormal, caption_) + kInsetPx;
}

void LCoolButton::DrawIcon(LPaintContext& context, const LRect& box, LGuiColor colour) const {
  for (const IconRow& row : kIcons)
    if (row.icon == icon_) row.draw({context, box, colour});
}

void LCoolButton::EvMouseDown(const LMouseEvent&) { Redraw(); }

void LCoolButton::EvMouseUp(const LMouseEvent& event) {
  Redraw();
  const LRect box{0, 0, Width(), Height()};
  if (event.button == LMouseButton::Left && box.Contains(event.at)) host_.PanelCommand(Id());
}
