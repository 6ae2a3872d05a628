#include "tempo/LSpeedTimeMap.h"

#include <algorithm>
#include <cmath>

#include "sound/LWrap.h"

void LSpeedTimeMap::Push(int outFrames, int inFrames) {
  while (count_ > 0 && outFrames_ + outFrames > kMaxFrames) outFrames_ -= FromNewest(--count_).out;
  newest_ = (newest_ + 1) % kMaxFrames;
  entries_[unsigned(newest_)] = {outFrames, inFrames};
  ++count_;
  outFrames_ += outFrames;
}

int LSpeedTimeMap::ToInput(int offset, long long skip, double speed) const {
  long long rest = offset, result = 0;
  int age = 0;
  // Back to the place. Where the input ran backward, further back lies a higher position.
  for (; age < count_ && skip != 0; ++age) {
    const Entry& entry = FromNewest(age);
    if (entry.in == 0) continue;
    if ((skip > 0) != (entry.in > 0)) break;  // the place is newer than the map
    if (std::llabs(skip) >= std::abs(entry.in)) {
      skip -= entry.in;
      continue;
    }
    const long long older = entry.in - skip;  // the part of the entry behind the place
    const auto share = std::llround(float(older) / float(entry.in) * float(entry.out));
    skip = 0;
    if (share == 0) continue;
    if (-rest < share) return int(rest * older / share);
    rest += share;
    result = -older;
  }
  for (; age < count_ && rest < 0; ++age) {
    const Entry& entry = FromNewest(age);
    if (entry.out > -rest) return int(result + rest * entry.in / entry.out);
    result -= entry.in;
    rest += entry.out;
  }
  return SaturateToInt(std::trunc(double(rest) * speed) + double(result));
}
