// A top-level window: menu bar, content area, status line.
// Threads  [main]
#pragma once
#include <QLabel>
#include <QMainWindow>

#include "toolkit/LMainWindow.h"
#include "toolkit/qt/LQtMenu.h"
#include "toolkit/qt/LQtPeer.h"

class LQtMainWindowWidget final : public QMainWindow {
 public:
  explicit LQtMainWindowWidget(LMainWindow& window);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent*) override {}  // not Qt's list of docks and tool bars
  void dragEnterEvent(QDragEnterEvent* event) override { LQtDragEnter(window_, *event); }
  void dragLeaveEvent(QDragLeaveEvent*) override { window_.EvDragHover(false); }
  void dropEvent(QDropEvent* event) override { LQtDrop(*this, window_, *event); }

 private:
  void TellState();
  LMainWindow& window_;
};

class LQtMainWindow final : public LQtPeer<LMainWindowPeer> {
 public:
  explicit LQtMainWindow(LMainWindow& window);
  void* NativeParent() override { return content_.data(); }
  void SetBounds(const LRect& bounds) override;
  void SetText(const std::string& text) override;
  void SetMinimumSize(int width, int height) override;
  void SetMaximised(bool maximised) override;
  void SetStatusText(const std::string& text) override;
  void SetMenu(LMenu& menu) override;
  void UpdateMenuItem(unsigned id) override { menu_.Update(id); }
  void Activate() override;
  bool Grab(const std::string& path) override;

 private:
  QMainWindow* Frame() const { return static_cast<QMainWindow*>(Widget()); }
  LMainWindow& window_;
  QPointer<QWidget> content_;
  QPointer<QLabel> status_;
  LQtMenu menu_;
};
