// The crossfader in its strip: 0 is deck A, 100 deck B. Dragging the knob keeps the grab; a press elsewhere moves it
// there. The letter of a deck is lit as long as the deck is heard.
// Units    device-independent pixels; position 0..100.
// Threads  [main]
#pragma once
#include <functional>

#include "console/DJDeckPosition.h"
#include "toolkit/LPaintControl.h"

class DJCrossFader final : public LPaintControl {
 public:
  DJCrossFader(LWindow& parent, int id);
  void SetPosition(int position);  // shows it, clamped to 0..100; no message
  int GetPosition() const { return position_; }
  void SetChanged(std::function<void(int)> changed) { changed_ = std::move(changed); }

  void EvPaint(LPaintContext& context) override;
  void EvMouseDown(const LMouseEvent& event) override;
  void EvMouseMove(const LMouseEvent& event) override;
  void EvMouseDoubleClick(const LMouseEvent& event) override;
  bool EvMouseWheel(const LMouseEvent& event, double steps) override;
  void EvHover(bool) override { Redraw(); }

 private:
  LRect Track() const;
  int KnobX() const;
  void PaintLetter(LPaintContext& context, DJDeckPosition deck, const LRect& box) const;
  void MoveTo(int x);
  void Ask(int position);

  int position_ = 50;
  int grabOffset_ = 0;
  std::function<void(int)> changed_;
};
