// A font, told relative to the system's own, so that text follows the user's settings.
// Units    scale is a factor on the system font's point size.
// Threads  [any]
#pragma once

struct LGuiFont {
  double scale = 1.0;
  bool bold = false;
  bool fixedPitch = false;  // all characters as wide: clocks and counters that must not jitter
  friend bool operator==(const LGuiFont& a, const LGuiFont& b) = default;
};
