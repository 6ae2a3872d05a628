// Decoding by helper programs: one file in, one wave file out, each as a job.
// Law      a program is called with its arguments as they are. Where it can only take a name of its own (a short one, or
//          one beside which it writes), it gets a copy, which is removed again.
// Threads  [worker]
// Failure  lprFailed with an error text if the program is missing, cannot be started or fails; lprStopped when asked to:
//          the program is ended then.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

// By the table of decoders (LGetCommandLineDecode), chosen by the input's extension.
struct LCmdLineConvertToWav {
  static constexpr std::size_t kMaxAacPath = 184;  // bytes that these decoders take
  std::string input, output;
};
LProcessResult Process(LProcessInterface& process, LCmdLineConvertToWav& job);

// A decoder that writes its wave beside a copy of the input: `output` is then that wave.
struct LCopiedDecode {
  const char* component;
  const char* option;         // before the name; "" for none
  const char* copyExtension;  // of the copy; "" for that of the input
  const char* status;
  std::string input, output;
};
LProcessResult Process(LProcessInterface& process, LCopiedDecode& job);

// AMR to bare samples: 8000 Hz, one channel, 16 bits.
struct LAmrDecode {
  std::string input, output;
};
LProcessResult Process(LProcessInterface& process, LAmrDecode& job);
