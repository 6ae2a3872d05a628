// Alerts, file dialogs, pop-up menus, hints.
// Threads  [main]
#pragma once
#include <QLabel>
#include <QPointer>

#include "toolkit/LAlert.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LMenu.h"
#include "toolkit/LWindowPeer.h"

class LQtLoop;

int LQtRunAlert(LQtLoop& loop, LAlert& alert, QWidget* parent);
bool LQtRunFileDialog(LQtLoop& loop, LFileDialog& dialog, QWidget* parent);
unsigned LQtRunPopup(LQtLoop& loop, LMenu& menu, QWidget& window, LPoint where);

class LQtBubbleTip final : public LBubbleTipPeer {
 public:
  LQtBubbleTip(LBubbleTip& tip, QWidget& window, const LRect& area);
  ~LQtBubbleTip() override;
  LQtBubbleTip(const LQtBubbleTip&) = delete;
  LQtBubbleTip& operator=(const LQtBubbleTip&) = delete;

 private:
  QPointer<QLabel> label_;  // goes with its window
};
