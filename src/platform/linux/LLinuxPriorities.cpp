#include "platform/linux/LLinuxPriorities.h"

#include <sched.h>
#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <memory>
#include <mutex>

#include "platform/LBounded.h"
#include "platform/linux/LRealtimeKit.h"

namespace {

struct NiceRow {
  int upToPriority, nice;
};
constexpr NiceRow kNice[] = {
    {kPriorityIdle, 15}, {kPriorityBackground, 10}, {kPriorityWorking, 0}, {kPriorityRecording, -5}};

int NiceOf(int priority) {
  for (const NiceRow& row : kNice)
    if (priority <= row.upToPriority) return row.nice;
  return LLinuxPriorities::kRaisedNice;
}

// Only an administrator may take the fork mark back that RealtimeKit leaves on a thread, so it is kept where need be.
// Async-signal-safe.
void MakeOrdinary(pid_t thread) {
  sched_param parameters{};
  if (sched_setscheduler(thread, SCHED_OTHER, &parameters) != 0)
    sched_setscheduler(thread, SCHED_OTHER | SCHED_RESET_ON_FORK, &parameters);
}

void OnTimeOverstayed(int) {
  const int keep = errno;
  MakeOrdinary(0);  // the thread that the kernel signals
  setpriority(PRIO_PROCESS, 0, 0);
  errno = keep;
}

// RealtimeKit gives nothing to a process that could hold a processor for ever. The warning comes before the kill.
void LimitRealTime() {
  static std::once_flag once;
  std::call_once(once, [] {
    struct sigaction action {};
    action.sa_handler = OnTimeOverstayed;
    action.sa_flags = SA_RESTART;
    sigaction(SIGXCPU, &action, nullptr);
    rlimit limit{};
    if (getrlimit(RLIMIT_RTTIME, &limit) != 0) return;
    limit.rlim_max = std::min<rlim_t>(limit.rlim_max, LRealtimeKit::kLongestUs);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, limit.rlim_max / 2);
    setrlimit(RLIMIT_RTTIME, &limit);
  });
}

}  // namespace

void LLinuxPriorities::Apply(long systemThreadId, int priority) {
  if (systemThreadId <= 0) return;
  if (priority >= kPriorityRaised) return Raise(systemThreadId);
  MakeOrdinary(pid_t(systemThreadId));
  setpriority(PRIO_PROCESS, id_t(systemThreadId), NiceOf(priority));
}

void LLinuxPriorities::Raise(long systemThreadId) {
  sched_param parameters{};
  parameters.sched_priority = kRealTimePriority;
  if (sched_setscheduler(pid_t(systemThreadId), SCHED_RR | SCHED_RESET_ON_FORK, &parameters) == 0) return;
  if (AskRealtimeKit(systemThreadId)) return;
  setpriority(PRIO_PROCESS, id_t(systemThreadId), kRaisedNice);
}

bool LLinuxPriorities::AskRealtimeKit(long systemThreadId) {
  if (realtimeKitMissing_) return false;
  LimitRealTime();
  const auto answer = std::make_shared<std::atomic<LRealtimeKit::Answer>>(LRealtimeKit::Answer::Missing);
  const bool inTime = RunBounded(kRealtimeKitLimitMs, [answer, systemThreadId] {
    *answer = LRealtimeKit::MakeRealTime(systemThreadId, kRealTimePriority, kRealtimeKitLimitMs);
  });
  if (!inTime || *answer == LRealtimeKit::Answer::Missing) realtimeKitMissing_ = true;
  return inTime && *answer == LRealtimeKit::Answer::Granted;
}
