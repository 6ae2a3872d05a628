#include "toolkit/LBubbleTip.h"

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"
#include "toolkit/LWindow.h"

LBubbleTip::LBubbleTip() = default;
LBubbleTip::~LBubbleTip() = default;

void LBubbleTip::BubbleTipRun(LWindow& window, const std::string& text) {
  BubbleTipRun(window, {0, 0, window.Width(), window.Height()}, text);
}

void LBubbleTip::BubbleTipRun(LWindow& window, const LRect& area, const std::string& text) {
  text_ = text;
  peer_.reset();
  peer_ = LPlatform::Toolkit().NewBubbleTip(*this, window, area);
  TimerSet(kTimer, kShownMs);
}

void LBubbleTip::Close() {
  TimerReset(kTimer);
  peer_.reset();
}

void LBubbleTip::EvTimer(int) { Close(); }
