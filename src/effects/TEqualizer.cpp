#include "effects/TEqualizer.h"

#include "effects/LSPParametricEq.h"

LSoundSource TEqualizer::OpenSource(LSoundSource& input) {
  std::vector<LSPEqBandInfo> bands;
  bands.reserve(kBands);
  for (int band = 0; band < kBands; ++band) bands.push_back({kCentresHz[std::size_t(band)], GetLevel(band), kQ});
  return LSPParametricEq(std::move(bands)).OpenSource(input);
}

void TEqualizer::SetLevel(int band, LLevel level) {
  if (IsBand(band)) levels_[std::size_t(band)] = level;
}

LLevel TEqualizer::GetLevel(int band) const { return IsBand(band) ? levels_[std::size_t(band)] : LLevel(); }
