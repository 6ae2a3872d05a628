// Divides one stream of four channels, 0 and 1 main, 2 and 3 headphones, into two sources for two devices.
// Signal   whichever half runs short pulls the input and feeds both rings; each half reads its own.
// Units    rings in samples, requests and positions in frames.
// Threads  each half on its own [player] thread; the shared mutex covers both rings and the input, so that everything
//          behind it has one reader at a time. Read allocates nothing.
// Failure  a half that stops reading loses the oldest frames of its ring, not the newest.
#pragma once
#include <array>
#include <vector>

#include "foundation/LMutex.h"
#include "sound/LSoundSource.h"

// Empty when both indices are equal. Belongs to the console, as the mutex does.
struct LSplitterRing {
  static constexpr int kCapacitySamples = 1000001;

  LSplitterRing() : samples(kCapacitySamples) {}
  int Filled() const;
  void Clear() { read = write; }
  void Append(const int* in, int count, int width);  // makes room in whole frames of `width`
  void Take(int* out, int count);                    // count is at most Filled()
  void Drop(int count);                              // likewise

  std::vector<int> samples;
  int read = 0, write = 0;
};

class LSplitterPrimarySource : public LSoundSourceBase {
 public:
  // map    for input channels 0..3 the channel of the output stream that each feeds, or -1 for none
  // width  channels of both output streams; 0: each what its own map needs (the secondary reports the main one's)
  LSplitterPrimarySource(const LSoundSource& input, LSplitterRing& main, LSplitterRing& phones,
                         const std::array<int, 4>& map, LMutex& mutex, int width = 0);

  void Read(int* out, int frames) override;
  int GetPositionSample() const override;
  int GetEndSample() const override { return input_.GetEndSample(); }
  void Seek(int frame) override;  // of the input; empties both rings
  bool ControlMessage(int code, long* value) override { return input_.ControlMessage(code, value); }
  int AdjustRelativeOffset(int offset, int position) override { return input_.AdjustRelativeOffset(offset, position); }
  bool IsStreaming() const override { return input_.IsStreaming(); }
  void WaitForStreamingData(int ms) override { input_.WaitForStreamingData(ms); }

  // This half leaves out its next frames: after a common seek, where it had played on further than the other.
  void SkipFrames(int frames);
  void ForgetSkip();

  // Until EndDeferredSeek a seek is only remembered; that tells the place, or where the half stands if none came.
  void DeferSeek();
  int EndDeferredSeek();

 protected:
  virtual LSplitterRing& OwnRing() const { return main_; }
  LSplitterRing& Phones() const { return phones_; }

 private:
  static int Width(int first, int second, int width);
  void Fill(int frames);
  void FeedRing(LSplitterRing& ring, int firstChannel, int width, int frames);
  void Discard();

  LSoundSource input_;
  LSplitterRing& main_;
  LSplitterRing& phones_;
  std::array<int, 4> map_;
  LMutex& mutex_;
  int mainChannels_, phonesChannels_;
  int skipFrames_ = 0;
  bool deferSeek_ = false;
  int deferredFrame_ = 0;
  std::vector<int> scratch_, staging_;  // kMaxBlockFrames frames
};

class LSplitterSecondarySource final : public LSplitterPrimarySource {
 public:
  using LSplitterPrimarySource::LSplitterPrimarySource;

 protected:
  LSplitterRing& OwnRing() const override { return Phones(); }
};
