#include "foundation/LThreadRunOnMainThread.h"

#include <mutex>
#include <vector>

#include "foundation/LPlatform.h"

class LThreadRunOnMainThread::Task final : public LMainLoopTask {
 public:
  Task(LThreadRunOnMainThread& target, std::unique_ptr<LThreadRunOnMainThreadData> data)
      : target_(&target), data_(std::move(data)) {}
  // Counted down before the work runs: the work may destroy its target.
  ~Task() override { CountDown(); }
  void RunTask() override {
    CountDown();
    data_->MainThreadFunction();
  }

 private:
  void CountDown() {
    if (!target_) return;
    std::lock_guard lock(target_->mutex_);
    --target_->posted_;
    target_ = nullptr;
  }
  LThreadRunOnMainThread* target_;  // null once counted down
  std::unique_ptr<LThreadRunOnMainThreadData> data_;
};

void LThreadRunOnMainThread::RunOnMainThread(std::unique_ptr<LThreadRunOnMainThreadData> data) {
  std::lock_guard lock(mutex_);
  if (!accepting_) return;
  ++posted_;
  LPlatform::MainLoop().Post(this, std::make_unique<Task>(*this, std::move(data)));
}

void LThreadRunOnMainThread::FlushEventFromQueue() { LPlatform::MainLoop().FlushOwner(this); }

int LThreadRunOnMainThread::PostedCount() const {
  std::lock_guard lock(mutex_);
  return posted_;
}

void LThreadRunOnMainThread::StopAccepting() {
  {
    std::lock_guard lock(mutex_);
    accepting_ = false;
    if (posted_ == 0) return;
  }
  FlushEventFromQueue();
}

void LThreadRunOnMainThread::Init() { LPlatform::MainLoop().Reopen(); }
void LThreadRunOnMainThread::Destroy() { LPlatform::MainLoop().Quit(); }

class LThreadQueuedNotifyData final : public LThreadRunOnMainThreadData {
 public:
  explicit LThreadQueuedNotifyData(LThreadQueuedNotify& target) : target_(target) {}
  void MainThreadFunction() override { target_.EvNotify(); }

 private:
  LThreadQueuedNotify& target_;
};

void LThreadQueuedNotify::PostQueueNotify() { RunOnMainThread(std::make_unique<LThreadQueuedNotifyData>(*this)); }

class LQueuedNotifyDataHandlerData final : public LThreadRunOnMainThreadData {
 public:
  LQueuedNotifyDataHandlerData(LQueuedNotifyDataHandler& target, unsigned id, const void* data, unsigned long size)
      : target_(target), id_(id) {
    if (!data) return;
    const auto* bytes = static_cast<const unsigned char*>(data);
    bytes_.assign(bytes, bytes + size);
  }
  void MainThreadFunction() override {
    target_.EvQueuedNotifyData(id_, bytes_.empty() ? nullptr : bytes_.data(), bytes_.size());
  }

 private:
  LQueuedNotifyDataHandler& target_;
  unsigned id_;
  std::vector<unsigned char> bytes_;
};

void LQueuedNotifyDataHandler::PostNotifyFromSender(unsigned id, const void* data, unsigned long size) {
  RunOnMainThread(std::make_unique<LQueuedNotifyDataHandlerData>(*this, id, data, size));
}
