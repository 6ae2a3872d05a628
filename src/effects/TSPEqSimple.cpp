#include "effects/TSPEqSimple.h"

#include "effects/LSPParametricEq.h"

LSoundSource TSPEqSimple::OpenSource(LSoundSource& input) {
  std::vector<LSPEqBandInfo> bands;
  bands.reserve(kBands);
  for (int band = 0; band < kBands; ++band) bands.push_back({kCentresHz[band], Value(band), kQ});
  return LSPParametricEq(std::move(bands)).OpenSource(input);
}
