// Rate and channels of a source in the cheap order: fewer channels first, then the rate, then more channels.
// Units    Hz
// Threads  [main, worker]
// Failure  a source with an error stays as it is.
#pragma once
#include "sound/LSoundSource.h"

void LSPConvertSourceRateChannels(int rate, unsigned char channels, LSoundSource& source);  // in place
