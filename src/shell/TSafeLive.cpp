#include "shell/TSafeLive.h"

bool TSafeLive::IsFullyAwayFrom(DJDeckPosition deck) const {
  return view_.GetCrossFadePosition() == (deck == kDeckA ? 100 : 0);
}

bool TSafeLive::IsDeckActionUnsafe(DJDeckPosition deck) const {
  return view_.IsDeckPlaying(deck) && !IsFullyAwayFrom(deck);
}

bool TSafeLive::AllowsPlayPause(DJDeckPosition deck) const {
  return !on_ || !IsAnyDeckPlaying() || IsFullyAwayFrom(deck);
}

bool TSafeLive::AllowsDeckAction(DJDeckPosition deck) const { return !on_ || !IsDeckActionUnsafe(deck); }

bool TSafeLive::AllowsCrossFade(int target) const {
  if (!on_) return true;
  const DJDeckPosition towards = target >= view_.GetCrossFadePosition() ? kDeckB : kDeckA;
  const DJDeckPosition from = towards == kDeckA ? kDeckB : kDeckA;
  return view_.IsDeckPlaying(towards) || !view_.IsDeckPlaying(from);
}

bool TSafeLive::AllowsProgramAction() const { return !on_ || (!view_.IsMainPlayerRunning() && !IsAnyDeckPlaying()); }
