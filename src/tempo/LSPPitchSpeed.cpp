#include "tempo/LSPPitchSpeed.h"

#include "sound/LSPConvertRate.h"
#include "sound/LWrap.h"

int PitchedRate(int rate, double ratio) {
  return SaturateToInt(rate / (ratio > kMinPitchRatio ? ratio : kMinPitchRatio));
}

LSoundSource LSPPitchSpeed::OpenSource(LSoundSource& input) {
  const LSoundSource converted = LSPConvertRate(PitchedRate(input.GetSampleRate(), ratio_), !fast_).OpenSource(input);
  return LSoundSource::Make<LSRCPitchSpeed>(converted, input.GetSampleRate());
}

LSRCPitchSpeed::LSRCPitchSpeed(const LSoundSource& converted, int labelledRate) : LSoundProcessBase(converted) {
  SetSampleRate(labelledRate);
}
