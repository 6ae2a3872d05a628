// A level meter of two channels. Rising at once, falling at 20 dB a second, so that the eye can follow.
// Law      only the stripe that a bar rose or fell through is painted anew.
// Units    dB, -48..0: green, yellow from -9, red from -3.
// Threads  [main]
#pragma once
#include "foundation/LTimerHandler.h"
#include "sound/LdB.h"
#include "toolkit/LPaintControl.h"

class TLevelMeter final : public LPaintControl, private LTimerHandler {
 public:
  static constexpr int kLowDb = -48, kHighDb = 0, kYellowDb = -9, kRedDb = -3, kFallDbPerSecond = 20;
  enum class Scale { None, Numbers };

  TLevelMeter(LWindow& parent, int id, const std::string& name, Scale scale = Scale::None);
  void SetLevels(LLevel left, LLevel right);
  void Clear();  // falls to the bottom
  double ShownDb(int channel) const { return shown_[channel]; }

  void EvPaint(LPaintContext& context) override;
  static int BarLength(double db, int length);  // of `length` pixels

 private:
  void EvTimer(int id) override;
  void Fall();
  LRect Numbers() const;
  LRect Bar(int channel) const;
  void PaintBar(LPaintContext& context, const LRect& box, double db) const;
  void PaintNumbers(LPaintContext& context) const;

  Scale scale_;
  double shown_[2] = {kLowDb, kLowDb}, target_[2] = {kLowDb, kLowDb};  // dB
  std::uint32_t lastMs_ = 0;
  bool falling_ = false;
};
