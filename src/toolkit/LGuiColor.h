// A colour with opacity.
// Units    0 to 255 a component; alpha 255 is opaque.
// Threads  [any]
#pragma once
#include <algorithm>
#include <cstdint>

struct LGuiColor {
  std::uint8_t red = 0, green = 0, blue = 0, alpha = 255;

  static constexpr LGuiColor FromRgb(unsigned rgb) {  // 0xRRGGBB
    return {std::uint8_t(rgb >> 16), std::uint8_t(rgb >> 8), std::uint8_t(rgb), 255};
  }
  constexpr LGuiColor WithAlpha(int a) const { return {red, green, blue, std::uint8_t(std::clamp(a, 0, 255))}; }
  // percent 0 is this colour, 100 the other.
  constexpr LGuiColor Mixed(LGuiColor other, int percent) const {
    const auto mix = [percent](int a, int b) { return std::uint8_t(a + (b - a) * percent / 100); };
    return {mix(red, other.red), mix(green, other.green), mix(blue, other.blue), mix(alpha, other.alpha)};
  }
  // The sum of two lights, each component held at 255.
  constexpr LGuiColor Plus(LGuiColor other) const {
    const auto add = [](int a, int b) { return std::uint8_t(std::min(255, a + b)); };
    return {add(red, other.red), add(green, other.green), add(blue, other.blue), std::max(alpha, other.alpha)};
  }
  friend constexpr bool operator==(LGuiColor a, LGuiColor b) = default;
};
