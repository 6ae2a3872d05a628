// The window of an application or a floating frame: title, menu bar, status line, a content area that LayoutControls
// fills, keys, dropped files, and the ask before it closes. Run is the whole life of the program's main window.
// Law      Run: InitDialog, EvRunArguments, show, timers on, loop until Close, DestroyDialog. Commands from menus and
//          controls are posted, so that each runs by itself from the loop. While anything is modal, or a do-not-quit
//          scope is open, closing is ignored; else CmCancel may refuse it.
// Units    device-independent pixels; SetSize and the minimum are the window's, LayoutControls gets the content area's.
// Threads  [main]; PostCommand [any]
#pragma once
#include "toolkit/LMenu.h"
#include "toolkit/LWindow.h"

class LMainWindow : public LWindow {
 public:
  explicit LMainWindow(int id = 0);
  ~LMainWindow() override;

  int Run(int argumentCount, char const* const* arguments);  // exit status

  void SetTitle(const std::string& title) { SetText(title); }
  void SetSize(int width, int height);
  void SetMinimumSize(int width, int height);
  void SetMaximised(bool maximised);
  bool IsMaximised() const { return maximised_; }
  void SetStatusText(const std::string& text);
  const std::string& GetStatusText() const { return statusText_; }
  void Activate() { main_->Activate(); }
  bool Grab(const std::string& path) { return main_->Grab(path); }  // PNG
  void RestoreFrame(const char* name);  // size and place under "Frames/name", if they were stored
  void StoreFrame(const char* name) const;

  void SetMenu(const LMenuItem* items, int count, const LKeyToCommandMap* keys = nullptr, int keyCount = 0);
  const LMenu& Menu() const { return menu_; }
  void SetMenuItemText(unsigned id, const std::string& text);
  void CheckMenuItem(unsigned id, bool checked);
  void CheckMenuRadioItem(unsigned first, unsigned last, unsigned id);
  void EnableMenuItem(unsigned id, bool enabled);

  void PostCommand(int id, int code = 0);  // [any]
  void RequestClose();                     // what the close button and Ctrl+Q do
  void Close();                            // without a question

  virtual void InitDialog() {}
  virtual void DestroyDialog() {}
  virtual bool CmCancel() { return true; }  // false: stay open
  virtual void Command(int /*id*/, int /*code*/) {}
  virtual void LayoutControls(int /*w*/, int /*h*/) {}
  virtual void EvRunArguments(char const* const* /*arguments*/, int /*count*/) {}
  bool EvKeyDown(LKey) override { return false; }
  bool EvKeyRepeat(LKey) override { return false; }
  void EvKeyUnused(LKey key) override;  // Ctrl+Q closes
  bool EvDropFiles(const LDroppedFileData&) override { return false; }

  void PeerContentSize(int width, int height);
  void PeerClose();  // the user asks; answered from the loop, not from inside the window system's event
  void PeerState(const LRect& frame, bool maximised);

  class DoNotQuit {  // holds the window open for a scope
   public:
    explicit DoNotQuit(LMainWindow& window) : window_(window) { ++window_.doNotQuit_; }
    ~DoNotQuit() { --window_.doNotQuit_; }
    DoNotQuit(const DoNotQuit&) = delete;
    DoNotQuit& operator=(const DoNotQuit&) = delete;

   private:
    LMainWindow& window_;
  };

 private:
  class CommandTask;
  class CloseTask;

  LMainWindowPeer* main_;  // the base's peer
  LMenu menu_;
  std::string statusText_;
  LRect frame_;  // place and size when not maximised
  int minimumWidth_ = 0, minimumHeight_ = 0, doNotQuit_ = 0;
  bool maximised_ = false, running_ = false, destroyed_ = false;
};
