// What the deck tells about its track: title, elapsed and remaining time, and the place in it. A press on the place bar
// asks for a seek.
// Units    ms, frames of 44100 Hz; device-independent pixels.
// Threads  [main]
#pragma once
#include <functional>
#include <string>

#include "console/DJDeckPosition.h"
#include "sound/LSoundTime.h"
#include "toolkit/LPaintControl.h"

class TDeckInfoWindow final : public LPaintControl {
 public:
  TDeckInfoWindow(LWindow& parent, int id, DJDeckPosition deck);

  void SetTrackInfo(const std::string& title, const std::string& detail, LSoundTime length);  // ""; "", 0: empty deck
  void SetDeckTime(LSoundTime elapsed);
  void SetPlaying(bool playing);
  void SetDropHover(bool over);
  void SetSeek(std::function<void(LSoundTime)> seek) { seek_ = std::move(seek); }

  const std::string& ElapsedText() const { return elapsedText_; }
  const std::string& RemainingText() const { return remainingText_; }

  void EvPaint(LPaintContext& context) override;
  void EvMouseDown(const LMouseEvent& event) override;
  void EvMouseMove(const LMouseEvent& event) override;

 private:
  LRect PlaceBar() const;
  void SeekTo(int x);
  void PaintEmpty(LPaintContext& context, const LRect& box) const;
  void PaintPlace(LPaintContext& context) const;

  DJDeckPosition deck_;
  std::string title_, detail_, elapsedText_, remainingText_;
  LSoundTime length_ = 0, elapsed_ = 0;
  bool playing_ = false, dropHover_ = false;
  std::function<void(LSoundTime)> seek_;
};
