#include "console/DJMixLaws.h"

#include <cmath>

LLevel CrossFadeLevel(int percent) {
  constexpr double kQuarterTurnPerPercent = 0.015707963267948967;  // pi / 200
  const int gain24 = int(std::sin(percent * kQuarterTurnPerPercent) * kUnityGain24);
  if (gain24 <= 0) return LLevel::kMuted;
  const double half = gain24 < kUnityGain24 ? -0.5 : 0.5;
  return LLevel(int(20 * std::log10(gain24 * 0x1p-24) + half));
}
