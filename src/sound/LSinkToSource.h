// Joins a sink and a source: what one thread writes another one reads.
// Units    frames of 44100 Hz, 2 channels.
// Threads  the sink [worker], the source [player]; the mutex covers the ring while samples are copied. Reset and the
//          stop signals: the owner, with neither side running. Both sides must not outlive this.
// Failure  without a reader a full ring drops what is written; without a writer an empty ring reads silence.
#pragma once
#include <vector>

#include "foundation/LMutex.h"
#include "foundation/LSignalObject.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundSource.h"

class LSinkToSourceBase {
 public:
  static constexpr int kRingBytes = 1234801;  // one byte more than whole frames
  static constexpr int kChannels = 2;
  static constexpr int kCapacityFrames = kRingBytes / (kChannels * int(sizeof(int)));

  LSinkToSourceBase() : ring_(std::size_t(kCapacityFrames) * kChannels) {}
  LSinkToSourceBase(const LSinkToSourceBase&) = delete;
  LSinkToSourceBase& operator=(const LSinkToSourceBase&) = delete;

  LSoundSink OpenSink();
  LSoundSource OpenSource();
  void Reset();  // empties the ring

  // Signals that end the writer's and the reader's waits; what is then pending is dropped, or read as silence.
  void SetStopSignals(LSignalObjectRef writerStop, LSignalObjectRef readerStop);

 private:
  friend class LSinkToSourceSink;
  friend class LSinkToSourceSource;

  struct State {
    int filled;
    bool writer, reader;
  };
  State GetState() const;
  void SetWriter(bool attached);
  void SetReader(bool attached);
  int Put(const int* samples, int frames);  // what fits
  int Take(int* samples, int frames);       // what there is

  mutable LMutex mutex_;
  std::vector<int> ring_;
  int readFrame_ = 0, filledFrames_ = 0;
  bool writer_ = false, reader_ = false;  // attached
  LSignalObject dataReady_, spaceFreed_;
  LSignalObjectRef writerStop_, readerStop_;
};

class LSinkToSourceSink final : public LSoundSinkBase {
 public:
  explicit LSinkToSourceSink(LSinkToSourceBase& joint);
  ~LSinkToSourceSink() override;
  void Write(const int* samples, int frames) override;  // waits while the ring is full and someone reads

 private:
  LSinkToSourceBase& joint_;
};

class LSinkToSourceSource final : public LSoundSourceBase {
 public:
  explicit LSinkToSourceSource(LSinkToSourceBase& joint);
  ~LSinkToSourceSource() override;
  void Read(int* out, int frames) override;  // waits while the ring is empty and someone writes
  int GetPositionSample() const override { return 0; }
  int GetEndSample() const override;  // frames now in the ring
  bool IsStreaming() const override;
  void WaitForStreamingData(int ms) override;

 private:
  LSinkToSourceBase& joint_;
};
