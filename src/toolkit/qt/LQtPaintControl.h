// The widget of a custom-drawn control.
// Threads  [main]
#pragma once
#include "toolkit/LPaintControl.h"
#include "toolkit/qt/LQtPeer.h"

class LQtPaintWidget final : public QWidget {
 public:
  explicit LQtPaintWidget(LPaintControl& control);
  LPaintControl& Control() const { return control_; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override { LQtDragEnter(control_, *event); }
  void dragLeaveEvent(QDragLeaveEvent*) override { control_.EvDragHover(false); }
  void dropEvent(QDropEvent* event) override { LQtDrop(*this, control_, *event); }

 private:
  LPaintControl& control_;  // outlives this: its peer deletes this
};

class LQtPaintControl final : public LQtPeer<LPaintControlPeer> {
 public:
  explicit LQtPaintControl(LPaintControl& control);
  void SetTakesFocus(bool takes) override;
  void SetOpaque(bool opaque) override;
  void SetCursor(LCursor cursor) override;
  void MoveCursor(LPoint where) override;
  void AccessibleChanged() override;
};

void LQtInstallAccessibility();  // roles and value texts of custom-drawn controls
