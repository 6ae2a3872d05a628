#include "foundation/LClock.h"

#include <chrono>

std::uint64_t LRealClock::NowUs() const {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::uint64_t(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}
