// Opening a sound file for a user who waits for it: each rung of the ladder that takes long has a progress dialog of its
// own, and settings are asked for.
// Law      one failure is shown, and settings are asked for once, however many rungs are tried: the prompt flag, shared
//          with the caller, is cleared by the first of them.
// Threads  [main]
#pragma once
#include "audiofile/TGenSourceLadder.h"
#include "toolkit/LAlert.h"
#include "toolkit/LProcessDialog.h"

class LGenSourceOpenInterfaceGUI final : public LProcessInterfaceVoid {
 public:
  LGenSourceOpenInterfaceGUI(bool& prompt, LRawSettingsAsker& asker, LWindow* parent)
      : prompt_(prompt), asker_(asker), parent_(parent) {}

  bool IsInteractive() { return std::exchange(prompt_, false); }
  bool AskRawSettings(const LRawSection& section) { return asker_.AskRawSettings(section); }
  void SetError(const char* text) override {
    if (std::exchange(prompt_, false)) LAlert("Fehler", text).Run(parent_);
  }
  template <class Job>
  LProcessResult RunStep(const char* title, Job& job) {
    Quiet<Job> quiet{job};
    LProcessDialog<Quiet<Job>> dialog(title, quiet);
    dialog.Open(parent_);
    return dialog.Result();
  }

 private:
  // Found by the dialog: the job without its errors, since a later rung may succeed.
  template <class Job>
  struct Quiet {
    Job& job;
    friend LProcessResult Process(LProcessInterface& process, Quiet& quiet) {
      LProcessInterfaceForward forward(process, LProcessInterfaceForward::DropErrors);
      return Process(forward, quiet.job);
    }
  };

  bool& prompt_;
  LRawSettingsAsker& asker_;
  LWindow* parent_;  // may be null
};
