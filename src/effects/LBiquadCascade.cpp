#include "effects/LBiquadCascade.h"

#include <algorithm>

namespace {

LBiquadBank NewBank(std::span<const LBiquadSection> sections, bool truncates, double gain) {
  LBiquadBank bank{};
  bank.truncates = truncates;
  bank.gain = gain;
  const auto count = std::size_t(kMostBiquadSections);
  bank.pairCount = std::max(1, int(std::min(sections.size(), count) + 1) / 2);
  for (std::size_t i = 0; i < count; ++i) {
    const LBiquadSection section = i < sections.size() ? sections[i] : LBiquadSection();
    LBiquadPair& pair = bank.pairs[i / 2];
    for (std::size_t lane = i % 2 * 2, channel = 0; channel < 2; ++lane, ++channel) {
      pair.b0[lane] = section.b0;
      pair.b1[lane] = section.b1;
      pair.b2[lane] = section.b2;
      pair.a1[lane] = section.a1;
      pair.a2[lane] = section.a2;
    }
  }
  return bank;
}

}  // namespace

LBiquadCascade::LBiquadCascade(int channels, std::span<const LBiquadSection> sections, Between between, double gain,
                               const LFilterKernels& kernels)
    : kernels_(kernels),
      channels_(channels),
      banks_(std::size_t(channels + 1) / 2, NewBank(sections, between == kTruncate, gain)) {}

void LBiquadCascade::Run(int* samples, int frames) {
  for (int channel = 0; channel < channels_; channel += 2)
    kernels_.biquads(banks_[std::size_t(channel) / 2],
                     {samples + channel, channel + 1 < channels_ ? 1 : 0, channels_, frames});
}

void LBiquadCascade::Clear() {
  for (LBiquadBank& bank : banks_)
    for (LBiquadPair& pair : bank.pairs) {
      std::fill(std::begin(pair.w1), std::end(pair.w1), 0.0);
      std::fill(std::begin(pair.w2), std::end(pair.w2), 0.0);
    }
}
