#include "toolkit/LProgressDialog.h"

#include <algorithm>
#include <mutex>

#include "foundation/LPlatform.h"
#include "foundation/LThread.h"
#include "toolkit/LAlert.h"
#include "toolkit/LProcessEventsHandler.h"
#include "toolkit/LToolkit.h"

// The job's thread; its end is a signal that the main thread can wait on among its events.
class LProgressDialog::Job final : public LThread {
 public:
  explicit Job(LProgressDialog& dialog) : LThread("job"), dialog_(dialog) {}
  ~Job() override { WaitEnded(); }
  LSignalObjectRef Done() const { return done_; }
  bool Result() const { return result_; }  // after its end

 private:
  void ThreadFunction() override {
    result_ = dialog_.MainFunction();
    done_.Signal();
  }
  LProgressDialog& dialog_;
  LSignalObject done_;
  bool result_ = false;
};

LProgressDialog::LProgressDialog(std::string title)
    : title_(std::move(title)), mainThread_(std::this_thread::get_id()), status_{"Bitte warten...", ""} {}

LProgressDialog::~LProgressDialog() { ThreadQueuedNotifyDestroy(); }

bool LProgressDialog::Open(LWindow* parent) {
  stop_.Reset();
  OpenPeer(parent, true);
  bool result = false;
  {
    Job job(*this);
    if (!job.Start(kPriorityWorking)) {
      result = MainFunction();
    } else {
      if (!LProcessEventsHandler::ProcessWaitSignalAndProcessEvents(job.Done(), kAppearsAfterMs)) {
        ShowPeer();
        // Only the end of the loop comes back early: then nobody is left to watch, and the job must end.
        if (!LProcessEventsHandler::ProcessWaitSignalAndProcessEvents(job.Done(), kWaitForever)) StopSoon();
      }
      job.WaitEnded();
      result = job.Result();
    }
  }
  ClosePeer(parent);
  return result;
}

void LProgressDialog::OpenPeer(LWindow* parent, bool canStop) {
  canStop_ = canStop;
  shown_ = false;
  LPlatform::Toolkit().EnterModal();
  peer_ = LPlatform::Toolkit().NewProgressDialog(*this, parent);
}

void LProgressDialog::ShowPeer() {
  if (shown_ || !peer_) return;
  shown_ = true;
  peer_->Update();
  peer_->Show();
}

void LProgressDialog::ClosePeer(LWindow* parent) {
  peer_.reset();
  shown_ = false;
  LPlatform::Toolkit().LeaveModal();
  const std::string error = Error();
  if (!error.empty() && !IsToStop()) LAlert(title_, error).Run(parent);
}

void LProgressDialog::StopSoon() {
  stop_.Signal();
  canStop_ = false;
  if (peer_) peer_->Update();
}

std::string LProgressDialog::StatusLine(int line) const {
  std::lock_guard lock(mutex_);
  return line == 0 || line == 1 ? status_[line] : "";
}

double LProgressDialog::Progress() const {
  std::lock_guard lock(mutex_);
  return progress_;
}

bool LProgressDialog::IsIndeterminate() const {
  std::lock_guard lock(mutex_);
  return indeterminate_;
}

std::string LProgressDialog::Error() const {
  std::lock_guard lock(mutex_);
  return error_;
}

LProcessWaitResult LProgressDialog::ProcessWait(unsigned ms) {
  LSignalObjectGroup nothing;
  return ProcessWaitSignalObjectGroup(nothing, ms);
}

LProcessWaitResult LProgressDialog::ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) {
  LSignalObjectGroup group;
  group.Add(signal);
  return ProcessWaitSignalObjectGroup(group, ms);
}

LProcessWaitResult LProgressDialog::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) {
  LSignalObjectGroup withStop = group;
  withStop.Add(stop_);
  const bool hasEvents = std::this_thread::get_id() == mainThread_ && !LPlatform::MainLoop().HasEnded();
  const bool any = hasEvents ? LProcessEventsHandler::ProcessWaitSignalObjectGroupAndProcessEvents(withStop, ms)
                             : withStop.Select(ms);
  if (IsToStop()) return lpwStopped;
  return any ? lpwSignalled : lpwTimedOut;
}

void LProgressDialog::SetError(const char* text) {
  std::lock_guard lock(mutex_);
  error_ = text ? text : "";
}

void LProgressDialog::SetStatus(const char* text, int line) {
  {
    std::lock_guard lock(mutex_);
    if (line < 0 || line > 1) return;
    status_[line] = text ? text : "";
  }
  Changed();
}

void LProgressDialog::SetProgress(double progress) {
  {
    std::lock_guard lock(mutex_);
    progress_ = progress >= 0 ? std::min(progress, 1.0) : 0;  // not a number is 0
  }
  Changed();
}

void LProgressDialog::SetIndeterminate(bool on) {
  {
    std::lock_guard lock(mutex_);
    indeterminate_ = on;
  }
  Changed();
}

void LProgressDialog::Changed() {
  if (!posted_.exchange(true)) PostQueueNotify();
}

void LProgressDialog::EvNotify() {
  posted_ = false;
  if (peer_) peer_->Update();
}
