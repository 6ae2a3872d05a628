// The modal dialog of a long job: two status lines, a bar, a stop button. Seen after 300 ms, so that a quick job shows
// nothing; modal from its first moment.
// Law      Open runs MainFunction on a thread of its own and keeps the main loop going until it has returned, stopped
//          or not. An error text is shown when the job has ended, unless the user stopped it.
// Units    progress 0.0 to 1.0; waits in ms.
// Threads  construction, Open, Direct... [main]; the LProcessInterface operations [worker] in Open, [main] in
//          DirectOpen.
// Failure  without a thread the job runs on the main thread.
#pragma once
#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "foundation/LMutex.h"
#include "foundation/LProcessInterface.h"
#include "foundation/LThreadRunOnMainThread.h"
#include "toolkit/LWindowPeer.h"

class LWindow;

class LProgressDialog : public LProcessInterface, private LThreadQueuedNotify {
 public:
  static constexpr unsigned kAppearsAfterMs = 300;
  static constexpr int kWidthPx = 420;
  explicit LProgressDialog(std::string title);
  ~LProgressDialog() override;

  bool Open(LWindow* parent = nullptr);  // what MainFunction gave
  void StopSoon();                       // the stop button

  // What is to be shown.
  const std::string& Title() const { return title_; }
  std::string StatusLine(int line) const;
  double Progress() const;
  bool IsIndeterminate() const;
  std::string Error() const;
  bool CanStop() const { return canStop_; }

  bool IsToStop() override { return stop_.IsSignaled(); }
  LProcessWaitResult ProcessWait(unsigned ms) override;
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) override;
  LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) override;
  void SetError(const char* text) override;
  void SetStatus(const char* text, int line) override;
  void SetProgress(double progress) override;
  void SetProgressIndeterminateOn() override { SetIndeterminate(true); }
  void SetProgressIndeterminateOff() override { SetIndeterminate(false); }

 protected:
  virtual bool MainFunction() = 0;  // [worker]

  void OpenPeer(LWindow* parent, bool canStop);
  void ShowPeer();
  void ClosePeer(LWindow* parent);
  bool IsShown() const { return shown_; }
  virtual void Changed();  // status or progress: the main thread is told, once for many changes

 private:
  class Job;
  void EvNotify() override;
  void SetIndeterminate(bool on);

  std::string title_;
  std::thread::id mainThread_;
  LSignalObject stop_;
  mutable LMutex mutex_;  // guards what follows, up to indeterminate_
  std::string status_[2], error_;
  double progress_ = 0;
  bool indeterminate_ = false;
  std::atomic<bool> posted_{false};
  std::unique_ptr<LProgressDialogPeer> peer_;  // [main] while it is open
  bool shown_ = false, canStop_ = true;        // [main]
};
