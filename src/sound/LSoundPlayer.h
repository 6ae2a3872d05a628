// The playback engine: a refill thread pulls the graph into a ring, the device drains it, a third thread turns the
// device's progress into notifications on the main thread.
// Order    spntfPlay, then spntfTime and spntfLevel about 30 times a second, then spntfStop; never a time after the stop.
// Units    LSoundTime in ms of the source.
// Threads  Start, Stop, EvNotify, the lock for graph changes [main]; Step [player].
// Failure  Start returns false for a source with an error and for a device that does not open; the source is closed.
#pragma once
#include <memory>

#include "foundation/LStepThread.h"
#include "foundation/LThreadRunOnMainThread.h"
#include "sound/LCrossFadeSource.h"
#include "sound/LSoundPlayerLLCA.h"
#include "sound/LSoundTime.h"

class LSoundPlayerNotify {
 public:
  virtual ~LSoundPlayerNotify() = default;
  virtual void spntfPlay(long) {}
  virtual void spntfStop(long) {}
  virtual void spntfCue(long) {}
  virtual void spntfPause(long) {}
  virtual void spntfTime(LSoundTime, long) {}
  virtual void spntfLevel(const LDBMultiChannel<LdB<signed char>>&, long) {}
};

template <class Device>
class LSoundPlayerDoneHandlerThread;

template <class Device>
class LSoundPlayerTemplate final : public LStepThread, public LThreadQueuedNotify {
 public:
  LSoundPlayerTemplate();
  ~LSoundPlayerTemplate() override;

  void SetNotify(LSoundPlayerNotify* target, long id) { target_ = target, id_ = id; }  // outlives this, or null
  bool Start(LSoundSource& source, unsigned short flags);
  void StopPlaying();  // stops the thread and the device, closes the source; no notification
  void Pause();        // keeps ring and position
  bool Resume();       // restarts the refill thread too, if it has ended
  bool IsActive() const { return device_.IsActive(); }
  bool IsPlaying() const { return device_.IsPlaying(); }

  // The engine lock, with the mark that this caller holds it: a path locks at most once and unlocks what it locked.
  void LockEngine();
  void UnlockEngine();
  bool IsEngineLockHeld() const { return lockHeld_; }

  // [main, engine lock]
  LSoundSource& Chain() { return chain_; }   // the head: limiter and crossfade around the given source
  void ReplaceSource(LSoundSource& source);  // wraps it as Start does, without stopping anything
  void RequestCrossFade() { crossFade_.RequestFade(); }
  Device& GetDevice() { return device_; }
  const Device& GetDevice() const { return device_; }

 private:
  friend class LSoundPlayerDoneHandlerThread<Device>;
  void StepsBegin() override;
  LStepResult Step() override;
  void StepsEnd() override;
  LStepResult StepWhileFilling(int remaining);
  LStepResult StepAtEnd();
  void EvNotify() override;
  void NotifyEnded();
  void NotifyReport();
  LSoundSource Wrap(LSoundSource& source);
  bool StartRefill();
  void GivePriorityToRefill();
  void GivePriorityToDoneHandler();

  LSoundPlayerNotify* target_ = nullptr;
  long id_ = 0;
  LSignalObject running_;  // the refill thread has come up since StartRefill
  LSignalObject wakeRefill_;
  Device device_{running_.Ref()};
  LCrossFadeSource crossFade_;
  LSoundSource chain_;
  std::unique_ptr<LSoundPlayerDoneHandlerThread<Device>> doneHandler_;
  LMutex engineLock_{LMutex::Kind::PriorityInheritance};
  bool lockHeld_ = false;  // [main]
  std::atomic<bool> refillRaised_{false}, doneHandlerRaised_{false};
  std::atomic<int> buffersSinceFull_{0};
  std::atomic<bool> ended_{false}, reportPending_{false};
};

using LSoundPlayer = LSoundPlayerTemplate<LSoundPlayerLLCA>;

// Waits for the device's progress and passes it on.
template <class Device>
class LSoundPlayerDoneHandlerThread final : public LStepThread {
 public:
  explicit LSoundPlayerDoneHandlerThread(LSoundPlayerTemplate<Device>& player);
  ~LSoundPlayerDoneHandlerThread() override { StopSteps(); }

 private:
  LStepResult Step() override;
  LSoundPlayerTemplate<Device>& player_;
};

extern template class LSoundPlayerTemplate<LSoundPlayerLLCA>;
extern template class LSoundPlayerDoneHandlerThread<LSoundPlayerLLCA>;
