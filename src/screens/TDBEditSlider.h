// A horizontal slider of a level in whole decibels; below its minimum it is muted. A double click sets 0 dB.
// Units    dB; device-independent pixels.
// Threads  [main]
#pragma once
#include <functional>

#include "sound/LdB.h"
#include "toolkit/LPaintControl.h"

class TDBEditSlider final : public LPaintControl {
 public:
  static constexpr int kMinimumDb = -48, kMaximumDb = 6;
  TDBEditSlider(LWindow& parent, int id, std::string name);

  void SetLevel(LLevel level);  // capped at the maximum, muted from the minimum down; a change is told
  LLevel GetLevel() const { return level_; }
  void ShowLevel(LLevel level);  // without telling
  void KeyLevelUp();             // from muted to the minimum plus one
  void KeyLevelDown();
  void SetChanged(std::function<void(LLevel)> changed) { changed_ = std::move(changed); }

  static int HeightPx();  // what it needs, by the system's font

  void EvPaint(LPaintContext& context) override;
  void EvMouseDown(const LMouseEvent& event) override;
  void EvMouseMove(const LMouseEvent& event) override;
  void EvMouseUp(const LMouseEvent& event) override;
  void EvMouseDoubleClick(const LMouseEvent& event) override;
  bool EvMouseWheel(const LMouseEvent& event, double steps) override;
  void EvHover(bool over) override;

 private:
  LLevel LevelAt(int x) const;
  int ThumbX() const;  // left edge

  std::string name_;
  LLevel level_ = 0;
  int grabOffset_ = 0;
  bool dragging_ = false;
  std::function<void(LLevel)> changed_;
};
