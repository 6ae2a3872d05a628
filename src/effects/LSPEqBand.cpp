#include "effects/LSPEqBand.h"

#include <algorithm>
#include <cmath>

#include "effects/LSPEq.h"

LSoundSource LSPEqBand::OpenSource(LSoundSource& input) {
  LSPEq equaliser;
  for (int bin = 0; bin < LSPEq::kBins; ++bin) {
    // The lowest bin would lie at 0 Hz, where no octave reaches: it goes with its neighbour.
    const double hz = LSPEq::BinHz(std::max(bin, 1), input.GetSampleRate());
    equaliser.SetMagnitude(bin, LSPEq::kPass * std::pow(10, DbAt(hz) * 0.05));
  }
  return equaliser.OpenSource(input);
}

double LSPEqBand::Bell(double hz, double centreHz, double octaves) {
  const double widths = std::log2(hz / centreHz) / octaves;
  return std::exp(std::log(0.5) * 4 * widths * widths);
}

double LSPParametricEqBand::DbAt(double hz) const { return Value(Level) * Bell(hz, Value(Frequency), Decimal(Width)); }

double LSPGraphicEqBand::DbAt(double hz) const {
  double db = 0;
  for (int band = 0; band < kEqCurveBands; ++band) db += Value(band) * Bell(hz, kEqCurveHz[band], kWidthOctaves);
  return db;
}

double LSPEqPointLine::DbAt(double hz) const {
  const auto* const above = std::upper_bound(std::begin(kEqCurveHz), std::end(kEqCurveHz), hz);
  const int right = int(above - std::begin(kEqCurveHz));
  if (right == 0) return Value(0);
  if (right == kEqCurveBands) return Value(kEqCurveBands - 1);
  const int left = right - 1;
  const double way = std::log(hz / kEqCurveHz[left]) / std::log(double(kEqCurveHz[right]) / kEqCurveHz[left]);
  return Value(left) + way * (Value(right) - Value(left));
}
