// What all peers with one widget share, and how a widget takes files from the file manager.
// Law      the widget may go before its peer, with its parent; then the peer does nothing.
// Threads  [main]
#pragma once
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "toolkit/qt/LQtConvert.h"

template <class Interface>
class LQtPeer : public Interface {
 public:
  explicit LQtPeer(QWidget* widget) : widget_(widget) {}
  ~LQtPeer() override { delete widget_.data(); }
  LQtPeer(const LQtPeer&) = delete;
  LQtPeer& operator=(const LQtPeer&) = delete;

  void* NativeParent() override { return widget_.data(); }
  void SetVisible(bool visible) override {
    if (widget_) widget_->setVisible(visible);
  }
  void SetEnabled(bool enabled) override {
    if (widget_) widget_->setEnabled(enabled);
  }
  void SetBounds(const LRect& bounds) override {
    if (widget_) widget_->setGeometry(LToQt(bounds));
  }
  void SetText(const std::string&) override {}
  void SetToolTip(const std::string& text) override {
    if (widget_) widget_->setToolTip(LToQtPlain(text));
  }
  void SetAccessibleName(const std::string& name) override {
    if (widget_) widget_->setAccessibleName(LToQt(name));
  }
  void SetFocus() override {
    if (widget_) widget_->setFocus(Qt::OtherFocusReason);
  }
  void Redraw(const LRect& box) override {
    if (!widget_) return;
    if (box.IsEmpty())
      widget_->update();
    else
      widget_->update(LToQt(box));
  }

 protected:
  QWidget* Widget() const { return widget_; }

 private:
  QPointer<QWidget> widget_;
};

// The four drag operations of a widget that takes files for its window.
inline void LQtDragEnter(LWindow& window, QDragEnterEvent& event) {
  if (LQtLocalFiles(event.mimeData()).empty()) {
    event.ignore();
    return;
  }
  event.setDropAction(Qt::CopyAction);
  event.accept();
  window.EvDragHover(true);
}

// The files are told after the drop is over: the file manager waits for its answer, and what follows may ask the user.
inline void LQtDrop(QWidget& widget, LWindow& window, QDropEvent& event) {
  LDroppedFileData files{LQtLocalFiles(event.mimeData()), LFromQt(event.position().toPoint())};
  window.EvDragHover(false);
  if (files.paths.empty()) {
    event.ignore();
    return;
  }
  event.setDropAction(Qt::CopyAction);
  event.accept();
  QTimer::singleShot(0, &widget, [&window, files = std::move(files)] { window.EvDropFiles(files); });
}
