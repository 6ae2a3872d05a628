// The palette and the frames that the controls share. Text has a contrast of at least 4.5 to 1 on every ground it stands on.
// Threads  [main]
#pragma once
#include "console/DJDeckPosition.h"
#include "toolkit/LPaintContext.h"

namespace DJTheme {

inline constexpr LGuiColor kWindow = LGuiColor::FromRgb(0x242424);   // 36
inline constexpr LGuiColor kPanel = LGuiColor::FromRgb(0x3c3c3c);    // 60
inline constexpr LGuiColor kPanelTop = LGuiColor::FromRgb(0x424242);  // 66
inline constexpr LGuiColor kWell = LGuiColor::FromRgb(0x181818);
inline constexpr LGuiColor kFrame = LGuiColor::FromRgb(0x5a5a5a);  // 90
inline constexpr LGuiColor kFrameHot = LGuiColor::FromRgb(0xb4b4b4);  // 180
inline constexpr LGuiColor kButtonTop = LGuiColor::FromRgb(0x5a5a5a);
inline constexpr LGuiColor kButtonBottom = LGuiColor::FromRgb(0x424242);
inline constexpr LGuiColor kText = LGuiColor::FromRgb(0xf0f0f0);
inline constexpr LGuiColor kTextDim = LGuiColor::FromRgb(0xbfbfbf);  // 191
inline constexpr LGuiColor kTextOff = LGuiColor::FromRgb(0x8c8c8c);
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
    kTitle{.scale = 1.25, .bold = true}, kClock{.scale = 2.6, .bold = true, .fixedPitch = true},
    kDigits{.scale = 1.3, .fixedPitch = true};

inline void DrawPanel(LPaintContext& context, const LRect& box) {
  context.FillRoundedRect(box, 4, kPanel);
  context.DrawRoundedRect(box, 4, {kFrame});
}

inline void DrawWell(LPaintContext& context, const LRect& box) {
  context.FillRoundedRect(box, 3, kWell);
  context.DrawRoundedRect(box, 3, {kFrame});
}

}  // namespace DJTheme
