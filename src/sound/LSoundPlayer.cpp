#include "sound/LSoundPlayer.h"

#include <algorithm>
#include <mutex>

#include "foundation/LPlatform.h"
#include "sound/LSPPeakLimit.h"

namespace {

constexpr unsigned kRefillPauseMs = 5;  // gives way between two writes
constexpr unsigned kRingFullWaitMs = 1000;
constexpr int kStreamingWaitMs = 150;
constexpr int kFramesPerCountedBuffer = 16384;  // capacity / this: reports without a full ring that mean "late"

}  // namespace

template <class Device>
LSoundPlayerTemplate<Device>::LSoundPlayerTemplate() : LStepThread("LSoundPlayer<T>", LThreadRole::Player) {}

template <class Device>
LSoundPlayerTemplate<Device>::~LSoundPlayerTemplate() {
  ThreadQueuedNotifyDestroy();
  StopPlaying();
}

template <class Device>
LSoundSource LSoundPlayerTemplate<Device>::Wrap(LSoundSource& source) {
  LSoundSource limited = source;
  if (source.GetPeak() > kPeak16) limited = LSPPeakLimitNoBuffer(kPeak16).OpenSource(source);
  return crossFade_.OpenSource(limited);
}

template <class Device>
bool LSoundPlayerTemplate<Device>::Start(LSoundSource& source, unsigned short flags) {
  const bool wasActive = IsActive();
  UnlockEngine();
  StopPlaying();
  if (wasActive && target_) target_->spntfStop(id_);
  if (!source.IsOk()) return false;
  chain_ = Wrap(source);
  if (!device_.Init(chain_, flags) || !StartRefill()) {
    chain_.Close();
    device_.Stop();
    return false;
  }
  if (!device_.Start()) {
    StopPlaying();
    return false;
  }
  if (target_) target_->spntfPlay(id_);
  return true;
}

// "Runs" stays signalled when the thread ends: a short source may have been read to its end before the device starts.
template <class Device>
bool LSoundPlayerTemplate<Device>::StartRefill() {
  running_.Reset();
  return StartSteps(kPriorityWorking);
}

template <class Device>
void LSoundPlayerTemplate<Device>::StopPlaying() {
  UnlockEngine();
  StopSteps();
  device_.Stop();
  chain_.Close();
  crossFade_.Clear();
  ended_ = false;
  reportPending_ = false;
}

template <class Device>
void LSoundPlayerTemplate<Device>::Pause() {
  device_.Pause();
  if (target_) target_->spntfPause(id_);
}

template <class Device>
bool LSoundPlayerTemplate<Device>::Resume() {
  if (!IsStepping() && !StartRefill()) return false;
  if (!device_.Play()) return false;
  if (target_) target_->spntfPlay(id_);
  return true;
}

template <class Device>
void LSoundPlayerTemplate<Device>::LockEngine() {
  if (lockHeld_) return;
  engineLock_.lock();
  lockHeld_ = true;
}

template <class Device>
void LSoundPlayerTemplate<Device>::UnlockEngine() {
  if (!lockHeld_) return;
  lockHeld_ = false;
  engineLock_.unlock();
}

template <class Device>
void LSoundPlayerTemplate<Device>::ReplaceSource(LSoundSource& source) {
  chain_ = Wrap(source);
  device_.SetSoundSource(chain_);
}

template <class Device>
void LSoundPlayerTemplate<Device>::StepsBegin() {
  buffersSinceFull_ = 0;
  refillRaised_ = doneHandlerRaised_ = false;
  doneHandler_ = std::make_unique<LSoundPlayerDoneHandlerThread<Device>>(*this);
  doneHandler_->StartSteps(kPriorityWorking);
  running_.Signal();
}

template <class Device>
LStepResult LSoundPlayerTemplate<Device>::Step() {
  wakeRefill_.Reset();
  std::unique_lock lock(engineLock_);
  const int remaining = chain_.GetEndSample() - chain_.GetPositionSample();
  if (remaining >= 1) return StepWhileFilling(remaining);
  if (!chain_.IsStreaming()) return StepAtEnd();

  GivePriorityToRefill();
  const LSoundSource source = chain_;
  lock.unlock();  // the wait must not hold up a graph change
  if (LPlatform::Steps()) return LStepResult::WaitFor(wakeRefill_, kStreamingWaitMs);
  source.WaitForStreamingData(kStreamingWaitMs);
  return LStepResult::SleepMs(kRefillPauseMs);
}

template <class Device>
LStepResult LSoundPlayerTemplate<Device>::StepWhileFilling(int remaining) {
  if (device_.IsNextBufferReady()) {
    device_.WriteBuffer(std::min(remaining, kMaxBlockFrames));
    return LStepResult::SleepMs(kRefillPauseMs);
  }
  buffersSinceFull_ = 0;
  GivePriorityToDoneHandler();
  return LStepResult::WaitFor(wakeRefill_, kRingFullWaitMs);
}

template <class Device>
LStepResult LSoundPlayerTemplate<Device>::StepAtEnd() {
  if (device_.PlayRemainingBuffer()) {
    reportPending_ = true;
    PostQueueNotify();
    return LStepResult::WaitFor(wakeRefill_, kRingFullWaitMs);
  }
  reportPending_ = false;
  ended_ = true;
  PostQueueNotify();
  return LStepResult::End();
}

template <class Device>
void LSoundPlayerTemplate<Device>::StepsEnd() {
  doneHandler_->StopSteps();  // the object stays: the two threads hand priority to each other
}

template <class Device>
void LSoundPlayerTemplate<Device>::GivePriorityToRefill() {
  if (!refillRaised_.exchange(true)) SetPriority(kPriorityRaised);
  if (doneHandlerRaised_.exchange(false)) doneHandler_->SetPriority(kPriorityWorking);
}

template <class Device>
void LSoundPlayerTemplate<Device>::GivePriorityToDoneHandler() {
  if (!doneHandlerRaised_.exchange(true)) doneHandler_->SetPriority(kPriorityRaised);
  if (refillRaised_.exchange(false)) SetPriority(kPriorityWorking);
}

template <class Device>
void LSoundPlayerTemplate<Device>::EvNotify() {
  if (ended_)
    NotifyEnded();
  else if (reportPending_)
    NotifyReport();
}

template <class Device>
void LSoundPlayerTemplate<Device>::NotifyEnded() {
  if (target_) target_->spntfTime(LSoundTimeFromFrames(chain_.GetEndSample(), device_.GetSampleRate()), id_);
  if (!ended_) return;  // the handler started something else
  const bool wasActive = IsActive();
  StopPlaying();
  if (wasActive && target_) target_->spntfStop(id_);
}

template <class Device>
void LSoundPlayerTemplate<Device>::NotifyReport() {
  if (target_) target_->spntfTime(LSoundTimeFromFrames(device_.GetPosition(), device_.GetSampleRate()), id_);
  if (!reportPending_) return;
  const LLevels levels = device_.GetLevels();
  reportPending_ = false;
  if (target_) target_->spntfLevel(levels, id_);
}

template <class Device>
LSoundPlayerDoneHandlerThread<Device>::LSoundPlayerDoneHandlerThread(LSoundPlayerTemplate<Device>& player)
    : LStepThread("LSoundPlayerDoneHandlerThread<T>", LThreadRole::Worker), player_(player) {
  NeverRealTime();  // it only notifies
}

template <class Device>
LStepResult LSoundPlayerDoneHandlerThread<Device>::Step() {
  const LSignalObject& levelReady = player_.device_.LevelReady();
  if (levelReady.IsSignaled()) {
    levelReady.Reset();
    player_.wakeRefill_.Signal();
    player_.reportPending_ = true;
    player_.PostQueueNotify();
    const int late = player_.device_.CapacityFrames() / kFramesPerCountedBuffer;
    if (++player_.buffersSinceFull_ > late) player_.GivePriorityToRefill();
  }
  return LStepResult::WaitFor(levelReady, kRingFullWaitMs);
}

template class LSoundPlayerTemplate<LSoundPlayerLLCA>;
template class LSoundPlayerDoneHandlerThread<LSoundPlayerLLCA>;
