// The energy of a track over time, in each band of the beat detection.
// Law      step i is the sum of (sample >> 5)^2 over the window that begins at i * hop, in whole units of 2^13: the mean
//          apart from a factor, so that equal rises are exactly equal. The source is read once, for all bands.
// Units    rate in Hz, hop and window in frames, length in steps, lags in steps.
// Threads  a worker; allocates the envelopes once.
// Failure  a geometry without steps gives empty envelopes; samples beyond four times full scale are held there.
#pragma once
#include <array>
#include <functional>
#include <vector>

#include "sound/LSoundSource.h"
#include "tempo/LAlignedDoubles.h"
#include "tempo/LBeatFilterBank.h"
#include "tempo/kernels/LBeatKernels.h"

struct LBeatGeometry {
  static constexpr int kBlockFrames = 8192;
  static constexpr int kMostFrames = 13230000;  // five minutes at 44100 Hz
  static constexpr int kMostRate = 1000000;     // above it nothing is looked for

  LBeatGeometry(int sampleRate, int endFrames);
  int Lag(int band) const;                                                     // what a step is compared with
  int Frames() const { return length > 0 ? (length - 1) * hop + window : 0; }  // what all windows cover

  int rate, hop, window, length;  // length 0: too short or at a rate without sense
};

class LBeatEnvelopes {
 public:
  explicit LBeatEnvelopes(const LBeatGeometry& geometry, const LBeatKernels& kernels = BeatKernels());

  // Reads a source of one channel from its start. `goOn` is asked before each block, with the frames done; false ends.
  bool Read(const LSoundSource& mono, const std::function<bool(int)>& goOn);
  std::span<const double> Band(int band) const { return {bands_[unsigned(band)].data(), unsigned(geometry_.length)}; }

 private:
  static constexpr int kGroups = 3;     // of four lanes
  static constexpr int kPending = 512;  // windows open at once, at most: window / hop is below 500

  struct Mark {  // where the window of a step begins or ends
    int step;
    bool ends;
  };
  using Sums = std::array<double, 4>;

  void MarkBlock(int startFrame, int endFrame);
  void TakeSums(int group);
  void Rebase(int group);

  LBeatGeometry geometry_;
  const LBeatKernels& kernels_;
  std::array<LBeatLanes, kGroups> lanes_;
  int nextStart_ = 1, nextEnd_ = 0;                           // steps without a mark so far
  std::vector<Mark> marks_;                                   // of the block at hand
  std::vector<int> runs_;                                     // frames up to each of them, and to the block's end
  LAlignedDoubles sums_;                                      // four behind each run
  std::array<std::array<Sums, kPending>, kGroups> starts_{};  // the sums where the open windows began
  std::vector<std::vector<double>> bands_;
};
