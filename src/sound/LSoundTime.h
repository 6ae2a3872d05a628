// A time in milliseconds, signed 32 bits, and its texts.
// Units    ms
// Threads  [any]
#pragma once
#include <string>

using LSoundTime = int;

// Frames to ms by whole-second arithmetic, so that nothing overflows; 0 for a rate below 1.
constexpr LSoundTime LSoundTimeFromFrames(int frames, int rate) {
  if (rate < 1) return 0;
  return LSoundTime((long long)(frames / rate) * 1000 + (long long)(frames % rate) * 1000 / rate);
}
constexpr int LFramesFromSoundTime(LSoundTime ms, int rate) {
  return int((long long)(ms / 1000) * rate + (long long)(ms % 1000) * rate / 1000);
}

namespace LSoundTimeText {
std::string GetTextHMMSS(LSoundTime ms);    // "0:03:07"
std::string GetTextHMMSSF(LSoundTime ms);   // tenths, rounded
std::string GetTextHMMSSFF(LSoundTime ms);  // hundredths, rounded
}  // namespace LSoundTimeText
