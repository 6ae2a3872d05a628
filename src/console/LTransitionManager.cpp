#include "console/LTransitionManager.h"

#include <algorithm>

void LTransitionManager::AddTransition(int target, int durationMs) {
  if (count_ == kCapacity) {
    LTransition& last = ring_[(first_ + kCapacity - 1) % kCapacity];
    last.target = target;
    last.durationMs = int(std::min<long long>((long long)last.durationMs + durationMs, INT32_MAX));
    return;
  }
  ring_[(first_ + std::size_t(count_)) % kCapacity] = {target, durationMs};
  ++count_;
}

void LTransitionManager::DeleteTransition() {
  if (count_ == 0) return;
  first_ = (first_ + 1) % kCapacity;
  --count_;
}

int TScratchClock::Step(std::uint32_t nowMs) {
  const auto passedMs = std::int32_t(nowMs - lastMs_);
  if (passedMs > 0) {
    lastMs_ = nowMs;
    return std::min<int>(passedMs, kLongestMs);
  }
  if (passedMs < 0) interpolatedMs_ = std::max(interpolatedMs_ - 1, 1);
  lastMs_ = nowMs + std::uint32_t(interpolatedMs_);
  return interpolatedMs_;
}
