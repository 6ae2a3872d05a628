#include "shell/TDeckHand.h"

#include "console/DJConsole.h"
#include "shell/TPitchCommands.h"

namespace {

// A step of the wheel moves as far as a pixel of a close-up of the track does.
constexpr double kCloseUpSeconds = 5, kCloseUpPx = 440;

}  // namespace

DJDeck& TDeckHand::Deck(DJDeckPosition deck) const { return *console_.GetDeck(deck); }

TScratchDeck TDeckHand::LookAtDeck(DJDeckPosition position) const {
  const DJDeck& deck = Deck(position);
  return {deck.IsLoaded(), deck.IsPlaying(), deck.HasVinylMode(), deck.GetPitch(), deck.GetTrackEnd()};
}

void TDeckHand::CmScratchStart(DJDeckPosition deck, int frame) { console_.CmScratchStart(Deck(deck), frame); }

void TDeckHand::CmStartMidiScratch(DJDeckPosition deck) { console_.CmStartMidiScratch(Deck(deck)); }

void TDeckHand::CmScratchToPosition(DJDeckPosition deck, int frame) { console_.CmScratchToPosition(Deck(deck), frame); }

void TDeckHand::CmMidiScratchToPosition(DJDeckPosition deck, int deltaFrames) {
  console_.CmMidiScratchToPosition(Deck(deck), deltaFrames);
}

int TDeckHand::GetMidiScratchPosition(DJDeckPosition deck) const { return console_.GetMidiScratchPosition(Deck(deck)); }

void TDeckHand::CmScratchEnd(DJDeckPosition deck) { console_.CmScratchEnd(Deck(deck)); }

void TDeckHand::CmDeckPitch(DJDeckPosition deck, int slider) { pitch_.CmDeckPitch(deck, slider); }

int TDeckHand::GetPitchSlider(DJDeckPosition deck) const { return pitch_.Slider(deck); }

double TDeckHand::GetFramesPerPixel(DJDeckPosition deck) const {
  return kCloseUpSeconds * kDeckRate / (kCloseUpPx * Deck(deck).GetPitch());
}
