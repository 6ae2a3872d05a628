// Safe live mode: refuses what could interrupt the sound that the audience hears.
// Threads  [main]
#pragma once
#include "console/DJDeckPosition.h"

// What the rules look at; implemented by the application and by tests.
class TSafeLiveView {
 public:
  virtual bool IsDeckPlaying(DJDeckPosition deck) const = 0;
  virtual bool IsMainPlayerRunning() const = 0;
  virtual int GetCrossFadePosition() const = 0;  // 0 deck A .. 100 deck B

 protected:
  ~TSafeLiveView() = default;
};

class TSafeLive {
 public:
  explicit TSafeLive(const TSafeLiveView& view) : view_(view) {}

  bool IsOn() const { return on_; }
  void Toggle() { on_ = !on_; }

  // That deck plays and the crossfader does not shut it out.
  bool IsDeckActionUnsafe(DJDeckPosition deck) const;

  bool AllowsPlayPause(DJDeckPosition deck) const;
  bool AllowsDeckAction(DJDeckPosition deck) const;  // load, clear, reset and what else may cut the deck off
  bool AllowsCrossFade(int target) const;            // a move towards a deck that does not play is refused
  bool AllowsProgramAction() const;                  // settings and the like

 private:
  bool IsAnyDeckPlaying() const { return view_.IsDeckPlaying(kDeckA) || view_.IsDeckPlaying(kDeckB); }
  bool IsFullyAwayFrom(DJDeckPosition deck) const;

  const TSafeLiveView& view_;
  bool on_ = false;  // never stored
};
