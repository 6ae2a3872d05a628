// A loop in front of a source: what is read comes round at the loop's end, without one.
// Law      a position before the start counts back from the end, one past the end counts on from the start; the end
//          itself stays the end and is left for the start by the next Read.
// Signal   a short loop is read from its input once and then repeated from memory: a jump of the input costs a refill
//          of what stands in front, and a loop of some frames would take thousands of them a second.
// Units    frames of the source; a range is start..end, the end outside.
// Threads  OpenSource [main]; the rest [player] or [main, player lock]. Read allocates nothing.
// Failure  a range is made to fit its source; one without length gives silence. A source with an error gives error 2.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"

struct LLoopRange {
  int start = 0, end = 0;  // 0 <= start <= end

  // Whatever range is asked for, made to fit a source that ends at inputEnd.
  static LLoopRange Fit(int start, int end, int inputEnd);
  int Length() const { return end - start; }
  int Wrap(long long frame) const;
};

class LLoopSource {
 public:
  static LSoundSource OpenSource(const LSoundSource& source, int start, int end);
};

class LLoopSourceBase final : public LSoundProcessBase {
 public:
  LLoopSourceBase(const LSoundSource& input, int start, int end);

  void Read(int* out, int frames) override;
  void Seek(int frame) override;
  int GetPositionSample() const override { return repeating_ ? repeatAt_ : input_.GetPositionSample(); }
  int GetEndSample() const override { return kEndless; }
  int AdjustRelativeOffset(int offset, int position) override;
  bool ControlMessage(int code, long* value) override;

  LLoopRange GetRange() const { return range_; }

 private:
  static constexpr int kRepeatedFrames = 4096;  // the longest loop kept in memory
  void ReadInput(int* out, int frames);
  void Repeat(int* out, int frames);

  LLoopRange range_;
  std::vector<int> kept_;   // of the loop, interleaved; empty if it is long
  int keptFrames_ = 0;      // from its start on
  bool repeating_ = false;  // all of it is kept, and the input is left alone
  int repeatAt_ = 0;        // frame, while repeating
};
