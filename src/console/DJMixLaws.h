// The laws of the mix: crossfader to gain, gain to level.
// Law      Each deck is at full level up to the centre and falls as a sine on the far side. Position 50 is full for
//          both.
// Units    position 0 (deck A) to 100 (deck B); percent 0 to 100; level in dB.
// Threads  [any]
#pragma once
#include "console/DJDeckPosition.h"
#include "sound/LdB.h"

constexpr int CrossFadePercent(DJDeckPosition deck, int position) {
  if (deck == kDeckA) return position <= 50 ? 100 : (100 - position) * 2;
  if (deck == kDeckB) return position >= 50 ? 100 : position * 2;
  return 100;
}

LLevel CrossFadeLevel(int percent);  // 100 is 0 dB, 50 is -3 dB, 0 muted
