#include "effects/LSPWahwah.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "sound/LWrap.h"

namespace {

constexpr double kLeastHz = 20, kLeastDamping = 0.05;
constexpr int kPieceFrames = 128;   // between two looks for states so small that they would slow the processor
constexpr double kNothing = 1e-20;  // far below one step of a sample

// The filter's poles lie inside the unit circle while g < sqrt(q^2 + 4) - q; a tenth is kept from it, and a sixth of the
// rate (g = 1) is never passed, where the centre no longer follows f.
double HighestHz(double damping, int sampleRate) {
  const double g = std::min(1.0, 0.9 * (std::sqrt(damping * damping + 4) - damping));
  return std::asin(g / 2) * sampleRate / std::numbers::pi;
}

}  // namespace

LWahSweep LSPWahwah::Sweep(int sampleRate) const {
  const double damping = std::max(kLeastDamping, 2 * (1 - Percent(Resonance)));
  const double highest = HighestHz(damping, sampleRate);
  const double low = std::max(kLeastHz, Value(Centre) * (1 - Percent(Depth)));
  const double high = Value(Centre) * (1 + Percent(Depth));
  return {std::min(low, highest), std::min(high, highest), sampleRate / (2 * Decimal(Frequency)), damping};
}

LSoundSource LSPWahwah::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCWahwah>(input, Sweep(input.GetSampleRate()));
}

LSRCWahwah::LSRCWahwah(const LSoundSource& input, const LWahSweep& sweep)
    : LSoundProcessBase(input),
      sweep_(sweep),
      slope_((sweep.highHz - sweep.lowHz) / sweep.periodFrames),
      states_(input.GetChannels()) {
  if (sweep.damping < 1) SetPeak(std::max(GetPeak(), kPeakHeadroom));
}

double LSRCWahwah::CentreHz(long long frame) const {
  const double periods = double(frame) / sweep_.periodFrames;
  const auto whole = (long long)periods;
  const double way = sweep_.periodFrames * (periods - double(whole)) * slope_;
  return whole % 2 == 0 ? sweep_.lowHz + way : sweep_.highHz - way;
}

void LSRCWahwah::Read(int* out, int frames) {
  input_.Read(out, frames);
  for (int piece; frames > 0; frames -= piece, out += std::ptrdiff_t(piece) * GetChannels()) {
    piece = std::min(frames, kPieceFrames);
    Filter(out, piece);
  }
}

void LSRCWahwah::Filter(int* out, int frames) {
  std::array<double, kPieceFrames> steps{};
  for (int i = 0; i < frames; ++i)
    steps[std::size_t(i)] = 2 * std::sin(CentreHz(heard_ + i) * std::numbers::pi / GetSampleRate());
  heard_ += frames;

  for (State& state : states_) {
    int* sample = out++;
    for (int i = 0; i < frames; ++i, sample += GetChannels()) {
      const double step = steps[std::size_t(i)];
      const double high = *sample - state.low - sweep_.damping * state.band;
      state.band += step * high;
      state.low += step * state.band;
      *sample = SaturateToInt(state.band);
    }
    if (std::abs(state.low) + std::abs(state.band) < kNothing) state = {};
  }
}

void LSRCWahwah::Seek(int frame) {
  std::fill(states_.begin(), states_.end(), State());
  heard_ = 0;
  input_.Seek(frame);
}
