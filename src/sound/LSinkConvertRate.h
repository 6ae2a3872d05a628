// Another sample rate, pushed: what a writer at one rate writes reaches a sink of another. A filter of 15 taps.
// Law      samples are brought to 16 bits (>> 4); out = ((sum of taps 0..7 >> 1) + (sum of taps 8..14 >> 1) + 1024) >>
//          11.
// Units    positions in frames at the writer's rate.
// Threads  the sink's one thread; Write allocates nothing.
// Failure  a rate below 1 or an inner sink with an error gives a sink with an error.
#pragma once
#include <vector>

#include "sound/LConvertRateBase.h"
#include "sound/LSoundSink.h"

namespace LSinkConvertRate {
// A sink to be written at writerRate; the given one if that is its rate. A wide transition. [main, worker]
LSoundSink OpenSink(LSoundSink& sink, int writerRate, bool approximate);
}  // namespace LSinkConvertRate

class LSinkConvertRateBase final : public LSoundSinkBase, public LConvertRateBase {
 public:
  LSinkConvertRateBase(const LSoundSink& sink, int writerRate, bool wideTransition, bool approximate);
  ~LSinkConvertRateBase() override;  // pushes the last frames through the filter

  void Write(const int* samples, int frames) override;
  void Seek(int frame) override;
  void Truncate(int frames) override;
  void Flush() override { sink_->Flush(); }

 private:
  int ToInnerFrames(int frames) const;
  void Restart();
  void Append(const int* samples, int frames);
  void WriteBuffer();
  void PushLastFrames();

  LSoundSink sink_;
  std::vector<int> history_;  // kHistoryFrames frames
  std::vector<int> output_;   // kMaxBlockFrames frames
  int historyFrames_ = 0;
  int index_ = 0;  // of the next output's first frame in the history; beyond it at steps longer than the filter
  int phase_ = 0;
  bool written_ = false;  // something stands in the filter
};
