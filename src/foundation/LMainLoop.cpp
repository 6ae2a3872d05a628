#include "foundation/LMainLoop.h"

#include <algorithm>
#include <mutex>

bool LMainLoop::Post(const void* owner, std::unique_ptr<LMainLoopTask> task) {
  if (ended_) return false;
  {
    std::lock_guard lock(mutex_);
    items_.push_back({owner, std::move(task), ++sequence_});
  }
  wake_.Signal();
  return true;
}

void LMainLoop::FlushOwner(const void* owner) {
  std::deque<Item> dropped;  // their destructors run outside the lock
  std::lock_guard lock(mutex_);
  for (auto item = items_.begin(); item != items_.end();) {
    if (item->owner != owner) {
      ++item;
      continue;
    }
    dropped.push_back(std::move(*item));
    item = items_.erase(item);
  }
}

void LMainLoop::SetTimer(LMainLoopTimerTarget& target, int id, unsigned ms) {
  ResetTimer(target, id);
  std::uint64_t sequence;
  {
    std::lock_guard lock(mutex_);
    sequence = ++sequence_;
  }
  timers_.push_back({&target, id, clock_.NowUs() + std::uint64_t(ms) * 1000, sequence});
  if (timerChanged_) timerChanged_(timerContext_);
}

void LMainLoop::ResetTimer(LMainLoopTimerTarget& target, int id) {
  std::erase_if(timers_, [&](const Timer& timer) { return timer.target == &target && timer.id == id; });
}

void LMainLoop::ResetTimers(LMainLoopTimerTarget& target) {
  std::erase_if(timers_, [&](const Timer& timer) { return timer.target == &target; });
}

bool LMainLoop::RunOneTask(std::uint64_t beforeSequence) {
  Item item;
  {
    std::lock_guard lock(mutex_);
    if (items_.empty() || items_.front().sequence > beforeSequence) return false;
    item = std::move(items_.front());
    items_.pop_front();
  }
  item.task->RunTask();
  return true;
}

bool LMainLoop::RunOneTimer(std::uint64_t& limit) {
  const std::uint64_t now = clock_.NowUs();
  auto next = timers_.end();
  for (auto timer = timers_.begin(); timer != timers_.end(); ++timer) {
    if (timer->dueUs > now || timer->sequence > limit) continue;
    if (next == timers_.end() || timer->dueUs < next->dueUs ||
        (timer->dueUs == next->dueUs && timer->sequence < next->sequence))
      next = timer;
  }
  if (next == timers_.end()) return false;
  if (RunOneTask(next->sequence)) return true;  // it may set or reset timers: the caller looks afresh
  const Timer due = *next;
  timers_.erase(next);
  due.target->EvLoopTimer(due.id);
  return true;
}

bool LMainLoop::DispatchPending() {
  wake_.Reset();
  std::uint64_t limit;  // what is added while we run waits for the next turn
  {
    std::lock_guard lock(mutex_);
    limit = sequence_;
  }
  bool any = false;
  while (!ended_ && RunOneTimer(limit)) any = true;
  while (!ended_ && RunOneTask(limit)) any = true;
  std::lock_guard lock(mutex_);
  if (!items_.empty()) wake_.Signal();
  return any;
}

unsigned LMainLoop::MsToNextTimer() const {
  if (timers_.empty()) return kWaitForever;
  const std::uint64_t now = clock_.NowUs();
  std::uint64_t first = ~std::uint64_t{0};
  for (const Timer& timer : timers_) first = std::min(first, timer.dueUs);
  return first <= now ? 0 : unsigned((first - now + 999) / 1000);
}

bool LMainLoop::RunOnce(unsigned waitMs) {
  if (ended_) return false;
  const unsigned wait = std::min(waitMs, MsToNextTimer());
  wake_.WaitSignal(wait);
  DispatchPending();
  return !ended_;
}

void LMainLoop::Run() {
  while (RunOnce(kWaitForever)) {
  }
}

void LMainLoop::Quit() {
  ended_ = true;
  wake_.Signal();
}
