#include "effects/LSPParametricEq.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

std::vector<LBiquadSection> Sections(std::span<const LSPEqBandInfo> bands, int sampleRate) {
  std::vector<LBiquadSection> sections;
  for (const LSPEqBandInfo& band : bands) sections.push_back(PeakingSection(band, sampleRate));
  return sections;
}

}  // namespace

LBiquadSection PeakingSection(const LSPEqBandInfo& band, int sampleRate) {
  if (band.centreHz * 2LL >= sampleRate) return {};
  const double amplitude = std::pow(10, band.level.Get() * 0.025);
  const double w = 2 * std::numbers::pi * band.centreHz / sampleRate;
  const double alpha = std::sin(w) / (2 * band.q);
  const double a = alpha / amplitude;
  const double norm = 1 / (a + 1);
  const double b1 = -2 * std::cos(w) * norm;
  return {(1 + alpha * amplitude) * norm, b1, (1 - alpha * amplitude) * norm, b1, (1 - a) * norm};
}

LSoundSource LSPParametricEq::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCParametricEq>(input, std::span<const LSPEqBandInfo>(bands_));
}

LSRCParametricEq::LSRCParametricEq(const LSoundSource& input, std::span<const LSPEqBandInfo> bands)
    : LSoundProcessBase(input),
      cascade_(input.GetChannels(), Sections(bands, input.GetSampleRate()), LBiquadCascade::kTruncate) {
  const auto lifts = [](const LSPEqBandInfo& band) { return band.level.Get() > 0; };
  if (std::any_of(bands.begin(), bands.end(), lifts)) SetPeak(std::max(GetPeak(), kPeakHeadroom));
}

void LSRCParametricEq::Read(int* out, int frames) {
  input_.Read(out, frames);
  cascade_.Run(out, frames);
}

void LSRCParametricEq::Seek(int frame) {
  cascade_.Clear();
  input_.Seek(frame);
}
