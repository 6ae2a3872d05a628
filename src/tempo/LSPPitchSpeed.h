// Speed and pitch together, like a turntable: a rate converter whose output is labelled with its input's rate.
// Law      converts to trunc(rate / ratio), the ratio at least 0.1.
// Units    ratio 1 is normal, 2 twice as fast and an octave higher; positions in frames of the output, as it is heard.
// Threads  LSPPitchSpeed [main]; LSRCPitchSpeed [player], Read allocates nothing.
// Failure  a ratio above the rate leaves no frame: lseDamaged.
#pragma once
#include "sound/LSoundProcess.h"

inline constexpr double kMinPitchRatio = 0.1;

int PitchedRate(int rate, double ratio);  // trunc(rate / ratio); a ratio that is no number counts as the least

class LSPPitchSpeed final : public LSoundProcess {
 public:
  // fast: every ratio is met exactly, and a row of the filter is computed when it is first used; else nearly, with at
  // most 255 rows.
  explicit LSPPitchSpeed(double ratio = 1, bool fast = false) : ratio_(ratio), fast_(fast) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPPitchSpeed(*this); }

 private:
  double ratio_;
  bool fast_;
};

class LSRCPitchSpeed final : public LSoundProcessBase {
 public:
  LSRCPitchSpeed(const LSoundSource& converted, int labelledRate);
  void Read(int* out, int frames) override { input_.Read(out, frames); }
};
