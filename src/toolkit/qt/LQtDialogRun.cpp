// The windows around the forms of LQtDialog: OK and Cancel, pages.
#include <QDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include "toolkit/LPropertySheet.h"
#include "toolkit/qt/LQtConvert.h"
#include "toolkit/qt/LQtDialog.h"
#include "toolkit/qt/LQtLoop.h"

namespace {

// Escape and the close button press Cancel, which may refuse.
class Frame final : public QDialog {
 public:
  Frame(QWidget* parent, const std::string& title, std::function<void(int)> press)
      : QDialog(parent), press_(std::move(press)) {
    setWindowTitle(LToQt(title));
    new QVBoxLayout(this);
  }
  void reject() override { press_(LDialog::kCancel); }
  void End() { QDialog::done(0); }

  void AddButtons(const std::string& ok, const std::string& cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch();
    if (!ok.empty()) AddButton(*row, ok, LDialog::kOk)->setDefault(true);
    if (!cancel.empty()) AddButton(*row, cancel, LDialog::kCancel);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
  }

 private:
  QPushButton* AddButton(QHBoxLayout& row, const std::string& text, int id) {
    auto* button = new QPushButton(LToQtLabel(text));
    connect(button, &QPushButton::clicked, this, [this, id] { press_(id); });
    row.addWidget(button);
    return button;
  }
  std::function<void(int)> press_;
};

}  // namespace

void LQtRunDialog(LQtLoop& loop, LDialog& dialog, QWidget* parent) {
  auto& peer = *static_cast<LQtDialog*>(dialog.Peer());
  Frame frame(parent, dialog.Title(), [&dialog](int id) { dialog.Press(id); });
  frame.layout()->addWidget(peer.Form());
  frame.AddButtons(dialog.OkText(), dialog.CancelText());
  peer.SetEnded([&frame] { frame.End(); });
  if (!dialog.IsEnded()) loop.ExecModal(frame);
  peer.SetEnded(nullptr);
}

void LQtRunPropertySheet(LQtLoop& loop, LPropertySheet& sheet, QWidget* parent) {
  auto* tabs = new QTabWidget;
  Frame frame(parent, sheet.Title(), [&](int id) {
    sheet.Press(id);
    tabs->setCurrentIndex(sheet.SelectedPage());
    if (sheet.IsEnded()) frame.End();
  });
  for (LDialog* page : sheet.Pages())
    tabs->addTab(static_cast<LQtDialog*>(page->Peer())->Form(), LToQtLabel(page->Title()));
  tabs->setCurrentIndex(sheet.SelectedPage());
  QObject::connect(tabs, &QTabWidget::currentChanged, &frame, [&sheet](int index) { sheet.SelectPage(index); });
  frame.layout()->addWidget(tabs);
  frame.AddButtons("OK", "Abbrechen");
  loop.ExecModal(frame);
}
