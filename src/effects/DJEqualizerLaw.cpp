#include "effects/DJEqualizerLaw.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kTop = 100, kCentre = 50;
constexpr double kDbPerStep = 0.24;                      // 12 dB over the upper half
constexpr double kRadiansPerStep = 0.06283185307179587;  // pi over the lower half
constexpr double kPerUnity24 = 5.960464477539063e-8;     // 2^-24

}  // namespace

LLevel EqualizerDbFromSlider(int position) {
  const int height = kTop - std::clamp(position, 0, kTop);
  if (height >= kCentre) return int((height - kCentre) * kDbPerStep);

  const int gain24 = int(std::sin((kCentre - height) * kRadiansPerStep) * kUnityGain24);
  if (gain24 <= 0) return LLevel::kMuted;
  const double rounding = gain24 < kUnityGain24 ? -0.5 : 0.5;
  return int(20 * std::log10(gain24 * kPerUnity24) + rounding);
}
