#include "effects/LEffectTypes.h"

#include <algorithm>

#include "effects/LSPChorus.h"
#include "effects/LSPDRCSimple.h"
#include "effects/LSPDistortion.h"
#include "effects/LSPDoppler.h"
#include "effects/LSPEcho.h"
#include "effects/LSPEqBand.h"
#include "effects/LSPFlanger.h"
#include "effects/LSPGainEffect.h"
#include "effects/LSPHighPass.h"
#include "effects/LSPLowPass.h"
#include "effects/LSPPitchEffects.h"
#include "effects/LSPReverb3.h"
#include "effects/LSPTremolo.h"
#include "effects/LSPVibrato.h"
#include "effects/LSPWahwah.h"
#include "effects/TSPEqSimple.h"
#include "foundation/LText.h"

namespace {

constexpr bool kOffered = true;

template <class Effect>
std::unique_ptr<LEffect> Create() {
  return std::make_unique<Effect>();
}

constexpr LEffectType kRows[] = {
    {LSPGainEffect::kType, "Verstärkung", LSPGainEffect::kParameters, LSPGainEffect::kPresets, Create<LSPGainEffect>,
     kOffered},
    {LSPDRCSimple::kType, "Kompressor", LSPDRCSimple::kParameters, LSPDRCSimple::kPresets, Create<LSPDRCSimple>,
     kOffered},
    {LSPEcho::kType, "Echo", LSPEcho::kParameters, LSPEcho::kPresets, Create<LSPEcho>, kOffered},
    {LSPChorus::kType, "Chor", LSPChorus::kParameters, LSPChorus::kPresets, Create<LSPChorus>, kOffered},
    {LSPDistortion::kType, "Verzerrung", LSPDistortion::kParameters, LSPDistortion::kPresets, Create<LSPDistortion>,
     kOffered},
    {LSPHighPass::kType, "Hochpass", LSPHighPass::kParameters, LSPHighPass::kPresets, Create<LSPHighPass>, kOffered},
    {LSPFlanger::kType, "Flanger", LSPFlanger::kParameters, LSPFlanger::kPresets, Create<LSPFlanger>, kOffered},
    {LSPReverb3::kType, "Hall", LSPReverb3::kParameters, LSPReverb3::kPresets, Create<LSPReverb3>, kOffered},
    {LSPParametricEqBand::kType,
     "Parametrischer EQ",
     LSPParametricEqBand::kParameters,
     {},
     Create<LSPParametricEqBand>,
     !kOffered},
    {LSPGraphicEqBand::kType, "Grafischer EQ", LSPGraphicEqBand::kParameters, {}, Create<LSPGraphicEqBand>, !kOffered},
    {LSPEqPointLine::kType, "Visueller EQ", LSPEqPointLine::kParameters, {}, Create<LSPEqPointLine>, !kOffered},
    {LSPPitchSpeedEffect::kType,
     "Tonhöhenschieber",
     LSPPitchSpeedEffect::kParameters,
     {},
     Create<LSPPitchSpeedEffect>,
     !kOffered},
    {LSPPitchEffect::kType, "Tonhöhenschieber", LSPPitchEffect::kParameters, {}, Create<LSPPitchEffect>, !kOffered},
    {LSPLowPass::kType, "Tiefpass", LSPLowPass::kParameters, {}, Create<LSPLowPass>, kOffered},
    {TSPEqSimple::kType, "7-Band-Equalizer", TSPEqSimple::kParameters, {}, Create<TSPEqSimple>, kOffered},
    {LSPTremolo::kType, "Tremolo", LSPTremolo::kParameters, LSPTremolo::kPresets, Create<LSPTremolo>, kOffered},
    {LSPVibrato::kType, "Vibrato", LSPVibrato::kParameters, LSPVibrato::kPresets, Create<LSPVibrato>, !kOffered},
    {LSPDoppler::kType, "Doppler", LSPDoppler::kParameters, LSPDoppler::kPresets, Create<LSPDoppler>, !kOffered},
    {LSPWahwah::kType, "Wah-Wah", LSPWahwah::kParameters, LSPWahwah::kPresets, Create<LSPWahwah>, kOffered},
};

template <class Matches>
const LEffectType* Find(Matches matches) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows), matches);
  return row == std::end(kRows) ? nullptr : row;
}

}  // namespace

std::span<const LEffectType> LEffectTypes::Rows() { return kRows; }

const LEffectType& FindEffectType(int number) {
  return *Find([&](const LEffectType& row) { return row.number == number; });
}

std::unique_ptr<LEffect> CreateSoundProcessByType(int number) {
  const LEffectType* row = Find([&](const LEffectType& r) { return r.number == number && r.offered; });
  return row ? row->create() : nullptr;
}

const LEffectType* FindEffectTypeByName(std::string_view name) {
  return Find([&](const LEffectType& row) { return row.offered && LText::EqualsNoCase(row.name, name); });
}
