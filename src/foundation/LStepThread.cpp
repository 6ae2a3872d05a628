#include "foundation/LStepThread.h"

#include <algorithm>

#include "foundation/LPlatform.h"

void LSteps::Add(LStepThread& thread) { threads_.push_back(&thread); }

void LSteps::Remove(LStepThread& thread) { std::erase(threads_, &thread); }

void LSteps::RunAll() {
  bool any = true;
  while (any) {
    any = false;
    // A step may start or end other step threads, so the list is walked by index and looked at afresh.
    for (std::size_t i = 0; i < threads_.size(); ++i) any |= threads_[i]->RunOffline();
  }
}

LStepThread::~LStepThread() {
  if (offline_) LPlatform::Steps()->Remove(*this);
}

bool LStepThread::StartSteps(int priority) {
  LSteps* steps = LPlatform::Steps();
  if (!steps) return Start(priority);
  if (offline_) return true;
  StopSignal().Reset();
  offline_ = true;
  {
    LThreadRoleScope role(stepRole_);
    StepsBegin();
  }
  steps->Add(*this);
  return true;
}

void LStepThread::StopSteps() {
  if (!offline_) {
    Stop();
    return;
  }
  StopThreadSoon();
  LPlatform::Steps()->Remove(*this);
  offline_ = false;
  LThreadRoleScope role(stepRole_);
  StepsEnd();
}

bool LStepThread::IsStepping() const { return offline_ || IsRunning(); }

void LStepThread::ThreadFunction() {
  StepsBegin();
  while (!IsToStop()) {
    const LStepResult result = Step();
    if (result.kind == LStepResult::Ended) break;
    if (result.kind == LStepResult::Sleep) ProcessWait(result.ms);
    if (result.kind == LStepResult::Wait) ProcessWaitSignal(result.signal, result.ms);
  }
  StepsEnd();
}

bool LStepThread::RunOffline() {
  LThreadRoleScope role(stepRole_);
  const LStepResult result = Step();
  if (result.kind == LStepResult::Ended) {
    LPlatform::Steps()->Remove(*this);
    offline_ = false;
    StepsEnd();
    return true;
  }
  return result.kind != LStepResult::Wait;
}
