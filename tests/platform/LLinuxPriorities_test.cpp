#include "platform/linux/LLinuxPriorities.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace {

int NiceNow() { return getpriority(PRIO_PROCESS, id_t(syscall(SYS_gettid))); }
int PolicyNow() { return sched_getscheduler(0) & ~SCHED_RESET_ON_FORK; }

TEST(LinuxPriorities, NumbersMapToNiceLevelsAndRealTimeAndBack) {
  LLinuxPriorities priorities;
  std::thread([&] {
    const long id = syscall(SYS_gettid);
    const bool mayRaise = geteuid() == 0 && setpriority(PRIO_PROCESS, id_t(id), -1) == 0;
    setpriority(PRIO_PROCESS, id_t(id), 0);
    for (const auto& [priority, nice] : {std::pair{20, 0}, {8, 10}, {4, 15}}) {
      priorities.Apply(id, priority);
      EXPECT_EQ(NiceNow(), nice);
    }
    priorities.Apply(id, 40);
    EXPECT_EQ(NiceNow(), mayRaise ? -5 : 15);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) priorities.Apply(id, 91);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500))
        << "what is missing is asked once";
    if (mayRaise) {
      EXPECT_TRUE(PolicyNow() == SCHED_RR || NiceNow() == -11);
    }
    priorities.Apply(id, 20);
    EXPECT_EQ(PolicyNow(), SCHED_OTHER);
    if (mayRaise) {
      EXPECT_EQ(NiceNow(), 0);
    }
  }).join();
  priorities.Apply(-1, 91);          // a thread that has ended
  priorities.Apply(0x7ffffffe, 20);  // one that never was
}

}  // namespace
