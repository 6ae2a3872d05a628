// Runs LMainLoop inside Qt: a notifier on its wake pipe and one precise timer for its next timer. Every nested loop of
// the toolkit goes through here, because a nested loop starts while a dispatch is half done.
// Units    ms
// Threads  [main]; LMainLoop outlives it.
#pragma once
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>
#include <vector>

#include "foundation/LSignalObject.h"

class LMainLoop;
class QDialog;
class QEventLoop;

class LQtLoop final : public QObject {
 public:
  LQtLoop();
  ~LQtLoop() override;

  void Exec(QEventLoop& loop);      // until its quit, or the end of LMainLoop
  void ExecModal(QDialog& dialog);  // shows it, application-modal, until it is finished
  bool RunUntil(LSignalObjectGroup& group, unsigned ms);
  void ProcessWindowEvents();  // Qt's own that wait, and none of LMainLoop's

 private:
  void Attach();
  void Dispatch();
  void Rearm();

  LMainLoop* loop_ = nullptr;  // the one attached to
  std::unique_ptr<QSocketNotifier> wake_;
  QTimer timer_;
  std::vector<QEventLoop*> running_;
  bool held_ = false;  // dispatching is put off
};
