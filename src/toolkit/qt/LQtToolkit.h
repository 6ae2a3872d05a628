// The toolkit on Qt Widgets. Owns the application object of Qt; constructed once, before any window.
// Law      HasDisplay is asked first: without a display Qt ends the process.
// Threads  [main]
#pragma once
#include <memory>

#include "toolkit/LToolkit.h"

class LQtLoop;
class QApplication;

class LQtToolkit final : public LToolkit {
 public:
  // A display of X or Wayland, or a platform of Qt that was asked for by name, "offscreen" among them.
  static bool HasDisplay();

  LQtToolkit(int argumentCount, char** arguments);  // only the program's name is Qt's business
  ~LQtToolkit() override;

  std::unique_ptr<LMainWindowPeer> NewMainWindow(LMainWindow& window) override;
  std::unique_ptr<LPaintControlPeer> NewPaintControl(LPaintControl& control) override;
  std::unique_ptr<LListViewPeer> NewListView(LListView& list) override;
  std::unique_ptr<LTabBarPeer> NewTabBar(LTabBar& bar) override;
  std::unique_ptr<LDialogPeer> NewDialog(LDialog& dialog) override;
  std::unique_ptr<LProgressDialogPeer> NewProgressDialog(LProgressDialog& dialog, LWindow* parent) override;
  std::unique_ptr<LBubbleTipPeer> NewBubbleTip(LBubbleTip& tip, LWindow& window, const LRect& area) override;
  int RunAlert(LAlert& alert, LWindow* parent) override;
  bool RunFileDialog(LFileDialog& dialog, LWindow* parent) override;
  unsigned RunPopupMenu(LMenu& menu, LWindow& window, LPoint where) override;
  void RunDialog(LDialog& dialog, LWindow* parent) override;
  void RunPropertySheet(LPropertySheet& sheet, LWindow* parent) override;
  void Run() override;
  bool RunUntil(LSignalObjectGroup& group, unsigned ms) override;
  void ClearEventQueue() override;
  LTextSize MeasureText(const LGuiFont& font, std::string_view text) override;
  bool RevealFile(const std::string& path) override;

 private:
  int argumentCount_;
  char* arguments_[2];
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<LQtLoop> loop_;
};
