#include "sound/LConvertRateBase.h"

#include <cmath>
#include <numeric>

namespace {

using Real = long double;

constexpr Real kUnity = 65536;
constexpr int kMaxApproximatePhases = 255;
constexpr double kGoodEnough = 1e-5;  // of the ratio

// The modified Bessel function of order 0, by the start of its series.
Real I0(Real x) {
  const Real square = x * x;
  Real term = 1, sum = 1;
  for (int k = 1; k <= kRateBesselTerms; ++k) {
    term *= square / (4 * k * k);
    sum += term;
  }
  return sum;
}

LRateWindow DownWindow(int sourceRate, int targetRate, bool wideTransition) {
  constexpr Real kBeta = 4.538L;
  const Real ratio = Real(targetRate) / sourceRate;
  Real cutoff = ratio - (wideTransition ? 0.09375L : 0.046875L);
  if (cutoff <= 0) cutoff = ratio / 2;  // a ratio so small that the transition is wider than the band
  return {cutoff, std::acos(Real(-1)) * cutoff, kUnity * cutoff / I0(kBeta), kBeta};
}

LRateWindow UpWindow() {
  constexpr Real kBeta = 2.12L;
  return {0.975L, 3.0630528372500483L, 63897.6L / I0(kBeta), kBeta};
}

int RoundHalfUp(double value) { return int(std::floor(value + 0.5)); }

}  // namespace

LConvertRateBase::LConvertRateBase(int sourceRate, int targetRate, int taps, bool wideTransition, bool approximate,
                                   Rows rows)
    : taps_(taps), window_(sourceRate >= targetRate ? DownWindow(sourceRate, targetRate, wideTransition) : UpWindow()) {
  approximate ? FindApproximate(sourceRate, targetRate) : FindExact(sourceRate, targetRate);
  if (step_ == 0) step_ = 1;
  if (rows == Rows::OnRequest) return;
  table_.reserve(std::size_t(phases_) * std::size_t(taps_));
  for (int phase = 0; phase < phases_; ++phase)
    for (int tap = 0; tap < taps_; ++tap) table_.push_back(Coefficient(phase, tap));
}

void LConvertRateBase::FindExact(int sourceRate, int targetRate) {
  phases_ = targetRate / std::gcd(sourceRate, targetRate);
  step_ = int((long long)phases_ * sourceRate / targetRate);
}

void LConvertRateBase::FindApproximate(int sourceRate, int targetRate) {
  const double ratio = double(sourceRate) / targetRate;
  double best = ratio;
  for (int n = 1; n <= kMaxApproximatePhases && best >= kGoodEnough; ++n) {
    const double error = std::fabs(ratio - (RoundHalfUp(ratio * n) & 0xffff) / double(n));
    if (error >= best) continue;
    best = error;
    phases_ = n;
  }
  step_ = RoundHalfUp(ratio * phases_);
}

int LConvertRateBase::Coefficient(int phase, int tap) const {
  const int half = taps_ / 2;
  const Real t = Real(tap - half) - Real(phase) / phases_;
  if (t == 0) return int(kUnity * window_.cutoff + 0.5L);
  const Real angle = window_.angular * t;
  const Real edge = Real(half + 1);
  const Real value = std::sin(angle) / angle * window_.gain * I0(window_.beta * std::sqrt(1 - t * t / (edge * edge)));
  return int(value < 0 ? value - 0.5L : value + 0.5L);
}
