#include "sound/LSPConvertSourceRateChannels.h"

#include "sound/LSPConvChannels.h"
#include "sound/LSPConvertRate.h"

void LSPConvertSourceRateChannels(int rate, unsigned char channels, LSoundSource& source) {
  if (source.GetChannels() > channels) source = LSPConvChannels(channels).OpenSource(source);
  if (source.GetSampleRate() != rate) source = LSPConvertRate(rate).OpenSource(source);
  if (source.GetChannels() != channels) source = LSPConvChannels(channels).OpenSource(source);
}
