#include "toolkit/qt/LQtLoop.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEventLoop>
#include <algorithm>
#include <limits>

#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"

LQtLoop::LQtLoop() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] { Dispatch(); });
}

LQtLoop::~LQtLoop() {
  if (loop_) loop_->SetTimerChanged(nullptr, nullptr);
}

void LQtLoop::Attach() {
  LMainLoop& loop = LPlatform::MainLoop();
  if (&loop == loop_) return;
  loop_ = &loop;
  wake_ = std::make_unique<QSocketNotifier>(loop.WakeSignal().ReadEnd(), QSocketNotifier::Read);
  connect(wake_.get(), &QSocketNotifier::activated, this, [this] { Dispatch(); });
  loop.SetTimerChanged([](void* self) { static_cast<LQtLoop*>(self)->Rearm(); }, this);
}

void LQtLoop::Dispatch() {
  if (held_) return;
  loop_->DispatchPending();
  Rearm();
  if (!loop_->HasEnded()) return;
  for (QEventLoop* running : running_) running->quit();
}

void LQtLoop::Rearm() {
  const unsigned ms = loop_->MsToNextTimer();
  if (ms == kWaitForever)
    timer_.stop();
  else
    timer_.start(int(std::min(ms, unsigned(std::numeric_limits<int>::max()))));
}

void LQtLoop::Exec(QEventLoop& loop) {
  Attach();
  if (loop_->HasEnded()) return;
  // The dispatch that we may be in has emptied the wake pipe and let the timer run out: both are set again, so that the
  // nested loop goes on with what is left.
  loop_->WakeSignal().Signal();
  Rearm();
  running_.push_back(&loop);
  loop.exec();
  std::erase(running_, &loop);
  Rearm();
}

void LQtLoop::ExecModal(QDialog& dialog) {
  QEventLoop loop;
  connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  Exec(loop);
  dialog.hide();
}

bool LQtLoop::RunUntil(LSignalObjectGroup& group, unsigned ms) {
  Attach();
  if (ms == 0) {
    Dispatch();
    QCoreApplication::processEvents();
    return group.Select(0);
  }
  if (group.Select(0)) return true;
  QEventLoop loop;
  std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
  for (const pollfd& end : group.Ends()) {
    if (end.fd < 0) continue;
    notifiers.push_back(std::make_unique<QSocketNotifier>(end.fd, QSocketNotifier::Read));
    connect(notifiers.back().get(), &QSocketNotifier::activated, &loop, &QEventLoop::quit);
  }
  QTimer limit;
  limit.setSingleShot(true);
  limit.setTimerType(Qt::PreciseTimer);
  connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
  if (ms != kWaitForever) limit.start(int(std::min(ms, unsigned(std::numeric_limits<int>::max()))));
  Exec(loop);
  return group.Select(0);
}

void LQtLoop::ProcessWindowEvents() {
  Attach();
  held_ = true;
  // The wake pipe stays full meanwhile, so events are taken once and not until there are none.
  QCoreApplication::processEvents();
  held_ = false;
  Rearm();
}
