// Thread priorities on Linux: nice levels, and real-time scheduling for a thread whose buffer runs short, as far as the
// machine grants it to an ordinary user.
// Units    priorities as LThread.h; nice levels; RealtimeKit's limit in us of processor time without a pause.
// Threads  Apply [any] but [device]; it may wait kRealtimeKitLimitMs.
// Failure  silent: what is refused leaves the thread as it is. A thread that overstays real-time scheduling is put back
//          to ordinary scheduling by the signal the kernel sends, and may be raised again.
#pragma once
#include <atomic>

#include "foundation/LThread.h"

class LLinuxPriorities final : public LThreadPriorities {
 public:
  static constexpr unsigned kRealtimeKitLimitMs = 100;
  static constexpr int kRealTimePriority = 10;
  static constexpr int kRaisedNice = -11;  // where real-time scheduling is refused

  void Apply(long systemThreadId, int priority) override;

 private:
  void Raise(long systemThreadId);
  bool AskRealtimeKit(long systemThreadId);

  std::atomic<bool> realtimeKitMissing_{false};
};
