// A source played backward: every read takes the frames in front of the position and turns their order round.
// Units    frames; the position falls by what was read and stops at 0, in front of which there is silence.
// Threads  LSPReverse [main]; LSRCReverse [player], Read allocates nothing.
#pragma once
#include "sound/LSoundProcess.h"

class LSPReverse final : public LSoundProcess {
 public:
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCReverse final : public LSoundProcessBase {
 public:
  using LSoundProcessBase::LSoundProcessBase;
  void Read(int* out, int frames) override;
};
