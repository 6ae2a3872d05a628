// A level meter of two channels. Rising at once, falling at 20 dB a second, so that the eye can follow.
// Units    dB, -48..0: green, yellow from -9, red from -3.
// Threads  [main]
#pragma once
#include "foundation/LTimerHandler.h"
#include "sound/LdB.h"
#include "toolkit/LPaintControl.h"

class TLevelMeter final : public LPaintControl, private LTimerHandler {
 public:
  static constexpr int kLowDb = -48, kHighDb = 0, kYellowDb = -9, kRedDb = -3, kFallDbPerSecond = 20;

  TLevelMeter(LWindow& parent, int id, const std::string& name);
  void SetLevels(LLevel left, LLevel right);
  void Clear();  // falls to the bottom

  void EvPaint(LPaintContext& context) override;
  static int BarLength(double db, int length);  // of `length` pixels

 private:
  void EvTimer(int id) override;
  void Fall();
  void PaintBar(LPaintContext& context, const LRect& box, double db) const;

  double shown_[2] = {kLowDb, kLowDb}, target_[2] = {kLowDb, kLowDb};  // dB
  std::uint32_t lastMs_ = 0;
  bool falling_ = false;
};
