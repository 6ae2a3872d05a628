#include "effects/LSPPitchEffects.h"

#include "tempo/LSPPitch.h"
#include "tempo/LSPPitchSpeed.h"

LSoundSource LPitchEffect::OpenSource(LSoundSource& input) {
  return Value(Ratio) == 1000 ? input : OpenPitched(input, Decimal(Ratio));
}

LSoundSource LSPPitchSpeedEffect::OpenPitched(LSoundSource& input, double ratio) {
  return LSPPitchSpeed(ratio).OpenSource(input);
}

LSoundSource LSPPitchEffect::OpenPitched(LSoundSource& input, double ratio) {
  return LSPPitch(ratio).OpenSource(input);
}
