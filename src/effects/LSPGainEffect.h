// Gain as an effect of a chain: what LSPGain does, with its values in the table.
// Units    percent; in files the gain with 24 fraction bits.
// Threads  [main]; the source it opens [player].
// Failure  none.
#pragma once
#include <array>

#include "effects/LEffect.h"
#include "sound/LSPGain.h"

class LSPGainEffect final : public LEffect {
 public:
  static constexpr int kType = LSPGain::kProcessType;
  static constexpr LEffectParameter kParameters[] = {
      {LSPGain::kParameterName, "%", LSoundProcessParameter::Percent, LSPGain::kMinPercent, LSPGain::kMaxPercent, 100,
       true},
  };
  static constexpr auto kPresets = [] {
    std::array<LEffectPreset, std::size(LSPGain::kPresets)> presets{};
    for (std::size_t i = 0; i < presets.size(); ++i)
      presets[i] = {LSPGain::kPresets[i].name, {LSPGain::kPresets[i].percent}};
    return presets;
  }();

  LSPGainEffect() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;

 protected:
  int StoredValue(int index) const override;
  void LoadStoredValue(int index, int stored) override;
  int ParameterOfChunk(int id) const override;
};
