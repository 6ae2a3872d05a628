// The toolkit without a window: state stays in the plain classes, conversations are answered from a script, and what
// would have been shown is told as lines of text.
// Law      answers are taken in the order given. Without one an alert gets its first button, a file dialog, a pop-up
//          and a dialog are cancelled.
// Units    text is measured as kCharacterPx by kLinePx at scale 1.
// Threads  [main]
#pragma once
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "toolkit/LToolkit.h"

class LHeadlessToolkit final : public LToolkit {
 public:
  static constexpr int kCharacterPx = 8, kLinePx = 16;

  // The script.
  void AnswerAlert(int button, bool checked = false) { alerts_.push_back({button, checked}); }
  void AnswerFileDialog(std::vector<std::string> paths) { files_.push_back(std::move(paths)); }
  void AnswerPopup(unsigned id) { popups_.push_back(id); }
  void AnswerDialog(std::function<void(LDialog&)> user) { dialogs_.push_back(std::move(user)); }  // it presses a button
  void AnswerSheet(std::function<void(LPropertySheet&)> user) { sheets_.push_back(std::move(user)); }

  // Replaces LMainLoop::Run, for a run on a virtual clock. It returns when the loop has ended.
  void SetRunFunction(std::function<void()> run) { run_ = std::move(run); }

  // What was shown: "Alert: title: text", "Bubble: text", "Status: text".
  const std::vector<std::string>& Log() const { return log_; }
  void ClearLog() { log_.clear(); }
  void SetLogSink(std::function<void(const std::string&)> sink) { sink_ = std::move(sink); }
  int RedrawCount(const LWindow& window) const;  // requests since it was made

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
  void ClearEventQueue() override {}
  LTextSize MeasureText(const LGuiFont& font, std::string_view text) override;
  bool RevealFile(const std::string& path) override;

  void Tell(const std::string& line);  // the peers' way into the log

 private:
  struct AlertAnswer {
    int button;
    bool checked;
  };
  std::deque<AlertAnswer> alerts_;
  std::deque<std::vector<std::string>> files_;
  std::deque<unsigned> popups_;
  std::deque<std::function<void(LDialog&)>> dialogs_;
  std::deque<std::function<void(LPropertySheet&)>> sheets_;
  std::vector<std::string> log_;  // the last kMaxLog lines
  std::function<void(const std::string&)> sink_;
  std::function<void()> run_;
  static constexpr std::size_t kMaxLog = 1000;
};
