// A dialog's table of controls as native widgets in a grid, alone in a window or as pages of one.
// Law      labels name and lead to the control after them; mnemonics are given out by themselves, each letter once.
// Threads  [main]
#pragma once
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>

#include "toolkit/LDialog.h"

class LPropertySheet;
class LQtLoop;
class QButtonGroup;
class QGridLayout;
class QLabel;

class LQtDialog final : public LDialogPeer {
 public:
  explicit LQtDialog(LDialog& dialog);
  ~LQtDialog() override;
  LQtDialog(const LQtDialog&) = delete;
  LQtDialog& operator=(const LQtDialog&) = delete;

  void Update(int id) override;
  void SetFocus(int id) override;
  void Ended() override;

  QWidget* Form() const { return form_; }
  void SetEnded(std::function<void()> ended) { ended_ = std::move(ended); }

 private:
  QWidget* Make(const LControlState& control);
  void Place(QGridLayout& grid, const LControlState& control, QWidget* widget);
  void Show(const LControlState& control, QWidget& widget);
  QString Label(const std::string& text);

  LDialog& dialog_;
  QPointer<QWidget> form_;  // goes with the window that shows it
  std::map<int, QPointer<QWidget>> widgets_;
  std::map<int, QButtonGroup*> radioGroups_;  // by grid column, while it is built
  QString mnemonics_;                         // letters given out
  QPointer<QLabel> lastLabel_;                // names the next control, while it is built
  std::function<void()> ended_;
};

void LQtRunDialog(LQtLoop& loop, LDialog& dialog, QWidget* parent);
void LQtRunPropertySheet(LQtLoop& loop, LPropertySheet& sheet, QWidget* parent);
