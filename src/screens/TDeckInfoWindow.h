// What the deck tells about its track: title, length, elapsed and remaining time, and the place in it. A press on the
// place bar asks for a seek. The clocks are as large as there is room, to be read from a metre away.
// Law      only the part that shows something new is painted anew. The last half minute of a playing track shows red.
// Units    ms; device-independent pixels.
// Threads  [main]
#pragma once
#include <functional>
#include <string>

#include "console/DJDeckPosition.h"
#include "sound/LSoundTime.h"
#include "toolkit/LPaintControl.h"

class TDeckInfoWindow final : public LPaintControl {
 public:
  static constexpr LSoundTime kLastMs = 30000;
  TDeckInfoWindow(LWindow& parent, int id, DJDeckPosition deck);

  void SetTrackInfo(const std::string& title, const std::string& detail, LSoundTime length);  // ""; "", 0: empty deck
  void SetLength(LSoundTime length);  // it changes with the deck's speed
  void SetDeckTime(LSoundTime elapsed);
  void SetPlaying(bool playing);
  void SetDropHover(bool over);
  void SetSeek(std::function<void(LSoundTime)> seek) { seek_ = std::move(seek); }

  const std::string& ElapsedText() const { return elapsedText_; }
  const std::string& RemainingText() const { return remainingText_; }
  LRect PlaceBar() const { return place_; }

  void EvPaint(LPaintContext& context) override;
  void EvResize(int w, int h) override;
  void EvMouseDown(const LMouseEvent& event) override;
  void EvMouseMove(const LMouseEvent& event) override;

 private:
  void SeekTo(int x);
  int PlayedPx() const;
  void PaintGround(LPaintContext& context) const;
  void PaintHeader(LPaintContext& context) const;
  void PaintEmpty(LPaintContext& context) const;
  void PaintClocks(LPaintContext& context) const;
  void PaintPlace(LPaintContext& context) const;

  DJDeckPosition deck_;
  std::string title_, detail_, elapsedText_, remainingText_;
  LSoundTime length_ = 0, elapsed_ = 0;
  LRect header_, body_, elapsedLine_, remainingLine_, place_;
  LGuiFont titleFont_ = {.bold = true}, detailFont_, elapsedFont_, remainingFont_;
  bool playing_ = false, dropHover_ = false;
  std::function<void(LSoundTime)> seek_;
};
