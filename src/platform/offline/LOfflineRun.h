// Drives the whole program faster than real time: due timers and notifications, the steps of all step threads until
// each waits, one rendered slice, and the clock moves on by exactly that slice. A run depends on its input alone.
// Units    frames of 44100 Hz; one slice is kWantedSliceFrames.
// Threads  [main]
#pragma once
#include "foundation/LClock.h"
#include "foundation/LMainLoop.h"
#include "foundation/LStepThread.h"
#include "platform/offline/LOfflineBackend.h"

class LOfflineRun {
 public:
  LOfflineRun(LMainLoop& loop, LVirtualClock& clock, LSteps& steps, LOfflineBackend& backend)
      : loop_(loop), clock_(clock), steps_(steps), backend_(backend) {}

  void RunSlice();
  void RunFrames(long frames);  // rounded up to slices
  void RunMs(long ms) { RunFrames(ms * 441 / 10); }
  void RunUntilQuit();  // until the loop has been quit
  long Frames() const { return frames_; }

 private:
  LMainLoop& loop_;
  LVirtualClock& clock_;
  LSteps& steps_;
  LOfflineBackend& backend_;
  long frames_ = 0;           // rendered so far
  std::uint64_t timeUs_ = 0;  // frames_ as time
};
