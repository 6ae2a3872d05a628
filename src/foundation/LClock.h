// Time, monotonic, from one place: every reading in the program goes through here, so that an offline run can supply
// it.
// Units    microseconds since an unspecified start; NowMs in milliseconds, cut to 32 bits (differences are unsigned).
// Threads  [any]
#pragma once
#include <atomic>
#include <cstdint>

class LClock {
 public:
  virtual ~LClock() = default;
  virtual std::uint64_t NowUs() const = 0;
  std::uint32_t NowMs() const { return std::uint32_t(NowUs() / 1000); }
};

class LRealClock final : public LClock {
 public:
  std::uint64_t NowUs() const override;
};

// Stands still until it is advanced. Starts at one second, so that "never" (0) is distinct from "at the start".
class LVirtualClock final : public LClock {
 public:
  std::uint64_t NowUs() const override { return nowUs_.load(std::memory_order_relaxed); }
  void AdvanceUs(std::uint64_t us) { nowUs_.fetch_add(us, std::memory_order_relaxed); }

 private:
  std::atomic<std::uint64_t> nowUs_{1000000};
};
