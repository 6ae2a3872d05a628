// Pitch without speed: the source is played at another pitch and speed, then stretched back to its own length.
// Law      LSPPitchSpeed, exact, then LSPPhaseVoc with trunc(rate / ratio) / rate.
// Units    ratio 2 is an octave up, at least 0.1; positions in frames of the output, which is as long as the input, but in
//          frames of the pitched source without `quality`, as LSPPhaseVoc's time mode has it.
// Threads  LSPPitch [main]; its source [player].
// Failure  as LSPPitchSpeed.
#pragma once
#include "sound/LSoundProcess.h"

class LSPPitch final : public LSoundProcess {
 public:
  explicit LSPPitch(double ratio, bool quality = true) : ratio_(ratio), quality_(quality) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPPitch(*this); }

 private:
  double ratio_;
  bool quality_;
};
