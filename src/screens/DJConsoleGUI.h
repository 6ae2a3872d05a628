// The panel between the decks: master and headphone level, master meter, and the buttons for recording, safe live mode
// and microphone. The crossfader belongs to it, but stands in a strip of its own at the foot of the window.
// Units    device-independent pixels; levels in dB; crossfader 0 (deck A) to 100 (deck B).
// Threads  [main]
#pragma once
#include "screens/DJCrossFader.h"
#include "screens/DJPanelHost.h"
#include "screens/LCoolButton.h"
#include "screens/TDBEditSlider.h"
#include "screens/TLevelMeter.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LPaintControl.h"

class DJConsoleGUI final : public LPaintControl, private LTimerHandler {
 public:
  DJConsoleGUI(LWindow& parent, DJPanelHost& host);

  void SetCrossFade(int position);  // shows it; no message
  void SetLevels(const LLevels& levels);
  void ClearLevels();
  void UIApplyRecordState(bool recording);  // while recording the button counts the time
  void CmSetSafeMode(bool on);
  void UpdateMicrophoneButtonState(bool on);
  void CmShowSafeModeBubbleTip();             // flashes the button; no further bubble until that has ended
  void ShowMessage(const std::string& text);  // a line of the status kind inside the panel; empty clears it
  void UpdateToolTips();

  TDBEditSlider& MasterSlider() { return master_; }
  TDBEditSlider& HeadphoneSlider() { return headphone_; }
  DJCrossFader& CrossFader() { return crossFader_; }

  void EvPaint(LPaintContext& context) override;
  void EvResize(int w, int h) override;

 private:
  void EvTimer(int id) override;
  void Flash();
  void ShowRecordTime();

  DJPanelHost& host_;
  TLevelMeter meter_;
  TDBEditSlider master_, headphone_;
  DJCrossFader crossFader_;
  LCoolButton record_, safeLive_, microphone_;
  LBubbleTip bubble_;
  int flashTicks_ = 0;  // left
  bool safeMode_ = false, recording_ = false;
  std::uint32_t recordStartMs_ = 0;
};
