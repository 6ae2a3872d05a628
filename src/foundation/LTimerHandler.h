// One-shot timers of an object, by id, on the main loop. A handler that wants repetition sets the timer again.
// Until Enable(true) runs once, requests wait in a list, each id once, so that no timer fires before the loop runs.
// Units    milliseconds.
// Threads  [main]
#pragma once
#include <vector>

#include "foundation/LMainLoop.h"

class LTimerHandler : private LMainLoopTimerTarget {
 public:
  LTimerHandler() = default;
  LTimerHandler(const LTimerHandler&) = delete;
  LTimerHandler& operator=(const LTimerHandler&) = delete;

  void TimerSet(int id, int ms);  // negative ids are ignored; an armed timer moves
  void TimerReset(int id);
  void TimerDestroy();  // all timers of this object, waiting ones included

  static void Enable(bool enabled);  // false until the main loop runs

 protected:
  ~LTimerHandler() { TimerDestroy(); }
  virtual void EvTimer(int id) = 0;

 private:
  void EvLoopTimer(int id) final { EvTimer(id); }
};

// The small form: one timer that calls T::tmntfTimer().
template <class T>
class LTimerCallBack final : public LTimerHandler {
 public:
  explicit LTimerCallBack(T& target) : target_(target) {}
  void Set(int ms) { TimerSet(0, ms); }
  void Reset() { TimerReset(0); }

 private:
  void EvTimer(int) override { target_.tmntfTimer(); }
  T& target_;
};
