#include "effects/LSPGainEffect.h"

namespace {
constexpr int kOldChunk = 2;  // of the gain, in files of earlier versions
}

LSoundSource LSPGainEffect::OpenSource(LSoundSource& input) {
  return LSPGain(LSPGain::Gain24OfPercent(Value(0))).OpenSource(input);
}

int LSPGainEffect::StoredValue(int index) const { return LSPGain::Gain24OfPercent(Value(index)); }

void LSPGainEffect::LoadStoredValue(int index, int stored) { LoadValue(index, LSPGain::PercentOfGain24(stored)); }

int LSPGainEffect::ParameterOfChunk(int id) const { return id == kOldChunk ? 0 : LEffect::ParameterOfChunk(id); }
