// One channel's memory of a phase vocoder, and the step from an analysed frame to the spectrum it is rebuilt as.
// Law      a peak keeps its own phase advance, the bins of its region follow it; a region whose energy lies late in the
//          frame (an attack) advances bin by bin with the magnitudes from before it, and starts afresh behind it.
// Units    bins 0..B - 1; hops in frames, at least 1; phases in radians, frequencies in radians a frame.
// Threads  [player], or [main] under the player's lock; nothing allocates after construction.
#pragma once
#include <vector>

#include "tempo/LAlignedDoubles.h"
#include "tempo/kernels/LTempoKernels.h"

// The frame in work, which all channels use in turn.
struct LPhaseVocFrame {
  explicit LPhaseVocFrame(int bins);
  int bins;
  LAlignedDoubles magnitude, phase, cross;  // what the analysis gives
  LAlignedDoubles frequency, unwrapped;
  LAlignedDoubles rebuiltMagnitude, rebuiltPhase;
  std::vector<int> peaks, regionStarts, regionOf;
  std::vector<unsigned char> startAfresh;  // by region
  int peakCount = 0;
  LPolarBins Analysis() { return {magnitude.data(), phase.data(), cross.data()}; }
};

struct LComplexArrays {
  explicit LComplexArrays(std::size_t size) : re(size), im(size) {}
  std::size_t size() const { return re.size(); }
  LComplexSpan Span() { return {re.data(), im.data()}; }
  void Clear() {
    re.Clear();
    im.Clear();
  }
  LAlignedDoubles re, im;
};

struct LPhaseVocHops {
  int analysis, synthesis;
};

class LPhaseVocChannel {
 public:
  explicit LPhaseVocChannel(int bins);
  void Reset();
  // Takes over the frame's phases. Bin 0 of `spectrum` is made like the others; it has no meaning.
  void Step(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum);

 private:
  void LockHorizontally(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum);
  void LockToPeaks(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum);
  void StepRegion(LPhaseVocFrame& frame, int region, LPhaseVocHops hops);
  void ForgetAttacks(const LPhaseVocFrame& frame);

  // Of the frame before:
  LAlignedDoubles phase_, rebuiltPhase_, magnitude_;
  std::vector<int> peaks_, regionOf_;
  std::vector<unsigned char> attack_;  // by bin: the peak here was that of an attack
  bool first_ = true;                  // there are no peaks to follow
};
