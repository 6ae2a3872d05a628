// A loop played once, for saving it as a file of its own.
// Units    frames counted from the loop's start: position 0..length.
// Threads  one thread at a time
// Failure  as LLoopSource; past the loop's end there is silence and nothing more is read.
#pragma once
#include "console/LLoopSource.h"

class LLoopSaveSource final : public LSoundProcessBase {
 public:
  LLoopSaveSource(const LSoundSource& input, int start, int end);  // in frames of the input; stands at the start

  void Read(int* out, int frames) override;
  void Seek(int frame) override;
  int GetPositionSample() const override;
  int GetEndSample() const override { return range_.Length(); }

 private:
  LLoopRange range_;
};
