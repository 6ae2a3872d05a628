#include "tempo/LSPPitch.h"

#include "tempo/LSPPhaseVoc.h"
#include "tempo/LSPPitchSpeed.h"

LSoundSource LSPPitch::OpenSource(LSoundSource& input) {
  LSoundSource pitched = LSPPitchSpeed(ratio_, true).OpenSource(input);
  const int rate = input.GetSampleRate();
  return LSPPhaseVoc(double(PitchedRate(rate, ratio_)) / rate, quality_).OpenSource(pitched);
}
