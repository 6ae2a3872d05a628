#include "tempo/LBeatFilterBank.h"

#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr long double kDesignRate = 44100;

struct TBandRow {
  int lowHz, highHz;  // 0: open on this side
  int timeConstantMs;
};

constexpr TBandRow kBands[kBeatBands] = {
    {0, 80, 50},      {80, 160, 50},    {160, 320, 50},   {320, 640, 50}, {640, 1280, 40}, {1280, 2560, 30},
    {2560, 4000, 20}, {4000, 6000, 20}, {6000, 8000, 10}, {8000, 0, 10},  {0, 0, 50},
};

// The outer bands are constants of the detection, fixed to the last bit.
constexpr LBeatFilter kLowest{
    {{1, 2, 1, -1.979030470547778, 0.9791590313360797}, {1, 2, 1, -1.9911850191222822, 0.9913143694882937}},
    2,
    1.0393365820760003e-09,
    50};
constexpr LBeatFilter kHighest{
    {{1, -2, 1, -0.4542475801634096, 0.08731500560118874}, {1, -2, 1, -0.6199802267798911, 0.48402288353699097}},
    2,
    0.20271577969980312,
    10};

enum class TSide { HighPass, LowPass };

// Adds the two sections of one side; gives their gain.
long double AddSide(LBeatFilter& filter, TSide side, int edgeHz) {
  const long double pi = std::numbers::pi_v<long double>;
  const long double k = std::tan(pi * edgeHz / kDesignRate);
  long double gain = 1;
  for (const long double angle : {pi / 8, 3 * pi / 8}) {  // of the poles; 1 / Q is twice the cosine
    const long double damping = 2 * std::cos(angle) * k, whole = 1 + damping + k * k;
    filter.table[filter.sections++] = {1, side == TSide::LowPass ? 2.0 : -2.0, 1, double(2 * (k * k - 1) / whole),
                                       double((1 - damping + k * k) / whole)};
    gain *= (side == TSide::LowPass ? k * k : 1) / whole;
  }
  return gain;
}

LBeatFilter Designed(const TBandRow& row) {
  LBeatFilter filter{{}, 0, 1, row.timeConstantMs};
  long double gain = 1;
  if (row.lowHz > 0) gain *= AddSide(filter, TSide::HighPass, row.lowHz);
  if (row.highHz > 0) gain *= AddSide(filter, TSide::LowPass, row.highHz);
  filter.gain = double(gain);
  return filter;
}

std::array<LBeatFilter, kBeatBands> Bank() {
  std::array<LBeatFilter, kBeatBands> bank{};
  for (unsigned band = 0; band < bank.size(); ++band) bank[band] = Designed(kBands[band]);
  bank[0] = kLowest;
  bank[9] = kHighest;
  return bank;
}

}  // namespace

const LBeatFilter& BeatFilter(int band) {
  static const std::array<LBeatFilter, kBeatBands> bank = Bank();
  return bank[unsigned(band)];
}
