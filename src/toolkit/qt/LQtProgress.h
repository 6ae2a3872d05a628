// The window of a long job, and the bar to all other input while it runs.
// Threads  [main]
#pragma once
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "toolkit/LProgressDialog.h"

// Swallows clicks, keys, wheel, drops and closing of every window but one.
class LQtInputBlock final : public QObject {
 public:
  explicit LQtInputBlock(QWidget* allowed);  // null: of every window
  ~LQtInputBlock() override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QWidget* allowed_;
};

class LQtProgress final : public LProgressDialogPeer {
 public:
  LQtProgress(LProgressDialog& dialog, QWidget* parent);
  void Show() override;
  void Update() override;

 private:
  class Window;
  LProgressDialog& dialog_;
  std::unique_ptr<QDialog> window_;
  LQtInputBlock block_;
  QLabel* lines_[2];
  QProgressBar* bar_;
  QPushButton* stop_;
};
