// A thread whose work is a step that it repeats. In real time a thread of its own calls the step; in an offline run the
// main loop calls the same step between two slices of the virtual clock. A step that finds nothing to do says what it
// waits for; the thread form waits for that, the offline form asks again after the next slice.
// Threads  Step runs in the role given; in offline runs the role is set around each call.
#pragma once
#include <vector>

#include "foundation/LThread.h"

struct LStepResult {
  enum Kind { Again, Sleep, Wait, Ended } kind = Ended;
  unsigned ms = 0;               // Sleep: then again; Wait: at most
  LSignalObjectRef signal = {};  // Wait only
  static LStepResult GoOn() { return {Again}; }
  static LStepResult SleepMs(unsigned ms) { return {Sleep, ms}; }
  static LStepResult WaitFor(LSignalObjectRef signal, unsigned ms) { return {Wait, ms, signal}; }
  static LStepResult End() { return {}; }
};

class LStepThread;

// The offline run's list of step threads; implemented here, driven by platform/offline.
class LSteps {
 public:
  void Add(LStepThread& thread);
  void Remove(LStepThread& thread);
  void RunAll();  // [main] calls every step until each waits or has ended

 private:
  std::vector<LStepThread*> threads_;
};

class LStepThread : public LThread {
 public:
  explicit LStepThread(std::string name, LThreadRole role) : LThread(std::move(name), role), stepRole_(role) {}
  ~LStepThread() override;

  bool StartSteps(int priority);  // false: the system gives no thread
  void StopSteps();               // request and wait; the step is not called again afterwards
  bool IsStepping() const;

 protected:
  virtual void StepsBegin() {}  // before the first step, on the stepping thread
  virtual LStepResult Step() = 0;
  virtual void StepsEnd() {}  // after the last step, on the stepping thread

 private:
  friend class LSteps;
  void ThreadFunction() final;
  bool RunOffline();  // true: something was done

  LThreadRole stepRole_;
  bool offline_ = false;  // registered with LSteps
};
