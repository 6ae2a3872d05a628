#include "foundation/LThread.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include <algorithm>
#include <mutex>
#include <system_error>

#include "foundation/LPlatform.h"

namespace {

// Decaying filters and fades would otherwise run into denormal numbers, which cost a hundred times as much.
void FlushDenormals() {
#if defined(__SSE2__)
  _mm_setcsr(_mm_getcsr() | 0x8040);  // flush to zero, denormals are zero
#endif
}

long SystemThreadId() {
#if defined(__linux__)
  return long(::syscall(SYS_gettid));
#else
  return 0;
#endif
}

}  // namespace

LThread::~LThread() { Stop(); }

bool LThread::Start(int priority) {
  std::lock_guard lock(mutex_);
  if (running_) return true;
  if (thread_.joinable()) thread_.join();
  stop_.Reset();
  ended_.Reset();
  started_.Reset();
  priority_ = priority;
  running_ = true;
  // The standard library reports a refused thread by an exception; it ends here.
  try {
    thread_ = std::thread([this] { ThreadCallback(); });
  } catch (const std::system_error&) {
    running_ = false;
    return false;
  }
  started_.WaitSignal(kWaitForever);
  SetPriority(priority);
  return true;
}

void LThread::ThreadCallback() {
  tlThreadRole = role_;
  FlushDenormals();
#if defined(__linux__)
  pthread_setname_np(pthread_self(), name_.substr(0, 15).c_str());
#endif
  systemId_ = SystemThreadId();
  started_.Signal();
  ThreadFunction();
  systemId_ = -1;
  running_ = false;
  ended_.Signal();
}

void LThread::StopThreadSoon() { stop_.Signal(); }

void LThread::WaitEnded() {
  std::lock_guard lock(mutex_);
  if (thread_.joinable()) thread_.join();
}

void LThread::Stop() {
  StopThreadSoon();
  WaitEnded();
}

void LThread::SetPriority(int priority) {
  priority_ = priority;
  const long id = systemId_;
  if (id < 0) return;
  if (LThreadPriorities* priorities = LPlatform::Priorities())
    priorities->Apply(id, neverRealTime_ ? std::min(priority, kPriorityRecording) : priority);
}

LProcessWaitResult LThread::ProcessWait(unsigned ms) { return stop_.WaitSignal(ms) ? lpwStopped : lpwTimedOut; }

LProcessWaitResult LThread::ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) {
  LSignalObjectGroup group;
  group.Add(signal);
  return ProcessWaitSignalObjectGroup(group, ms);
}

LProcessWaitResult LThread::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) {
  LSignalObjectGroup withStop = group;
  withStop.Add(stop_);
  const bool any = withStop.Select(ms);
  if (IsToStop()) return lpwStopped;
  return any ? lpwSignalled : lpwTimedOut;
}
