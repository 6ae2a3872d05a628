// Sends recorded blocks to a server on this machine. The recorder hands blocks over and never waits: a full queue drops
// the block for the stream only, and a server that stalls or dies costs nothing but its own sound.
// Units    samples as they leave the recorder's limiter: raw 32-bit interleaved, in blocks of at most kMaxBlockFrames.
// Threads  Send [worker] of the recorder; SetPipe [main]; the sending on a thread of its own.
// Failure  silent: a block that cannot be sent within some 10 s is dropped, a broken connection is closed.
#pragma once
#include <atomic>
#include <deque>
#include <memory>
#include <vector>

#include "console/LNamedPipe.h"
#include "foundation/LThread.h"

class TStreamSender final : private LThread {
 public:
  static constexpr int kQueueBlocks = 12;

  TStreamSender() : LThread("TStreamSender") {}
  ~TStreamSender() override { Stop(); }

  void SetPipe(LNamedPipe* pipe);  // null stops the sending; the pipe outlives it
  void Send(const int* samples, int count);
  long DroppedBlocks() const { return dropped_; }

 private:
  void ThreadFunction() override;
  bool SendBlock(const std::vector<int>& block);
  std::size_t SendBytes(const char* bytes, std::size_t left);  // what could not be sent

  LMutex mutex_;  // queue_, spare_
  std::deque<std::vector<int>> queue_, spare_;
  LSignalObject queued_;
  LNamedPipe* pipe_ = nullptr;  // changed only while the thread is stopped
  std::atomic<bool> sending_{false};
  std::atomic<long> dropped_{0};
};
