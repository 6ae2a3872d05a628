// A hint in a bubble at a control: goes by a click on it or after ten seconds. One object shows one hint at a time.
// Units    the area in pixels of the window.
// Threads  [main]
#pragma once
#include <memory>
#include <string>

#include "foundation/LTimerHandler.h"
#include "toolkit/LWindowPeer.h"

class LWindow;

class LBubbleTip final : public LTimerHandler {
 public:
  static constexpr int kShownMs = 10000;
  LBubbleTip();
  ~LBubbleTip();

  void BubbleTipRun(LWindow& window, const std::string& text);  // at the whole window
  void BubbleTipRun(LWindow& window, const LRect& area, const std::string& text);
  void Close();
  bool IsOpen() const { return peer_ != nullptr; }
  const std::string& Text() const { return text_; }

  void PeerClicked() { TimerSet(kTimer, 0); }  // closed from the loop, outside the bubble's own event

 private:
  static constexpr int kTimer = 1;
  void EvTimer(int id) override;
  std::string text_;
  std::unique_ptr<LBubbleTipPeer> peer_;  // while it is open
};
