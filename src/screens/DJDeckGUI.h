// The panel of one deck: title, elapsed and remaining time, place in the track, level meter, play, jump to start,
// headphone cue, load, volume. It asks the host and shows what the deck tells.
// Units    device-independent pixels; levels in dB.
// Threads  [main]
#pragma once
#include <memory>
#include <string>

#include "console/DJDeck.h"
#include "console/DJSyncResult.h"
#include "foundation/LTimerHandler.h"
#include "screens/DJPanelHost.h"
#include "screens/LCoolButton.h"
#include "screens/TDBEditSlider.h"
#include "screens/TDeckInfoWindow.h"
#include "screens/TLevelMeter.h"
#include "toolkit/LBubbleTip.h"
#include "toolkit/LPaintControl.h"

class DJDeckGUI final : public LPaintControl, public DJDeckNotify {
 public:
  DJDeckGUI(LWindow& parent, DJPanelHost& host, DJDeck& deck);

  void EvLoaded();                                            // a track has been loaded into the deck
  void EvCleared();                                           // the deck is empty
  void ShowConverting(const std::string& path, int percent);  // the deck is empty until the track is decoded
  void CmDeckPlay();
  void CmDeckPause();
  void UpdateHeadphones();
  void UpdatePosition();  // after a seek, by hand, or a change of speed
  void CmSyncAlert(DJSyncResult result);
  bool IsPlayedSinceLoad() const { return playedSinceLoad_; }
  void SetPlayedSinceLoad() { playedSinceLoad_ = true; }
  TDBEditSlider& VolumeSlider() { return volume_; }
  void UpdateToolTips();
  void EnableControls();

  void EvPaint(LPaintContext& context) override;
  void EvResize(int w, int h) override;
  bool EvDropFiles(const LDroppedFileData& files) override;
  void EvDragHover(bool over) override;

 private:
  void djntfTime(LSoundTime& time, DJDeck& deck) override;
  void djntfLevel(const LLevels& levels, DJDeck& deck) override;
  void djntfStop(DJDeck& deck) override;

  DJPanelHost& host_;
  DJDeck& deck_;
  bool playedSinceLoad_ = false;
  TDeckInfoWindow info_;
  TLevelMeter meter_;
  LCoolButton play_, jump_, headphones_, load_;
  TDBEditSlider volume_;
  LBubbleTip bubble_;
};
