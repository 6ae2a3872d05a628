#include "toolkit/qt/LQtQuestions.h"

#include <QCheckBox>
#include <QEventLoop>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

#include "toolkit/qt/LQtConvert.h"
#include "toolkit/qt/LQtLoop.h"
#include "toolkit/qt/LQtMenu.h"

int LQtRunAlert(LQtLoop& loop, LAlert& alert, QWidget* parent) {
  QMessageBox box(parent);
  box.setWindowTitle(LToQt(alert.title));
  box.setTextFormat(Qt::PlainText);
  box.setText(LToQt(alert.text));
  box.setIcon(alert.buttons.size() > 1 ? QMessageBox::Question : QMessageBox::Information);
  std::vector<QPushButton*> buttons;
  for (const std::string& text : alert.buttons)  // of one role, so that they stand in the order given
    buttons.push_back(box.addButton(LToQtLabel(text), QMessageBox::ActionRole));
  box.setDefaultButton(buttons.front());
  box.setEscapeButton(buttons[std::size_t(alert.EscapeIndex())]);
  QCheckBox* check = nullptr;
  if (!alert.checkBoxText.empty()) {
    check = new QCheckBox(LToQtLabel(alert.checkBoxText));
    check->setChecked(alert.checked);
    box.setCheckBox(check);
  }
  loop.ExecModal(box);
  if (check) alert.checked = check->isChecked();
  const auto pressed = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return pressed == buttons.end() ? alert.EscapeIndex() : int(pressed - buttons.begin());
}

bool LQtRunFileDialog(LQtLoop& loop, LFileDialog& dialog, QWidget* parent) {
  using Kind = LFileDialog::Kind;
  QFileDialog box(parent, LToQt(dialog.title));
  box.setFileMode(dialog.kind == Kind::OpenFolder  ? QFileDialog::Directory
                  : dialog.kind == Kind::OpenFiles ? QFileDialog::ExistingFiles
                  : dialog.kind == Kind::OpenFile  ? QFileDialog::ExistingFile
                                                   : QFileDialog::AnyFile);
  const bool saves = dialog.kind == Kind::Save;
  box.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  box.setOption(QFileDialog::ShowDirsOnly, dialog.kind == Kind::OpenFolder);
  box.setLabelText(QFileDialog::Accept, saves ? QStringLiteral("Sichern") : QStringLiteral("Öffnen"));
  box.setLabelText(QFileDialog::Reject, QStringLiteral("Abbrechen"));
  if (!dialog.folder.empty()) box.setDirectory(LToQt(dialog.folder));
  QStringList filters;
  for (const LFileFilter& filter : dialog.filters) {
    QStringList patterns;
    for (const std::string& pattern : filter.patterns) patterns += LToQt(pattern);
    filters += LToQt(filter.text) + QStringLiteral(" (") + patterns.join(u' ') + u')';
  }
  if (!filters.isEmpty()) box.setNameFilters(filters);
  if (saves && !dialog.name.empty()) box.selectFile(LToQt(dialog.name));
  loop.ExecModal(box);
  if (box.result() != QDialog::Accepted) return false;
  for (const QString& path : box.selectedFiles()) dialog.paths.push_back(LFromQt(path));
  return true;
}

unsigned LQtRunPopup(LQtLoop& loop, LMenu& menu, QWidget& window, LPoint where) {
  QMenu popup(&window);
  LQtMenu builder;
  unsigned chosen = 0;
  builder.Build(popup, menu, [&chosen](unsigned id) { chosen = id; });
  QEventLoop events;
  // Qt hides the menu first and tells the choice then.
  QObject::connect(&popup, &QMenu::aboutToHide, &events, &QEventLoop::quit, Qt::QueuedConnection);
  popup.popup(window.mapToGlobal(QPoint(where.x, where.y)));
  loop.Exec(events);
  return chosen;
}

namespace {

class Bubble final : public QLabel {
 public:
  Bubble(LBubbleTip& tip, QWidget& window) : QLabel(&window, Qt::ToolTip | Qt::FramelessWindowHint), tip_(tip) {
    setTextFormat(Qt::PlainText);
    setText(LToQt(tip.Text()));
    setAccessibleName(text());
    setMargin(fontMetrics().height() / 2);
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    setWordWrap(true);
    setAttribute(Qt::WA_ShowWithoutActivating);
    const int widest = fontMetrics().averageCharWidth() * kCharactersAcross;
    setFixedWidth(std::min(widest, fontMetrics().horizontalAdvance(text()) + 3 * fontMetrics().height()));
    adjustSize();
  }

 protected:
  void mousePressEvent(QMouseEvent*) override { tip_.PeerClicked(); }

 private:
  static constexpr int kCharactersAcross = 48;
  LBubbleTip& tip_;
};

}  // namespace

LQtBubbleTip::LQtBubbleTip(LBubbleTip& tip, QWidget& window, const LRect& area) : label_(new Bubble(tip, window)) {
  const QRect at(window.mapToGlobal(LToQt(area).topLeft()), LToQt(area).size());
  const QRect screen = window.screen()->availableGeometry();
  const int gap = label_->margin() / 2;
  const bool fitsBelow = at.bottom() + gap + label_->height() < screen.bottom();
  const int y = fitsBelow ? at.bottom() + gap : at.top() - gap - label_->height();
  const int x = at.center().x() - label_->width() / 2;
  label_->move(std::max(screen.left(), std::min(x, screen.right() - label_->width())), std::max(screen.top(), y));
  label_->show();
}

LQtBubbleTip::~LQtBubbleTip() { delete label_.data(); }
