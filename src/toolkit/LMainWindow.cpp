#include "toolkit/LMainWindow.h"

#include <algorithm>
#include <cstdio>

#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "foundation/LText.h"
#include "foundation/LThreadRunOnMainThread.h"
#include "foundation/LTimerHandler.h"
#include "toolkit/LToolkit.h"

namespace {

// Timers may fire only once the loop runs: the first thing that the loop does is to let them.
class EnableTimersTask final : public LMainLoopTask {
 public:
  void RunTask() override { LTimerHandler::Enable(true); }
};

}  // namespace

class LMainWindow::CommandTask final : public LMainLoopTask {
 public:
  CommandTask(LMainWindow& window, int id, int code) : window_(window), id_(id), code_(code) {}
  void RunTask() override { window_.Command(id_, code_); }

 private:
  LMainWindow& window_;
  int id_, code_;
};

class LMainWindow::CloseTask final : public LMainLoopTask {
 public:
  explicit CloseTask(LMainWindow& window) : window_(window) {}
  void RunTask() override { window_.RequestClose(); }

 private:
  LMainWindow& window_;
};

LMainWindow::LMainWindow(int id) : LWindow(nullptr, id) {
  auto peer = LPlatform::Toolkit().NewMainWindow(*this);
  main_ = peer.get();
  SetPeer(std::move(peer));
  SetVisible(false);
}

LMainWindow::~LMainWindow() { LPlatform::MainLoop().FlushOwner(this); }

int LMainWindow::Run(int argumentCount, char const* const* arguments) {
  running_ = true;
  destroyed_ = false;
  LThreadRunOnMainThread::Init();
  InitDialog();
  EvRunArguments(arguments, argumentCount);
  SetVisible(true);
  Activate();
  LPlatform::MainLoop().Post(this, std::make_unique<EnableTimersTask>());
  LPlatform::Toolkit().Run();
  Close();  // the loop may have been ended from elsewhere
  SetVisible(false);
  LThreadRunOnMainThread::Destroy();
  return 0;
}

void LMainWindow::Close() {
  if (!running_ || destroyed_) return;
  destroyed_ = true;
  LPlatform::Toolkit().ClearEventQueue();
  LPlatform::MainLoop().FlushOwner(this);
  DestroyDialog();
  LPlatform::MainLoop().Quit();
}

void LMainWindow::RequestClose() {
  if (doNotQuit_ > 0 || LPlatform::Toolkit().IsModal() || !CmCancel()) return;
  if (running_)
    Close();
  else
    SetVisible(false);
}

void LMainWindow::PeerClose() { LPlatform::MainLoop().Post(this, std::make_unique<CloseTask>(*this)); }

void LMainWindow::EvKeyUnused(LKey key) {
  if (key == LKey::FromCharacter(u'Q', LKey::kCommand)) PeerClose();
}

void LMainWindow::PostCommand(int id, int code) {
  LPlatform::MainLoop().Post(this, std::make_unique<CommandTask>(*this, id, code));
}

void LMainWindow::SetSize(int width, int height) {
  const LRect& old = Bounds();
  SetBounds({old.x, old.y, std::max(width, minimumWidth_), std::max(height, minimumHeight_)});
}

void LMainWindow::SetMinimumSize(int width, int height) {
  minimumWidth_ = width, minimumHeight_ = height;
  main_->SetMinimumSize(width, height);
}

void LMainWindow::SetMaximised(bool maximised) {
  maximised_ = maximised;
  main_->SetMaximised(maximised);
}

void LMainWindow::SetStatusText(const std::string& text) {
  statusText_ = text;
  main_->SetStatusText(text);
}

void LMainWindow::PeerContentSize(int width, int height) { LayoutControls(width, height); }

void LMainWindow::PeerState(const LRect& frame, bool maximised) {
  maximised_ = maximised;
  if (!maximised) frame_ = frame;
  PeerBounds(frame);
}

void LMainWindow::RestoreFrame(const char* name) {
  int x = 0, y = 0, width = 0, height = 0, maximised = 0;
  const std::string text = LUserSettingGetString("Frames", name);
  if (std::sscanf(text.c_str(), "%d %d %d %d %d", &x, &y, &width, &height, &maximised) != 5) return;
  SetBounds({x, y, std::max(width, minimumWidth_), std::max(height, minimumHeight_)});
  SetMaximised(maximised != 0);
}

void LMainWindow::StoreFrame(const char* name) const {
  const LRect& frame = frame_.IsEmpty() ? Bounds() : frame_;
  LUserSettingSetString(
      "Frames", name, LText::Format("%d %d %d %d %d", frame.x, frame.y, frame.width, frame.height, maximised_ ? 1 : 0));
}

void LMainWindow::SetMenu(const LMenuItem* items, int count, const LKeyToCommandMap* keys, int keyCount) {
  menu_.SetItems(items, count, keys, keyCount);
  main_->SetMenu(menu_);
}

void LMainWindow::SetMenuItemText(unsigned id, const std::string& text) {
  if (menu_.SetText(id, text)) main_->UpdateMenuItem(id);
}

void LMainWindow::CheckMenuItem(unsigned id, bool checked) {
  if (menu_.Check(id, checked)) main_->UpdateMenuItem(id);
}

void LMainWindow::CheckMenuRadioItem(unsigned first, unsigned last, unsigned id) {
  if (!menu_.CheckRadio(first, last, id)) return;
  for (unsigned item = first; item <= last; ++item) main_->UpdateMenuItem(item);
}

void LMainWindow::EnableMenuItem(unsigned id, bool enabled) {
  if (menu_.Enable(id, enabled)) main_->UpdateMenuItem(id);
}
