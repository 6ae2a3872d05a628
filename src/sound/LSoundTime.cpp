#include "sound/LSoundTime.h"

#include "foundation/LText.h"

namespace {

struct Parts {
  const char* sign;
  long long hours, minutes, seconds, ms;
};

Parts Split(LSoundTime time, int roundMs) {
  const bool negative = time < 0;
  const long long ms = (negative ? -(long long)time : (long long)time) + roundMs;
  return {negative ? "-" : "", ms / 3600000, ms / 60000 % 60, ms / 1000 % 60, ms % 1000};
}

}  // namespace

std::string LSoundTimeText::GetTextHMMSS(LSoundTime ms) {
  const Parts p = Split(ms, 0);
  return LText::Format("%s%lld:%.2lld:%.2lld", p.sign, p.hours, p.minutes, p.seconds);
}

std::string LSoundTimeText::GetTextHMMSSF(LSoundTime ms) {
  const Parts p = Split(ms, 50);
  return LText::Format("%s%lld:%.2lld:%.2lld.%.1lld", p.sign, p.hours, p.minutes, p.seconds, p.ms / 100);
}

std::string LSoundTimeText::GetTextHMMSSFF(LSoundTime ms) {
  const Parts p = Split(ms, 5);
  return LText::Format("%s%lld:%.2lld:%.2lld.%.2lld", p.sign, p.hours, p.minutes, p.seconds, p.ms / 10);
}
