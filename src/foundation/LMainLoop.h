// The main thread's queue of work and its timers. Runs by itself on a wake pipe (Run, RunOnce), inside a toolkit's loop
// (the toolkit watches WakeSignal, arms one timer for MsToNextTimer and calls DispatchPending), or stepped offline.
// Order    tasks run in the order posted; a timer of 0 ms fires after the tasks that were queued before it was set.
// Units    milliseconds of the given clock.
// Threads  Post, FlushOwner, Quit [any]; everything else [main].
// Failure  after Quit and the end of Run, posts are dropped with their data.
#pragma once
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "foundation/LClock.h"
#include "foundation/LMutex.h"
#include "foundation/LSignalObject.h"

class LMainLoopTask {
 public:
  virtual ~LMainLoopTask() = default;
  virtual void RunTask() = 0;  // [main]
};

class LMainLoopTimerTarget {
 public:
  virtual void EvLoopTimer(int id) = 0;  // [main]

 protected:
  ~LMainLoopTimerTarget() = default;
};

class LMainLoop {
 public:
  explicit LMainLoop(const LClock& clock) : clock_(clock) {}
  LMainLoop(const LMainLoop&) = delete;
  LMainLoop& operator=(const LMainLoop&) = delete;

  bool Post(const void* owner, std::unique_ptr<LMainLoopTask> task);  // [any] false: the loop has ended
  void FlushOwner(const void* owner);                                 // [any] drops the owner's queued tasks

  void SetTimer(LMainLoopTimerTarget& target, int id, unsigned ms);  // one-shot; an armed one is re-armed
  void ResetTimer(LMainLoopTimerTarget& target, int id);
  void ResetTimers(LMainLoopTimerTarget& target);

  void Run();                        // until Quit
  bool RunOnce(unsigned waitMs);     // waits for work, dispatches it once; false after Quit
  void Quit();                       // [any]
  void Reopen() { ended_ = false; }  // accepts posts again, for a loop that runs a second time
  bool HasEnded() const { return ended_.load(); }

  // For a host loop.
  bool DispatchPending();  // runs what is due now; true if anything ran
  LSignalObjectRef WakeSignal() const { return wake_; }
  unsigned MsToNextTimer() const;  // kWaitForever without timers
  // Called whenever a timer is set from outside a dispatch, so that the host can re-arm its own.
  void SetTimerChanged(void (*function)(void*), void* context) { timerChanged_ = function, timerContext_ = context; }

 private:
  struct Item {
    const void* owner;
    std::unique_ptr<LMainLoopTask> task;
    std::uint64_t sequence;
  };
  struct Timer {
    LMainLoopTimerTarget* target;
    int id;
    std::uint64_t dueUs;
    std::uint64_t sequence;  // orders a due timer among tasks and other timers
  };
  bool RunOneTask(std::uint64_t beforeSequence);
  bool RunOneTimer(std::uint64_t& limit);

  const LClock& clock_;
  mutable LMutex mutex_;  // guards items_ and sequence_
  std::deque<Item> items_;
  std::uint64_t sequence_ = 0;
  std::vector<Timer> timers_;  // [main]
  LSignalObject wake_;
  std::atomic<bool> ended_{false};
  void (*timerChanged_)(void*) = nullptr;
  void* timerContext_ = nullptr;
};
