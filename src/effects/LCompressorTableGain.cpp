#include "effects/LCompressorTableGain.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "sound/LWrap.h"

namespace {

constexpr double kUnity = kUnityGain24;

double DbOfGain24(int gain24) { return 20 * std::log10(gain24 / kUnity); }
int Gain24OfDb(double db) { return SaturateToInt(std::pow(10, db / 20) * kUnity + 0.5); }

// How far the line lies above or below the level that goes in.
double LiftDb(std::span<const LCompressorPoint> line, int db) {
  const auto upper = std::find_if(line.begin(), line.end(), [db](const auto& point) { return point.in.Get() >= db; });
  if (upper == line.begin()) return upper->out.Get() - upper->in.Get();
  const LCompressorPoint& below = *(upper - 1);
  const double liftBelow = below.out.Get() - below.in.Get();
  if (upper == line.end()) return liftBelow;
  const double liftAbove = upper->out.Get() - upper->in.Get();
  return liftBelow + (liftAbove - liftBelow) * (db - below.in.Get()) / (upper->in.Get() - below.in.Get());
}

}  // namespace

LCompressorTableGain::LCompressorTableGain(const LLevel& threshold, double ratio, const LLevel& limit) {
  gains_.fill(kUnityGain24);
  for (std::size_t i = IndexOf(threshold.Get()) + 1; i < gains_.size(); ++i) {
    const int level = int(i) + kLeastDb;
    const int gain = SaturateToInt(gains_[i - 1] * ratio);
    gains_[i] = level + DbOfGain24(gain) < limit.Get() ? gains_[i - 1] : gain;
  }
}

LCompressorTableGain::LCompressorTableGain(std::span<const LCompressorPoint> line) {
  gains_.fill(kUnityGain24);
  if (line.empty()) return;
  std::vector<LCompressorPoint> sorted(line.begin(), line.end());
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.in.Get() < b.in.Get(); });
  for (std::size_t i = 0; i < gains_.size(); ++i) gains_[i] = Gain24OfDb(LiftDb(sorted, int(i) + kLeastDb));
}

int LCompressorTableGain::Greatest24() const { return *std::max_element(gains_.begin(), gains_.end()); }
