#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "foundation/LProcessInterface.h"
#include "foundation/LStepThread.h"
#include "foundation/LThread.h"
#include "foundation/LThreadRunOnMainThread.h"
#include "foundation/LTimerHandler.h"
#include "support/LTestPlatform.h"

namespace {

constexpr unsigned kLongMs = 20000;  // never waited out: a test that would is a failure

class WaitingThread final : public LThread {
 public:
  WaitingThread() : LThread("WaitingThread") {}
  ~WaitingThread() override { Stop(); }
  LSignalObject awaited;
  std::atomic<int> result{-1}, runs{0};

 private:
  void ThreadFunction() override {
    ++runs;
    result = ProcessWaitSignal(awaited, kWaitForever);
  }
};

TEST(LSignalObject, CountsResetsAndPolls) {
  const LSignalObject signal;
  EXPECT_FALSE(signal.WaitSignal(0));
  signal.Signal();
  signal.Signal();
  EXPECT_TRUE(signal.WaitSignal(kLongMs));
  EXPECT_TRUE(signal.IsSignaled());  // waiting takes nothing away
  signal.Reset();
  EXPECT_FALSE(signal.IsSignaled());
  for (int i = 0; i < 100000; ++i) signal.Signal();  // a full pipe neither blocks nor loses the signal
  EXPECT_TRUE(signal.IsSignaled());
  signal.Reset();
  EXPECT_FALSE(signal.IsSignaled());
}

TEST(LSignalObject, AGroupWorksWithDescriptorsBeyondThousand) {
  std::vector<std::unique_ptr<LSignalObject>> many;
  for (int i = 0; i < 600; ++i) many.push_back(std::make_unique<LSignalObject>());
  if (many.back()->Ref().ReadEnd() < 1024) GTEST_SKIP() << "the system allows too few open files";
  LSignalObjectGroup group;
  for (const auto& signal : many) group.Add(*signal);
  EXPECT_FALSE(group.IsSignaled());
  many.back()->Signal();
  EXPECT_TRUE(group.Select(kLongMs));
}

TEST(LThread, AStopEndsAnEndlessWaitAndAStartDoesNothingWhileItRuns) {
  WaitingThread thread;
  ASSERT_TRUE(thread.Start(kPriorityWorking));
  ASSERT_TRUE(thread.Start(kPriorityWorking));
  thread.Stop();
  EXPECT_EQ(thread.result, lpwStopped);
  EXPECT_EQ(thread.runs, 1);
  EXPECT_FALSE(thread.IsRunning());
  thread.Start(kPriorityWorking);  // runs again, joined on the way
  thread.awaited.Signal();
  thread.WaitEnded();
  EXPECT_EQ(thread.result, lpwSignalled);
  EXPECT_EQ(thread.runs, 2);
}

TEST(LThread, StartAndStopAThousandTimes) {
  WaitingThread thread;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(thread.Start(kPriorityWorking));
    thread.Stop();
  }
  EXPECT_EQ(thread.runs, 1000);
}

TEST(LProcessInterface, VoidNeverStopsAndNestedReportsTheOuterOne) {
  LProcessInterfaceVoid nobody;
  const LSignalObject signal;
  EXPECT_FALSE(nobody.IsToStop());
  EXPECT_EQ(nobody.ProcessWaitSignal(signal, 1), lpwTimedOut);
  WaitingThread thread;
  thread.Start(kPriorityWorking);
  LProcessInterfaceSubProcess part(thread, 0.25, 0.75);
  EXPECT_FALSE(part.IsToStop());
  thread.StopThreadSoon();
  EXPECT_TRUE(part.IsToStop());
  EXPECT_EQ(part.ProcessWait(kLongMs), lpwStopped);
}

struct Progress final : LProcessInterfaceVoid {
  double last = -1;
  void SetProgress(double progress) override { last = progress; }
};

TEST(LProcessInterface, APartFillsItsShareOfTheProgress) {
  Progress outer;
  LProcessInterfaceSubProcess part(outer, 0.25, 0.75);
  part.SetProgress(0.5);
  EXPECT_DOUBLE_EQ(outer.last, 0.5);
  part.SetProgress(1);
  EXPECT_DOUBLE_EQ(outer.last, 0.75);
}

class Receiver final : public LQueuedNotifyDataHandler {
 public:
  ~Receiver() override { QueuedNotifyDataHandlerDestroy(); }
  std::vector<unsigned> got[4];  // by sender
  bool onMain = true;
  const std::thread::id mainThread = std::this_thread::get_id();

 private:
  void EvQueuedNotifyData(unsigned id, const void* data, unsigned long size) override {
    unsigned value = 0;
    if (size == sizeof value) std::memcpy(&value, data, size);
    got[id].push_back(value);
    onMain &= std::this_thread::get_id() == mainThread;
  }
};

TEST(MainThreadQueue, FourThreadsArriveInOrderOnTheMainThread) {
  LTestPlatform platform(LTestPlatform::Threads::Real);
  Receiver receiver;
  constexpr unsigned kEach = 2500;
  std::vector<std::thread> senders;
  for (unsigned id = 0; id < 4; ++id)
    senders.emplace_back([&receiver, id] {
      for (unsigned i = 0; i < kEach; ++i) receiver.PostNotifyFromSender(id, &i, sizeof i);
    });
  EXPECT_TRUE(platform.WaitUntil([&] { return receiver.PostedCount() == 0 && receiver.got[3].size() == kEach; }));
  for (std::thread& sender : senders) sender.join();
  platform.WaitUntil([&] { return receiver.PostedCount() == 0; });
  for (const auto& got : receiver.got) {
    ASSERT_EQ(got.size(), kEach);
    EXPECT_TRUE(std::is_sorted(got.begin(), got.end()));
  }
  EXPECT_TRUE(receiver.onMain);
}

TEST(MainThreadQueue, NothingArrivesAtAnObjectThatIsGone) {
  LTestPlatform platform(LTestPlatform::Threads::Real);
  for (int i = 0; i < 200; ++i) {
    auto receiver = std::make_unique<Receiver>();
    std::thread sender([&] {
      for (unsigned n = 0; n < 50; ++n) receiver->PostNotifyFromSender(0, &n, sizeof n);
    });
    platform.loop.DispatchPending();
    sender.join();
    receiver.reset();
    platform.loop.DispatchPending();
  }
}

class Timers final : public LTimerHandler {
 public:
  std::string fired;
  int again = 0;

 private:
  void EvTimer(int id) override {
    fired += std::to_string(id) + " ";
    if (again-- > 0) TimerSet(id, 10);
  }
};

class Append final : public LMainLoopTask {
 public:
  explicit Append(std::string& text) : text_(text) {}
  void RunTask() override { text_ += "task "; }

 private:
  std::string& text_;
};

TEST(MainLoop, TimersFireOnceInOrderOfTimeAndBehindWhatWasQueued) {
  LTestPlatform platform;
  Timers timers;
  timers.TimerSet(-1, 0);
  timers.TimerSet(2, 30);
  timers.TimerSet(1, 20);
  timers.TimerSet(3, 10);
  timers.TimerSet(3, 40);  // moves, adds none
  timers.TimerSet(4, 25);
  timers.TimerReset(4);
  platform.loop.Post(nullptr, std::make_unique<Append>(timers.fired));
  timers.TimerSet(0, 0);
  platform.run.RunMs(100);
  EXPECT_EQ(timers.fired, "task 0 1 2 3 ");
  timers.fired.clear();
  timers.again = 2;
  timers.TimerSet(5, 10);
  platform.run.RunMs(200);
  EXPECT_EQ(timers.fired, "5 5 5 ");
}

TEST(MainLoop, ATimerSetBeforeTheLoopRunsWaitsForIt) {
  LTestPlatform platform;
  LTimerHandler::Enable(false);
  Timers timers;
  {
    Timers gone;
    gone.TimerSet(9, 0);
    timers.TimerSet(1, 5);
    timers.TimerSet(1, 5);
  }
  platform.run.RunMs(50);
  EXPECT_EQ(timers.fired, "");
  LTimerHandler::Enable(true);
  platform.run.RunMs(50);
  EXPECT_EQ(timers.fired, "1 ");
}

class Counter final : public LStepThread {
 public:
  Counter() : LStepThread("Counter", LThreadRole::Worker) {}
  ~Counter() override { StopSteps(); }
  LSignalObject go;
  std::atomic<int> steps{0}, begun{0}, ended{0};
  std::atomic<int> endAt{1 << 30};

 private:
  void StepsBegin() override { ++begun; }
  void StepsEnd() override { ++ended; }
  LStepResult Step() override {
    if (steps >= endAt) return LStepResult::End();
    if (!go.IsSignaled()) return LStepResult::WaitFor(go, kWaitForever);
    go.Reset();
    ++steps;
    return LStepResult::GoOn();
  }
};

TEST(StepThread, TheSameStepsRunOnAThreadAndOnTheOfflineLoop) {
  for (const auto mode : {LTestPlatform::Threads::Real, LTestPlatform::Threads::Offline}) {
    LTestPlatform platform(mode);
    Counter counter;
    ASSERT_TRUE(counter.StartSteps(kPriorityWorking));
    for (int i = 1; i <= 3; ++i) {
      counter.go.Signal();
      platform.steps.RunAll();
      ASSERT_TRUE(platform.WaitUntil([&] { return counter.steps == i; }));
    }
    counter.StopSteps();
    EXPECT_EQ(counter.begun, 1);
    EXPECT_EQ(counter.ended, 1);
    counter.endAt = 0;  // ends by itself
    counter.StartSteps(kPriorityWorking);
    platform.steps.RunAll();
    ASSERT_TRUE(platform.WaitUntil([&] { return counter.ended == 2; }));
  }
}

}  // namespace
