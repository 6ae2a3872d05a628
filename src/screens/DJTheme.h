// The palette, the fonts and the frames that the controls share. Text has a contrast of at least 4.5 to 1 on every
// ground it stands on, of disabled controls at least 3 to 1.
// Units    fonts relative to the system's; pixels are device-independent.
// Threads  [main]
#pragma once
#include <algorithm>
#include <string_view>

#include "console/DJDeckPosition.h"
#include "foundation/LPlatform.h"
#include "toolkit/LPaintContext.h"
#include "toolkit/LToolkit.h"

namespace DJTheme {

inline constexpr LGuiColor kWindow = LGuiColor::FromRgb(0x26282b);  // the ground of the toolkit's own widgets
inline constexpr LGuiColor kPanel = LGuiColor::FromRgb(0x3c3c3c);
inline constexpr LGuiColor kWell = LGuiColor::FromRgb(0x181818);
inline constexpr LGuiColor kFrame = LGuiColor::FromRgb(0x5a5a5a);
inline constexpr LGuiColor kFrameHot = LGuiColor::FromRgb(0xb4b4b4);
inline constexpr LGuiColor kButton = LGuiColor::FromRgb(0x545454);
inline constexpr LGuiColor kButtonHot = LGuiColor::FromRgb(0x646464);
inline constexpr LGuiColor kButtonDown = LGuiColor::FromRgb(0x2e2e2e);
inline constexpr LGuiColor kButtonOff = LGuiColor::FromRgb(0x424242);
inline constexpr LGuiColor kThumb = LGuiColor::FromRgb(0xc8c8c8);
inline constexpr LGuiColor kText = LGuiColor::FromRgb(0xf0f0f0);
inline constexpr LGuiColor kTextDim = LGuiColor::FromRgb(0xbfbfbf);
inline constexpr LGuiColor kTextOff = LGuiColor::FromRgb(0x969696);
inline constexpr LGuiColor kDark = LGuiColor::FromRgb(0x101010);
inline constexpr LGuiColor kGreen = LGuiColor::FromRgb(0x46c85a);
inline constexpr LGuiColor kYellow = LGuiColor::FromRgb(0xf0d23c);
inline constexpr LGuiColor kRed = LGuiColor::FromRgb(0xf05046);

constexpr LGuiColor GetDeckColour(DJDeckPosition deck) {
  if (deck == kDeckA) return {148, 210, 255, 255};
  if (deck == kDeckB) return {243, 250, 36, 255};
  return {0, 0, 0, 255};
}

inline constexpr LGuiFont kSmall{.scale = 0.9}, kNormal{.scale = 1.0}, kBold{.scale = 1.0, .bold = true},
    kTitle{.scale = 1.35, .bold = true}, kClock{.scale = 1.0, .bold = true, .fixedPitch = true};

inline int TextWidth(const LGuiFont& font, std::string_view text) {
  return LPlatform::Toolkit().MeasureText(font, text).width;
}
inline int LineHeight(const LGuiFont& font) { return LPlatform::Toolkit().MeasureText(font, "X").height; }

// The font in the size at which the text just fits, within bounds.
inline LGuiFont FontToFit(LGuiFont font, std::string_view text, int width, int height, double least, double most) {
  font.scale = 1;
  const LTextSize size = LPlatform::Toolkit().MeasureText(font, text);
  const double fits = std::min(double(width) / std::max(size.width, 1), double(height) / std::max(size.height, 1));
  font.scale = std::clamp(fits, least, most);
  return font;
}

inline void DrawPanel(LPaintContext& context, const LRect& box) {
  context.FillRect(box, kWindow);
  context.FillRoundedRect(box, 5, kPanel);
  context.DrawRoundedRect(box, 5, {kFrame});
}

inline void DrawWell(LPaintContext& context, const LRect& box) {
  context.FillRect(box, kPanel);
  context.FillRoundedRect(box, 4, kWell);
  context.DrawRoundedRect(box, 4, {kFrame});
}

}  // namespace DJTheme
