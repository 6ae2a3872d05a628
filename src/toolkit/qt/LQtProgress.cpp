#include "toolkit/qt/LQtProgress.h"

#include <QApplication>
#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "toolkit/qt/LQtConvert.h"

namespace {

constexpr QEvent::Type kInput[] = {QEvent::MouseButtonPress,
                                   QEvent::MouseButtonRelease,
                                   QEvent::MouseButtonDblClick,
                                   QEvent::MouseMove,
                                   QEvent::Wheel,
                                   QEvent::KeyPress,
                                   QEvent::KeyRelease,
                                   QEvent::ShortcutOverride,
                                   QEvent::TouchBegin,
                                   QEvent::TouchUpdate,
                                   QEvent::TouchEnd,
                                   QEvent::ContextMenu,
                                   QEvent::DragEnter,
                                   QEvent::DragMove,
                                   QEvent::Drop,
                                   QEvent::Close};
constexpr int kSteps = 1000;  // of the bar

}  // namespace

LQtInputBlock::LQtInputBlock(QWidget* allowed) : allowed_(allowed) { qApp->installEventFilter(this); }
LQtInputBlock::~LQtInputBlock() { qApp->removeEventFilter(this); }

bool LQtInputBlock::eventFilter(QObject* object, QEvent* event) {
  if (!object->isWidgetType() || (allowed_ && static_cast<QWidget*>(object)->window() == allowed_)) return false;
  if (std::find(std::begin(kInput), std::end(kInput), event->type()) == std::end(kInput)) return false;
  event->ignore();
  return true;
}

class LQtProgress::Window final : public QDialog {
 public:
  Window(QWidget* parent, LProgressDialog& dialog) : QDialog(parent), dialog_(dialog) {}
  void reject() override {  // Escape and the close button
    if (dialog_.CanStop()) dialog_.StopSoon();
  }

 private:
  LProgressDialog& dialog_;
};

LQtProgress::LQtProgress(LProgressDialog& dialog, QWidget* parent)
    : dialog_(dialog), window_(std::make_unique<Window>(parent, dialog)), block_(window_.get()) {
  window_->setWindowTitle(LToQt(dialog.Title()));
  window_->setWindowModality(Qt::ApplicationModal);
  window_->setFixedWidth(LProgressDialog::kWidthPx);
  auto* rows = new QVBoxLayout(window_.get());
  for (QLabel*& line : lines_) {
    line = new QLabel;
    line->setTextFormat(Qt::PlainText);
    rows->addWidget(line);
  }
  bar_ = new QProgressBar;
  bar_->setTextVisible(false);
  bar_->setAccessibleName(LToQt(dialog.Title()));
  rows->addWidget(bar_);
  stop_ = new QPushButton(QStringLiteral("Abbrechen"));
  stop_->setVisible(dialog.CanStop());
  QObject::connect(stop_, &QPushButton::clicked, window_.get(), [this] { dialog_.StopSoon(); });
  rows->addWidget(stop_, 0, Qt::AlignRight);
}

void LQtProgress::Show() { window_->show(); }

void LQtProgress::Update() {
  const int room = LProgressDialog::kWidthPx - 2 * window_->layout()->contentsMargins().left();
  for (int i = 0; i < 2; ++i) {
    const QString line = LToQt(dialog_.StatusLine(i));
    lines_[i]->setText(lines_[i]->fontMetrics().elidedText(line, Qt::ElideMiddle, room));
  }
  bar_->setRange(0, dialog_.IsIndeterminate() ? 0 : kSteps);
  if (!dialog_.IsIndeterminate()) bar_->setValue(int(dialog_.Progress() * kSteps));
  stop_->setEnabled(dialog_.CanStop());
}
