// A window of controls told by a table, asked by control id. The state is here; the peer mirrors it, so options and
// dialogs are tested without a screen: set values, press a button, look at what came of it.
// Law      OK calls CmOk, which may refuse; Cancel calls CmCancel. A change by the user calls EvControl(id) after the
//          state has it; a change by the program calls nothing.
// Threads  [main]
// Failure  an unknown id is ignored; its getters give "", false, 0 or -1.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "toolkit/LWindowPeer.h"

class LWindow;

class LDialog {
 public:
  static constexpr int kOk = 1, kCancel = 2;
  LDialog(std::string title, const LDialogRow* rows, int count);
  virtual ~LDialog();
  LDialog(const LDialog&) = delete;
  LDialog& operator=(const LDialog&) = delete;

  int Run(LWindow* parent = nullptr);  // kOk, kCancel or what End was given
  void Press(int id);                  // kOk, kCancel, or a button of the table
  void End(int result);
  bool IsEnded() const { return ended_; }

  const std::string& Title() const { return title_; }
  const std::string& OkText() const { return okText_; }
  const std::string& CancelText() const { return cancelText_; }
  void SetButtonTexts(const std::string& ok, const std::string& cancel);  // an empty cancel: no such button
  const std::vector<LControlState>& Controls() const { return controls_; }
  const LControlState* Find(int id) const;

  void SetText(int id, const std::string& text);
  std::string GetText(int id) const;  // a combo box or list: the text chosen
  void SetChecked(int id, bool checked);
  bool IsChecked(int id) const;
  void SetEnabled(int id, bool enabled);
  bool IsEnabled(int id) const;
  void SetVisible(int id, bool visible);
  void SetValue(int id, int value);  // held within the row's range
  int GetValue(int id) const;
  void SetItems(int id, const std::vector<std::string>& items);  // nothing is chosen afterwards
  void Select(int id, int index);
  int GetSelected(int id) const;
  void SetFocus(int id);

  virtual void InitDialog() {}  // before it is shown
  virtual bool CmOk() { return true; }
  virtual bool CmCancel() { return true; }
  virtual void EvControl(int /*id*/) {}

  void CreatePeer();   // by Run and by a property sheet; InitDialog comes first
  void DestroyPeer();  // the controls leave the screen, their state stays
  LDialogPeer* Peer() { return peer_.get(); }

  // The user's side: what a peer, or a test, tells.
  void PeerText(int id, const std::string& text);
  void PeerChecked(int id, bool checked);
  void PeerValue(int id, int value);
  void PeerSelected(int id, int index);

 private:
  LControlState* Edit(int id);
  void Update(int id);
  void CheckRadio(LControlState& chosen);

  std::string title_, okText_ = "OK", cancelText_ = "Abbrechen";
  std::vector<LControlState> controls_;
  std::unique_ptr<LDialogPeer> peer_;  // while it is shown
  bool ended_ = false;
  int result_ = kCancel;
};
