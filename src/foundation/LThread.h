// A thread with a stop request that all its waits obey. Stopping is a request; nothing is ever cancelled.
// Units    priority: 4 and 8 background, 20 working level of audio threads, 40 a little above, 91 raised while a buffer
//          runs short. LThreadPriorities maps the numbers to what the machine grants.
// Threads  Start, Stop and the destructor: the owner; the waits: the thread itself; the rest [any].
// Failure  if the system gives no thread, Start returns false and nothing runs.
#pragma once
#include <atomic>
#include <string>
#include <thread>

#include "foundation/LMutex.h"
#include "foundation/LProcessInterface.h"
#include "foundation/LThreadRole.h"

inline constexpr int kPriorityIdle = 4, kPriorityBackground = 8, kPriorityWorking = 20, kPriorityRecording = 40,
                     kPriorityRaised = 91;

// Maps a priority to the machine; implemented in platform/.
class LThreadPriorities {
 public:
  virtual ~LThreadPriorities() = default;
  virtual void Apply(long systemThreadId, int priority) = 0;  // [any] silent where the system refuses
};

class LThread : public LProcessInterface {
 public:
  explicit LThread(std::string name, LThreadRole role = LThreadRole::Worker) : name_(std::move(name)), role_(role) {}
  ~LThread() override;  // a subclass stops itself first: its ThreadFunction must not outlive it
  LThread(const LThread&) = delete;
  LThread& operator=(const LThread&) = delete;

  bool Start(int priority);  // does nothing on a running thread
  void StopThreadSoon();
  void WaitEnded();  // returns at once if it does not run
  void Stop();       // StopThreadSoon and WaitEnded
  bool IsRunning() const { return running_.load(); }
  void SetPriority(int priority);
  int GetPriority() const { return priority_.load(); }
  void NeverRealTime() { neverRealTime_ = true; }  // keeps the number, but never asks for real-time scheduling
  LSignalObjectRef StopSignal() const { return stop_; }
  const std::string& Name() const { return name_; }

  bool IsToStop() override { return stop_.IsSignaled(); }
  LProcessWaitResult ProcessWait(unsigned ms) override;
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) override;
  LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) override;

 protected:
  virtual void ThreadFunction() = 0;

 private:
  void ThreadCallback();

  std::string name_;  // cut to 15 bytes for the system
  LThreadRole role_;
  std::thread thread_;
  std::atomic<long> systemId_{-1};
  std::atomic<int> priority_{kPriorityWorking};
  std::atomic<bool> running_{false};
  bool neverRealTime_ = false;
  LSignalObject stop_, ended_, started_;
  LMutex mutex_;  // start and join
};
