// Carries small objects of work to the main thread, in the order posted. An object that goes away takes its undelivered
// work with it, so nothing ever arrives at a dead object.
// Threads  RunOnMainThread, PostQueueNotify, PostNotifyFromSender [any] but [device]; handlers [main].
// Failure  posts to an object that no longer accepts, or after the loop's end, are dropped with their data.
#pragma once
#include <cstddef>
#include <memory>

#include "foundation/LMainLoop.h"
#include "foundation/LMutex.h"

class LThreadRunOnMainThreadData {
 public:
  virtual ~LThreadRunOnMainThreadData() = default;
  virtual void MainThreadFunction() = 0;
};

class LThreadRunOnMainThread {
 public:
  LThreadRunOnMainThread() = default;
  virtual ~LThreadRunOnMainThread() { StopAccepting(); }
  LThreadRunOnMainThread(const LThreadRunOnMainThread&) = delete;
  LThreadRunOnMainThread& operator=(const LThreadRunOnMainThread&) = delete;

  void RunOnMainThread(std::unique_ptr<LThreadRunOnMainThreadData> data);
  void FlushEventFromQueue();
  int PostedCount() const;  // posted and not yet run or dropped

  static void Init();     // opens the loop for posts
  static void Destroy();  // drops later posts

 protected:
  // An owner calls it in its destructor, before its data go.
  void StopAccepting();

 private:
  class Task;
  mutable LMutex mutex_;
  bool accepting_ = true;
  int posted_ = 0;
};

// Posts "something happened" without data.
class LThreadQueuedNotify : public LThreadRunOnMainThread {
 public:
  void PostQueueNotify();

 protected:
  void ThreadQueuedNotifyDestroy() { StopAccepting(); }
  virtual void EvNotify() = 0;

 private:
  friend class LThreadQueuedNotifyData;
};

// Posts an id with a copy of some bytes.
class LQueuedNotifyDataHandler : public LThreadRunOnMainThread {
 public:
  void PostNotifyFromSender(unsigned id, const void* data, unsigned long size);

 protected:
  void QueuedNotifyDataHandlerDestroy() { StopAccepting(); }
  virtual void EvQueuedNotifyData(unsigned id, const void* data, unsigned long size) = 0;

 private:
  friend class LQueuedNotifyDataHandlerData;
};
