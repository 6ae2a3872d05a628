#include "toolkit/qt/LQtPaintControl.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCursor>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "toolkit/qt/LQtKeys.h"
#include "toolkit/qt/LQtPaintContext.h"

namespace {

LMouseEvent FromQt(const QSinglePointEvent& event) {
  const Qt::MouseButton button = event.button();
  LMouseEvent ours;
  ours.at = LFromQt(event.position().toPoint());
  ours.modifiers = LQtModifiers(int(event.modifiers()));
  if (button == Qt::LeftButton) ours.button = LMouseButton::Left;
  if (button == Qt::RightButton) ours.button = LMouseButton::Right;
  if (button == Qt::MiddleButton) ours.button = LMouseButton::Middle;
  return ours;
}

constexpr Qt::CursorShape kCursors[] = {Qt::ArrowCursor, Qt::PointingHandCursor, Qt::SizeHorCursor, Qt::SizeVerCursor,
                                        Qt::BlankCursor};

constexpr QAccessible::Role kRoles[] = {QAccessible::Pane,   QAccessible::Button,      QAccessible::CheckBox,
                                        QAccessible::Slider, QAccessible::ProgressBar, QAccessible::StaticText};

class PaintAccessible final : public QAccessibleWidget {
 public:
  explicit PaintAccessible(LQtPaintWidget& widget) : QAccessibleWidget(&widget), control_(widget.Control()) {}
  QAccessible::Role role() const override { return kRoles[int(control_.GetAccessibleRole())]; }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return LToQt(control_.GetAccessibleValue());
    return QAccessibleWidget::text(kind);
  }

 private:
  LPaintControl& control_;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  auto* widget = dynamic_cast<LQtPaintWidget*>(object);
  return widget ? new PaintAccessible(*widget) : nullptr;
}

}  // namespace

void LQtInstallAccessibility() { QAccessible::installFactory(MakeAccessible); }

LQtPaintWidget::LQtPaintWidget(LPaintControl& control) : QWidget(LQtParent(control.Parent())), control_(control) {
  setMouseTracking(true);
  setAcceptDrops(true);
  setFocusPolicy(Qt::NoFocus);
}

bool LQtPaintWidget::event(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !isEnabled()) control_.PeerCaptureLost();
  return QWidget::event(event);
}

void LQtPaintWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  LQtPaintContext context(painter, LFromQt(event->rect()));
  control_.EvPaint(context);
}

void LQtPaintWidget::mousePressEvent(QMouseEvent* event) { control_.PeerMouseDown(FromQt(*event), false); }

void LQtPaintWidget::mouseDoubleClickEvent(QMouseEvent* event) { control_.PeerMouseDown(FromQt(*event), true); }

void LQtPaintWidget::mouseMoveEvent(QMouseEvent* event) { control_.PeerMouseMove(FromQt(*event)); }

void LQtPaintWidget::mouseReleaseEvent(QMouseEvent* event) {
  control_.PeerMouseUp(FromQt(*event), event->buttons() == Qt::NoButton);
}

void LQtPaintWidget::wheelEvent(QWheelEvent* event) {
  constexpr double kUnitsPerNotch = 120;  // eighths of a degree, 15 degrees a notch
  const double steps = event->angleDelta().y() / kUnitsPerNotch;
  event->setAccepted(control_.EvMouseWheel(FromQt(*event), steps));
}

void LQtPaintWidget::enterEvent(QEnterEvent*) { control_.PeerHover(true); }
void LQtPaintWidget::leaveEvent(QEvent*) { control_.PeerHover(false); }
void LQtPaintWidget::focusInEvent(QFocusEvent*) { control_.PeerFocus(true); }
void LQtPaintWidget::focusOutEvent(QFocusEvent*) { control_.PeerFocus(false); }

void LQtPaintWidget::hideEvent(QHideEvent* event) {
  control_.PeerCaptureLost();
  QWidget::hideEvent(event);
}

// Never ignored: the control itself passes a key on to its parents.
void LQtPaintWidget::keyPressEvent(QKeyEvent* event) { LQtSendKey(control_, *event); }

LQtPaintControl::LQtPaintControl(LPaintControl& control) : LQtPeer(new LQtPaintWidget(control)) {
  Widget()->setVisible(true);  // as soon as its parent is
}

void LQtPaintControl::SetTakesFocus(bool takes) {
  if (Widget()) Widget()->setFocusPolicy(takes ? Qt::StrongFocus : Qt::NoFocus);
}

void LQtPaintControl::SetOpaque(bool opaque) {
  if (Widget()) Widget()->setAttribute(Qt::WA_OpaquePaintEvent, opaque);
}

void LQtPaintControl::SetCursor(LCursor cursor) {
  if (Widget()) Widget()->setCursor(kCursors[int(cursor)]);
}

void LQtPaintControl::MoveCursor(LPoint where) {
  if (Widget()) QCursor::setPos(Widget()->mapToGlobal(QPoint(where.x, where.y)));
}

void LQtPaintControl::AccessibleChanged() {
  if (!Widget() || !QAccessible::isActive()) return;
  QAccessibleEvent event(Widget(), QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}
