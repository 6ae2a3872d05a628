#include "toolkit/headless/LHeadlessToolkit.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"
#include "toolkit/LAlert.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LDialog.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LListView.h"
#include "toolkit/LMainWindow.h"
#include "toolkit/LPaintControl.h"
#include "toolkit/LProgressDialog.h"
#include "toolkit/LPropertySheet.h"
#include "toolkit/LTabBar.h"
#include "toolkit/headless/LHeadlessPeers.h"

void LHeadlessToolkit::Tell(const std::string& line) {
  if (log_.size() >= kMaxLog) log_.erase(log_.begin());
  log_.push_back(line);
  if (sink_) sink_(line);
}

int LHeadlessToolkit::RedrawCount(const LWindow& window) const {
  return static_cast<LHeadlessState*>(const_cast<LWindow&>(window).Peer().NativeParent())->redraws;
}

std::unique_ptr<LMainWindowPeer> LHeadlessToolkit::NewMainWindow(LMainWindow& window) {
  return std::make_unique<LHeadlessMainWindow>(*this, window);
}

std::unique_ptr<LPaintControlPeer> LHeadlessToolkit::NewPaintControl(LPaintControl&) {
  return std::make_unique<LHeadlessPaintControl>();
}

std::unique_ptr<LListViewPeer> LHeadlessToolkit::NewListView(LListView&) {
  return std::make_unique<LHeadlessListView>();
}

std::unique_ptr<LTabBarPeer> LHeadlessToolkit::NewTabBar(LTabBar&) { return std::make_unique<LHeadlessTabBar>(); }

std::unique_ptr<LDialogPeer> LHeadlessToolkit::NewDialog(LDialog&) { return std::make_unique<LHeadlessDialog>(); }

std::unique_ptr<LProgressDialogPeer> LHeadlessToolkit::NewProgressDialog(LProgressDialog& dialog, LWindow*) {
  return std::make_unique<LHeadlessProgressDialog>(*this, dialog.Title());
}

std::unique_ptr<LBubbleTipPeer> LHeadlessToolkit::NewBubbleTip(LBubbleTip& tip, LWindow&, const LRect&) {
  Tell("Bubble: " + tip.Text());
  return std::make_unique<LBubbleTipPeer>();
}

int LHeadlessToolkit::RunAlert(LAlert& alert, LWindow*) {
  Tell("Alert: " + alert.title + ": " + alert.text);
  if (alerts_.empty()) return 0;
  const AlertAnswer answer = alerts_.front();
  alerts_.pop_front();
  alert.checked = answer.checked;
  return std::clamp(answer.button, 0, int(alert.buttons.size()) - 1);
}

bool LHeadlessToolkit::RunFileDialog(LFileDialog& dialog, LWindow*) {
  Tell("File dialog: " + dialog.title);
  if (files_.empty()) return false;
  dialog.paths = std::move(files_.front());
  files_.pop_front();
  return !dialog.paths.empty();
}

unsigned LHeadlessToolkit::RunPopupMenu(LMenu& menu, LWindow&, LPoint) {
  if (popups_.empty()) return 0;
  const unsigned id = popups_.front();
  popups_.pop_front();
  const LMenuItemState* item = menu.Find(id);
  return item && item->enabled ? id : 0;
}

void LHeadlessToolkit::RunDialog(LDialog& dialog, LWindow*) {
  Tell("Dialog: " + dialog.Title());
  if (!dialogs_.empty()) {
    const std::function<void(LDialog&)> user = std::move(dialogs_.front());
    dialogs_.pop_front();
    user(dialog);
  }
  if (!dialog.IsEnded()) dialog.End(LDialog::kCancel);
}

void LHeadlessToolkit::RunPropertySheet(LPropertySheet& sheet, LWindow*) {
  Tell("Dialog: " + sheet.Title());
  if (sheets_.empty()) return;  // cancelled, as it starts
  const std::function<void(LPropertySheet&)> user = std::move(sheets_.front());
  sheets_.pop_front();
  user(sheet);
}

void LHeadlessToolkit::Run() {
  if (run_)
    run_();
  else
    LPlatform::MainLoop().Run();
}

bool LHeadlessToolkit::RunUntil(LSignalObjectGroup& group, unsigned ms) {
  // Real time even under a virtual clock: what is waited for is another thread's work.
  using Clock = std::chrono::steady_clock;
  LMainLoop& loop = LPlatform::MainLoop();
  const auto until = Clock::now() + std::chrono::milliseconds(ms);
  while (!loop.HasEnded()) {
    loop.DispatchPending();
    if (group.Select(0)) return true;
    unsigned left = kWaitForever;
    if (ms != kWaitForever) {
      const auto rest = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
      if (rest <= 0) return false;
      left = unsigned(rest);
    }
    LSignalObjectGroup both = group;
    both.Add(loop.WakeSignal());
    both.Select(std::min(left, loop.MsToNextTimer()));
  }
  return group.Select(0);
}

LTextSize LHeadlessToolkit::MeasureText(const LGuiFont& font, std::string_view text) {
  const auto characters =
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
  return {int(std::lround(double(characters) * kCharacterPx * font.scale)), int(std::lround(kLinePx * font.scale))};
}

bool LHeadlessToolkit::RevealFile(const std::string& path) {
  Tell("Reveal: " + path);
  return true;
}
