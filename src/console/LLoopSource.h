// A loop in front of a source: what is read comes round at the loop's end, without one.
// Law      a position before the start counts back from the end, one past the end counts on from the start; the end
//          itself stays the end and is left for the start by the next Read.
// Units    frames of the source; a range is start..end, the end outside.
// Threads  OpenSource [main]; the rest [player] or [main, player lock]. Read allocates nothing.
// Failure  a range is made to fit its source; one without length gives silence. A source with an error gives error 2.
#pragma once
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
  void Seek(int frame) override { input_.Seek(range_.Wrap(frame)); }
  int GetEndSample() const override { return kEndless; }
  int AdjustRelativeOffset(int offset, int position) override;
  bool ControlMessage(int code, long* value) override;

  LLoopRange GetRange() const { return range_; }

 private:
  LLoopRange range_;
};
