// Jobs in a progress dialog: LProcessDialog<T> runs the free function Process(LProcessInterface&, T&) on a thread;
// LProcessDialogRunInterface leaves the work with its caller on the main thread, step by step.
// Threads  [main]; Process itself [worker]. The record is the job's alone while Open runs.
#pragma once
#include <cstdint>

#include "toolkit/LProgressDialog.h"

template <class T>
class LProcessDialog final : public LProgressDialog {
 public:
  LProcessDialog(std::string title, T& data) : LProgressDialog(std::move(title)), data_(&data) {}
  LProcessResult Result() const { return result_; }  // after Open

 private:
  bool MainFunction() override {
    result_ = Process(*this, *data_);
    return true;
  }
  T* data_;  // outlives Open
  LProcessResult result_ = lprFailed;
};

class LProcessDialogRunInterface final : public LProgressDialog {
 public:
  explicit LProcessDialogRunInterface(std::string title) : LProgressDialog(std::move(title)) {}
  ~LProcessDialogRunInterface() override { DirectClose(); }
  void DirectOpen(LWindow* parent = nullptr);
  void DirectClose();

 private:
  bool MainFunction() override { return true; }
  void Changed() override;  // shows the change at once and lets the window breathe
  LWindow* parent_ = nullptr;
  bool open_ = false;
  std::uint32_t openedMs_ = 0;
};
