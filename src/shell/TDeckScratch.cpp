#include "shell/TDeckScratch.h"

#include <algorithm>

#include "console/DJPitchLaw.h"
#include "foundation/TSettings.h"
#include "sound/LWrap.h"

namespace {

constexpr int kJogTimer = 50;
constexpr int kBendPerFrame = 10, kBendPerJogStep = 50;  // of the pitch slider
constexpr int kHighestMidiValue = 127;
constexpr int kMostPendingSteps = 1 << 20;

// How wheels tell their direction: around the middle of the range, or as a signed number of 7 bits.
enum JogWheelConfig { AroundMiddle = 0, Signed = 1 };

}  // namespace

// Takes hold of the deck: as a bend, which is then complete, or free to scratch. False: it must not be moved by hand.
bool TDeckScratch::TakeHold(DJDeckPosition deck) {
  CmDeckEndScratch(deck);  // one hand at a time
  const TScratchDeck state = host_.LookAtDeck(deck);
  if (!state.loaded) return false;
  Hand& hand = Of(deck);
  if (state.playing && !state.vinylMode) {
    hand.grip = Grip::Bends;
    hand.rememberedPitch = host_.GetPitchSlider(deck);
    return true;
  }
  if (host_.IsAutoPlayOn()) {
    host_.ShowAutoPlayBubble();
    return false;
  }
  hand.grip = Grip::Scratches;
  return true;
}

void TDeckScratch::CmDeckBeginScratch(DJDeckPosition deck, int frame) {
  if (!IsDeck(deck) || !TakeHold(deck) || Of(deck).grip == Grip::Bends) return;
  host_.CmScratchStart(deck, std::clamp(frame, 0, std::max(host_.LookAtDeck(deck).endFrame, 0)));
  host_.ScratchStopLoop(deck);
  host_.ShowDeckState(deck);
}

void TDeckScratch::CmDeckMidiBeginScratch(DJDeckPosition deck) {
  if (!IsDeck(deck) || Of(deck).heldByMidi || !TakeHold(deck)) return;
  Of(deck).heldByMidi = true;
  if (Of(deck).grip == Grip::Bends) return;
  host_.CmStartMidiScratch(deck);
  host_.ScratchStopLoop(deck);
  host_.ShowDeckState(deck);
  host_.ShowHand(deck, host_.GetMidiScratchPosition(deck));
}

void TDeckScratch::CmDeckScratch(DJDeckPosition deck, int frame) {
  if (!IsDeck(deck)) return;
  const Hand& hand = Of(deck);
  if (hand.grip == Grip::Bends) Bend(deck, (long long)frame * kBendPerFrame);
  const TScratchDeck state = host_.LookAtDeck(deck);
  if (hand.grip != Grip::Scratches || !state.loaded) return;
  const int target = std::clamp(frame, 0, std::max(state.endFrame, 0));
  host_.CmScratchToPosition(deck, target);
  host_.ShowHand(deck, target);
}

void TDeckScratch::CmDeckEndScratch(DJDeckPosition deck) {
  if (!IsDeck(deck)) return;
  Hand& hand = Of(deck);
  MovePending(deck);  // what the wheel has done counts
  const Hand held = hand;
  hand = {.midiMode = held.midiMode};
  if (held.grip == Grip::Bends) host_.CmDeckPitch(deck, held.rememberedPitch);
  if (held.grip != Grip::Scratches) return;
  host_.CmScratchEnd(deck);
  host_.ScratchResumeLoop(deck);
  host_.ShowDeckState(deck);
}

void TDeckScratch::Bend(DJDeckPosition deck, long long away) {
  host_.CmDeckPitch(deck, int(std::clamp<long long>(Of(deck).rememberedPitch + away, 0, kPitchSliderMax)));
}

int TDeckScratch::JogDelta(int value) {
  const int step = std::clamp(value, 0, kHighestMidiValue);
  int delta = 0;
  switch (TSettings::kMidiJogWheelConfig.Get()) {
    case AroundMiddle:
      delta = step - 64;
      break;
    case Signed:
      delta = step > 63 ? step - 128 : step;
      break;
    default:
      break;
  }
  delta *= TSettings::kMidiJogWheelMagnitude.Get();
  return TSettings::kMidInvertJogWheelDirection.Get() ? -delta : delta;
}

void TDeckScratch::DeckMidiDragWave(DJDeckPosition deck, int value) {
  if (!IsDeck(deck)) return;
  CmDeckMidiBeginScratch(deck);
  Hand& hand = Of(deck);
  if (!hand.heldByMidi) return;  // refused
  const int delta = JogDelta(value);
  if (hand.grip == Grip::Bends) {
    hand.stopRequested = false;
    Bend(deck, (long long)delta * kBendPerJogStep);
    return;
  }
  hand.pendingDelta = std::clamp(hand.pendingDelta + delta, -kMostPendingSteps, kMostPendingSteps);
  TimerSet(kJogTimer, 0);
}

void TDeckScratch::EvTimer(int id) {
  if (id != kJogTimer) return;
  for (const DJDeckPosition deck : {kDeckA, kDeckB}) MovePending(deck);
}

void TDeckScratch::MovePending(DJDeckPosition deck) {
  const int delta = Of(deck).pendingDelta;
  Of(deck).pendingDelta = 0;
  if (delta != 0) CmDeckMidiScratch(deck, delta);
}

void TDeckScratch::CmDeckMidiScratch(DJDeckPosition deck, int delta) {
  Of(deck).stopRequested = false;
  const TScratchDeck state = host_.LookAtDeck(deck);
  if (!state.loaded) return;
  const double frames = host_.GetFramesPerPixel(deck) * state.pitch * delta;
  host_.CmMidiScratchToPosition(deck, SaturateToInt(frames));
  const int position = host_.GetMidiScratchPosition(deck);
  host_.ShowHandOnDetail(deck, position);
  host_.ShowHand(deck, position);
}

void TDeckScratch::CmDeckMidiStopScratch(DJDeckPosition deck) {
  if (!IsDeck(deck)) return;
  if (Of(deck).midiMode)
    Of(deck).stopRequested = true;
  else
    CmDeckEndScratch(deck);
}

void TDeckScratch::CmDeckMidiToggleScratch(DJDeckPosition deck) {
  if (IsMidiScratching(deck))
    CmDeckMidiStopScratch(deck);
  else
    CmDeckMidiBeginScratch(deck);
}

void TDeckScratch::CmMidiToggleScratchMode(DJDeckPosition deck) {
  if (!IsDeck(deck)) return;
  if (Of(deck).midiMode) return CmMidiDisableScratchMode(deck);
  Of(deck).midiMode = true;
  if (Of(deck).grip == Grip::None) CmDeckMidiBeginScratch(deck);
}

void TDeckScratch::CmMidiDisableScratchMode(DJDeckPosition deck) {
  if (!IsDeck(deck)) return;
  Of(deck).midiMode = false;
  if (Of(deck).stopRequested && Of(deck).heldByMidi) CmDeckEndScratch(deck);
}
