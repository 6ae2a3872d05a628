#include "shell/TScriptPlayer.h"

#include <cmath>

#include "foundation/LPlatform.h"

namespace {

constexpr int kWaitMs = 1;

}  // namespace

void TScriptPlayer::Start() {
  startUs_ = LPlatform::Clock().NowUs();
  EvTimer(0);
}

void TScriptPlayer::EvTimer(int) {
  const std::uint64_t elapsedUs = LPlatform::Clock().NowUs() - startUs_;
  while (next_ < script_.events.size()) {
    if (host_.IsScriptToWait()) return TimerSet(0, kWaitMs);
    const TScriptEvent& event = script_.events[next_];
    const auto dueUs = std::uint64_t(std::llround(event.seconds * 1e6));
    if (dueUs > elapsedUs) {
      TimerSet(0, int((dueUs - elapsedUs + 999) / 1000));
      return;
    }
    ++next_;
    if (event.verb == TScriptEvent::Quit) {
      next_ = script_.events.size();
      return host_.ScriptEnded(true);
    }
    Run(event);
  }
  host_.ScriptEnded(false);
}

void TScriptPlayer::Run(const TScriptEvent& event) {
  switch (event.verb) {
    case TScriptEvent::Load:
      return host_.ScriptLoad(event.deck, event.path);
    case TScriptEvent::Command:
      return host_.ScriptCommand(event.target);
    case TScriptEvent::Crossfade:
      return host_.ScriptCrossfade(int(std::lround(event.value)));
    case TScriptEvent::Volume:
      return host_.ScriptVolume(event);
    case TScriptEvent::Seek:
      return host_.ScriptSeek(event.deck, event.value);
    case TScriptEvent::Pitch:
      return host_.ScriptPitch(event.deck, int(std::lround(event.value)));
    case TScriptEvent::Loop:
      return host_.ScriptLoop(event.deck, event.value);
    case TScriptEvent::Bpm:
      return host_.ScriptBpm(event.deck, event.value, event.target);
    case TScriptEvent::Scratch:
      return host_.ScriptScratch(event);
    case TScriptEvent::Effect:
      return host_.ScriptEffect(event.effect);
    case TScriptEvent::Equalizer:
      return host_.ScriptEqualizer(event.deck, event.target, int(std::lround(event.value)));
    case TScriptEvent::State:
      return host_.ScriptState(event.path);
    case TScriptEvent::Quit:
      return;
  }
}
