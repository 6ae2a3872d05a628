// Peaking bands: each lifts or lowers the surroundings of its centre.
// Law      A = 10^(dB / 40); w = 2 pi f / rate; alpha = sin w / (2 Q); the biquad of A, w and alpha (the peaking filter of
//          Bristow-Johnson's Audio EQ Cookbook); bands in a row, each truncating to whole samples.
// Units    Hz; dB; Q without unit.
// Threads  LSPParametricEq [main]; LSRCParametricEq [player], Read allocates nothing.
// Failure  a band whose centre lies at half the rate or above passes the signal; bands beyond the eighth are left out.
#pragma once
#include <vector>

#include "effects/LBiquadCascade.h"
#include "sound/LSoundProcess.h"
#include "sound/LdB.h"

struct LSPEqBandInfo {
  int centreHz;
  LLevel level;
  double q;
};

LBiquadSection PeakingSection(const LSPEqBandInfo& band, int sampleRate);

class LSPParametricEq final : public LSoundProcess {
 public:
  explicit LSPParametricEq(std::vector<LSPEqBandInfo> bands) : bands_(std::move(bands)) {}
  LSoundSource OpenSource(LSoundSource& input) override;

 private:
  std::vector<LSPEqBandInfo> bands_;
};

class LSRCParametricEq final : public LSoundProcessBase {
 public:
  LSRCParametricEq(const LSoundSource& input, std::span<const LSPEqBandInfo> bands);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // what rang on from before is gone

 private:
  LBiquadCascade cascade_;
};
