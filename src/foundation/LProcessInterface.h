// What a long job sees of the world: a stop request, waits that end early by it, and places for status and progress.
// A job is a free function LProcessResult Process(LProcessInterface&, Data&); what stands behind the interface decides
// whether it runs in a dialog, on a thread, inside a bigger job or with no feedback at all.
// Units    waits in ms (kWaitForever), progress 0.0 to 1.0, status line 0 or 1.
// Threads  the job's own thread.
#pragma once
#include <string>

#include "foundation/LSignalObject.h"

enum LProcessResult { lprDone = 0, lprStopped = 1, lprFailed = 2 };
enum LProcessWaitResult { lpwSignalled = 0, lpwStopped = 1, lpwTimedOut = 2 };

class LProcessInterface {
 public:
  virtual ~LProcessInterface() = default;
  virtual bool IsToStop() = 0;
  virtual LProcessWaitResult ProcessWait(unsigned ms) = 0;  // lpwStopped or lpwTimedOut
  virtual LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) = 0;
  virtual LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) = 0;
  virtual void SetError(const char*) {}
  virtual void SetStatus(const char*, int /*line*/) {}
  virtual void SetProgress(double) {}
  virtual void SetProgressIndeterminateOn() {}
  virtual void SetProgressIndeterminateOff() {}

  void SetStatusF(int line, const char* format, ...) __attribute__((format(printf, 3, 4)));
  void SetErrorF(const char* format, ...) __attribute__((format(printf, 2, 3)));
};

// No feedback and nobody to stop it.
class LProcessInterfaceVoid : public LProcessInterface {
 public:
  bool IsToStop() override { return false; }
  LProcessWaitResult ProcessWait(unsigned ms) override;
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) override;
  LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) override;
};

// A job inside another: the stop test, the waits and the error are the outer one's; status and progress do nothing.
class LProcessInterfaceNested : public LProcessInterface {
 public:
  explicit LProcessInterfaceNested(LProcessInterface& outer) : outer_(outer) {}
  bool IsToStop() override { return outer_.IsToStop(); }
  LProcessWaitResult ProcessWait(unsigned ms) override { return outer_.ProcessWait(ms); }
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) override {
    return outer_.ProcessWaitSignal(signal, ms);
  }
  LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) override {
    return outer_.ProcessWaitSignalObjectGroup(group, ms);
  }
  void SetError(const char* text) override { outer_.SetError(text); }

 protected:
  LProcessInterface& outer_;  // outlives this
};

// A job that stands for another: everything reaches the outer one, but the error if it is to be kept from it, because
// another way may still succeed.
class LProcessInterfaceForward : public LProcessInterfaceNested {
 public:
  enum Errors { PassErrors, DropErrors };
  explicit LProcessInterfaceForward(LProcessInterface& outer, Errors errors = PassErrors)
      : LProcessInterfaceNested(outer), errors_(errors) {}
  void SetError(const char* text) override {
    if (errors_ == PassErrors) outer_.SetError(text);
  }
  void SetStatus(const char* text, int line) override { outer_.SetStatus(text, line); }
  void SetProgress(double progress) override { outer_.SetProgress(progress); }
  void SetProgressIndeterminateOn() override { outer_.SetProgressIndeterminateOn(); }
  void SetProgressIndeterminateOff() override { outer_.SetProgressIndeterminateOff(); }

 private:
  Errors errors_;
};

// A part of a larger job: its progress fills the range from start to end of the outer one.
class LProcessInterfaceSubProcess final : public LProcessInterfaceNested {
 public:
  LProcessInterfaceSubProcess(LProcessInterface& outer, double start, double end)
      : LProcessInterfaceNested(outer), start_(start), end_(end) {}
  void SetStatus(const char* text, int line) override { outer_.SetStatus(text, line); }
  void SetProgress(double progress) override { outer_.SetProgress(start_ + progress * (end_ - start_)); }

 private:
  double start_, end_;
};
