// A filter given by the table of its biquads.
// Law      x = sample * gain; sections in direct form II, fractions kept between them; the last result truncated. Without
//          sections every sample becomes 0.
// Units    a table row is b0, b1, b2, a1, a2.
// Threads  LSPFilterIIRBiquad [main]; LSRCFilterIIRBiquad on the thread that reads it, Read allocates nothing.
// Failure  sections beyond the fourth are left out.
#pragma once
#include <vector>

#include "effects/LBiquadCascade.h"
#include "sound/LSoundProcess.h"

class LSPFilterIIRBiquad final : public LSoundProcess {
 public:
  LSPFilterIIRBiquad(int sections, const double* table, double gain);
  LSoundSource OpenSource(LSoundSource& input) override;

 private:
  std::vector<double> table_;
  double gain_;
};

class LSRCFilterIIRBiquad final : public LSoundProcessBase {
 public:
  static constexpr int kMostSections = 4;

  LSRCFilterIIRBiquad(const LSoundSource& input, int sections, const double* table, double gain);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // begins anew, from silence

 private:
  int sections_;
  LBiquadCascade cascade_;
};
