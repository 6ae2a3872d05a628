// Decodes the sound of a file of any kind into a 16-bit wave of its own rate and channels.
// Threads  [worker]
// Failure  lprFailed if the library cannot read it, lprStopped when asked to; the wave is removed then.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

struct LFFMPEGDecode {
  std::string input, output;
};
LProcessResult Process(LProcessInterface& process, LFFMPEGDecode& job);
