// Copies a source into a sink to its end.
// Law      LPRSourceToSink: the sink's rate and channels, held within 16 bits; its end may be faded into a second
//          source. LPRSourceToSinkStreaming: as it is, as long as the source streams or has more.
// Units    blocks of kMaxBlockFrames; progress 0.0 to 1.0
// Threads  [worker]
// Failure  lprFailed for a source or sink with an error, then or later; lprStopped when asked to. What was written stays
//          with the caller, who closes the sink and removes the file.
#pragma once
#include <functional>
#include <string>

#include "foundation/LProcessInterface.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundSource.h"

struct LPRSourceToSink {
  std::string title;
  LSoundSource source;
  LSoundSink sink;
  LSoundSource crossMix = {};  // of the sink's format
  bool useCrossMix = false;
};

struct LPRSourceToSinkStreaming {
  std::string title;
  LSoundSource source;
  LSoundSink sink = {};
  std::function<double()> progress = {};  // how much of the source is done, if somebody knows
};

LProcessResult Process(LProcessInterface& process, LPRSourceToSink& copy);
LProcessResult Process(LProcessInterface& process, LPRSourceToSinkStreaming& copy);
