// Puts a wave header in front of the speech stream of a PC Dart file, without decoding it: what can, reads the wave.
// Units    lengths in bytes
// Threads  [worker]
// Failure  lprFailed if the file cannot be opened, or stays locked for a second; lprStopped on request. A wave that could
//          not be written whole is left for its reader to judge.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

struct LPCDartDecode {
  std::string source, wave;  // paths
};

LProcessResult Process(LProcessInterface& process, LPCDartDecode& decode);
