// The two pitch shifters as effects of a chain: with the speed, like a turntable, and without it.
// Units    ratio in thousandths: 2000 is an octave up; 1000 opens no stage and so passes the signal.
// Threads  [main]; the sources they open [player].
// Failure  as those of LSPPitchSpeed and LSPPitch.
#pragma once
#include "effects/LEffect.h"

class LPitchEffect : public LEffect {
 public:
  enum Parameter { Ratio };
  static constexpr LEffectParameter kParameters[] = {
      {"Verhältnis", "", LSoundProcessParameter::Decimal, 500, 2000, 1000},
  };
  LSoundSource OpenSource(LSoundSource& input) final;

 protected:
  using LEffect::LEffect;
  virtual LSoundSource OpenPitched(LSoundSource& input, double ratio) = 0;
};

class LSPPitchSpeedEffect final : public LPitchEffect {
 public:
  static constexpr int kType = 13;
  LSPPitchSpeedEffect() : LPitchEffect(kType) {}

 private:
  LSoundSource OpenPitched(LSoundSource& input, double ratio) override;
};

class LSPPitchEffect final : public LPitchEffect {
 public:
  static constexpr int kType = 14;
  LSPPitchEffect() : LPitchEffect(kType) {}

 private:
  LSoundSource OpenPitched(LSoundSource& input, double ratio) override;
};
