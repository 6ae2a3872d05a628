#include "tempo/LBeatOnsets.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kThreshold = 0.7;  // of the standard deviation
constexpr double kLeastStrength = 0.5, kGreatestStrength = 100;

class TRises {
 public:
  TRises(std::span<const double> envelope, int lag) : envelope_(envelope), lag_(lag) {}
  int End() const { return int(envelope_.size()); }
  double At(int i) const { return envelope_[unsigned(i)] - envelope_[unsigned(i - lag_)]; }

  // Of the absolute rise.
  double Deviation() const {
    const int count = End() - lag_;
    double sum = 0, squares = 0;
    for (int i = lag_; i < End(); ++i) sum += std::abs(At(i));
    const double mean = sum / count;
    for (int i = lag_; i < End(); ++i) squares += (std::abs(At(i)) - mean) * (std::abs(At(i)) - mean);
    return std::sqrt(squares / count);
  }

  int Steepest(int from, int to) const {
    int best = from;
    for (int k = from + 1; k < to; ++k)
      if (At(k) > At(best)) best = k;
    return best;
  }

  // The first step of a rise that brings half of what its greatest step brings.
  int Attack(int k) const {
    double most = 0;
    for (int j = k - lag_ + 1; j <= k; ++j) most = std::max(most, Step(j));
    int j = k - lag_ + 1;
    while (j < k && Step(j) < most / 2) ++j;
    return j;
  }

 private:
  double Step(int j) const { return envelope_[unsigned(j)] - envelope_[unsigned(j - 1)]; }

  std::span<const double> envelope_;
  int lag_;
};

}  // namespace

LBeatList FindBeatOnsets(std::span<const double> envelope, int lag, int hop, int band) {
  LBeatList beats;
  const TRises rises(envelope, lag);
  if (lag < 1 || rises.End() <= lag) return beats;
  const double threshold = kThreshold * rises.Deviation();
  double steepest = 0;
  for (int i = lag, last = -1; i < rises.End();) {
    if (!(rises.At(i) >= threshold)) {
      ++i;
      continue;
    }
    const int end = std::min(i + lag, rises.End()), best = rises.Steepest(std::max(lag, i - lag), end);
    if (best == last) {
      i = best + lag + 1;
      continue;
    }
    beats.push_back({best * hop, best, rises.At(i), band, rises.At(best), rises.Attack(best)});
    steepest = std::max(steepest, rises.At(best));
    last = best;
    i = end;
  }
  for (LBeat& beat : beats) {
    beat.strength = beat.strength / steepest * kGreatestStrength;
    beat.rise = beat.rise / steepest * kGreatestStrength;
  }
  std::erase_if(beats, [](const LBeat& beat) { return beat.strength < kLeastStrength; });
  return beats;
}
