#include "foundation/LTimerHandler.h"

#include <algorithm>

#include "foundation/LPlatform.h"

namespace {

struct Suspended {
  LTimerHandler* handler;
  int id, ms;
};
bool timersEnabled = false;
std::vector<Suspended> suspended;

}  // namespace

void LTimerHandler::TimerSet(int id, int ms) {
  if (id < 0) return;
  if (!timersEnabled) {
    std::erase_if(suspended, [&](const Suspended& s) { return s.handler == this && s.id == id; });
    suspended.push_back({this, id, ms});
    return;
  }
  LPlatform::MainLoop().SetTimer(*this, id, unsigned(std::max(ms, 0)));
}

void LTimerHandler::TimerReset(int id) {
  std::erase_if(suspended, [&](const Suspended& s) { return s.handler == this && s.id == id; });
  if (timersEnabled) LPlatform::MainLoop().ResetTimer(*this, id);
}

void LTimerHandler::TimerDestroy() {
  std::erase_if(suspended, [&](const Suspended& s) { return s.handler == this; });
  if (timersEnabled) LPlatform::MainLoop().ResetTimers(*this);
}

void LTimerHandler::Enable(bool enabled) {
  timersEnabled = enabled;
  if (!enabled) return;
  const std::vector<Suspended> waiting = std::move(suspended);
  suspended.clear();
  for (const Suspended& s : waiting) s.handler->TimerSet(s.id, s.ms);
}
