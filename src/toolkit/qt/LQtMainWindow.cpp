#include "toolkit/qt/LQtMainWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QStatusBar>

#include "toolkit/qt/LQtKeys.h"

namespace {

class Content final : public QWidget {
 public:
  Content(QWidget* parent, LMainWindow& window) : QWidget(parent), window_(window) {}

 protected:
  void resizeEvent(QResizeEvent*) override { window_.PeerContentSize(width(), height()); }

 private:
  LMainWindow& window_;
};

// A stored place may lie on a screen that is no longer there.
bool IsOnAScreen(const QRect& frame) {
  for (const QScreen* screen : QGuiApplication::screens())
    if (screen->availableGeometry().intersects(frame)) return true;
  return false;
}

}  // namespace

LQtMainWindowWidget::LQtMainWindowWidget(LMainWindow& window) : window_(window) { setAcceptDrops(true); }

void LQtMainWindowWidget::closeEvent(QCloseEvent* event) {
  event->ignore();
  window_.PeerClose();
}

void LQtMainWindowWidget::keyPressEvent(QKeyEvent* event) { LQtSendKey(window_, *event); }

void LQtMainWindowWidget::TellState() {
  window_.PeerState(LFromQt(QRect(pos(), size())), windowState().testFlag(Qt::WindowMaximized));
}

void LQtMainWindowWidget::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  TellState();
}

void LQtMainWindowWidget::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  TellState();
}

void LQtMainWindowWidget::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) TellState();
}

LQtMainWindow::LQtMainWindow(LMainWindow& window)
    : LQtPeer(new LQtMainWindowWidget(window)), window_(window), content_(new Content(Widget(), window)) {
  Frame()->setCentralWidget(content_);
  status_ = new QLabel;
  status_->setTextFormat(Qt::PlainText);
  status_->setContentsMargins(8, 0, 0, 0);
  Frame()->statusBar()->addWidget(status_);  // a message of the bar would go when a menu opens
}

void LQtMainWindow::SetBounds(const LRect& bounds) {
  if (!Widget()) return;
  const QRect frame = LToQt(bounds);
  Widget()->resize(frame.size());
  if (frame.topLeft() != QPoint(0, 0) && frame.topLeft() != Widget()->pos() && IsOnAScreen(frame))
    Widget()->move(frame.topLeft());
}

void LQtMainWindow::SetText(const std::string& text) {
  if (Widget()) Widget()->setWindowTitle(LToQt(text));
}

void LQtMainWindow::SetMinimumSize(int width, int height) {
  if (Widget()) Widget()->setMinimumSize(width, height);
}

void LQtMainWindow::SetMaximised(bool maximised) {
  if (!Widget()) return;
  const Qt::WindowStates others = Widget()->windowState() & ~Qt::WindowMaximized;
  Widget()->setWindowState(maximised ? others | Qt::WindowMaximized : others);
}

void LQtMainWindow::SetStatusText(const std::string& text) {
  if (status_) status_->setText(LToQt(text));
}

void LQtMainWindow::SetMenu(LMenu& menu) {
  if (Widget()) menu_.Build(*Frame()->menuBar(), menu, [this](unsigned id) { window_.PostCommand(int(id)); });
}

void LQtMainWindow::Activate() {
  if (!Widget()) return;
  if (QGuiApplication::platformName() != "offscreen") Widget()->raise();  // which has no stack, and says so
  Widget()->activateWindow();
}

bool LQtMainWindow::Grab(const std::string& path) { return Widget() && Widget()->grab().save(LToQt(path), "PNG"); }
