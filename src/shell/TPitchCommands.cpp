#include "shell/TPitchCommands.h"

#include <algorithm>

#include "console/DJConsole.h"

DJDeck& TPitchCommands::Deck(DJDeckPosition deck) const { return *console_.GetDeck(deck); }

void TPitchCommands::ShowSlider(DJDeckPosition deck, int slider) {
  sliders_[std::size_t(deck)] = std::clamp(slider, 0, kPitchSliderMax);
  host_.ShowDeck(deck);
}

void TPitchCommands::CmDeckPitch(DJDeckPosition position, int slider) {
  if (!console_.CmDeckSetPitch(Deck(position), slider)) return;
  // Only a slave that does not keep to the beat gets here; from now on it goes its own way.
  if (Deck(position).GetSyncState() == DJDeck::Slave) console_.CtlDeckFreeSlave(Deck(position));
  ShowSlider(position, slider);
}

void TPitchCommands::CmDeckPitchNudge(DJDeckPosition position, int slider) {
  slider = std::clamp(slider, 0, kPitchSliderMax);
  console_.CmDeckNudgePitch(Deck(position), slider);
  if (Deck(position).GetSyncState() != DJDeck::Slave) ShowSlider(position, slider);
}

void TPitchCommands::CmDeckPitchLock(DJDeckPosition position, bool on) {
  if (host_.RefuseDeckAction(position)) return;
  console_.CmDeckPitchLock(Deck(position), on);
  host_.ShowDeck(position);
}

void TPitchCommands::CmDeckSync(DJDeckPosition position) {
  if (host_.RefuseDeckAction(position)) return;
  const DJSyncResult result = console_.CtlDeckSync(Deck(position));
  if (result != syncDone) host_.ShowSyncAlert(position, result);
  host_.ShowDeck(position);
}

void TPitchCommands::CmDeckSyncToggle(DJDeckPosition position) {
  Deck(position).GetSyncState() == DJDeck::Slave ? CmDeckUnsync(position) : CmDeckSync(position);
}

void TPitchCommands::CmDeckUnsync(DJDeckPosition position) {
  if (host_.RefuseDeckAction(position)) return;
  console_.CmDeckUnsync(Deck(position));
  EvPitchUpdate(position);
}

void TPitchCommands::UnsyncFromStoppedMaster(DJDeckPosition position) {
  if (Deck(position).GetSyncState() != DJDeck::Slave || console_.IsMasterPlaying(Deck(position))) return;
  console_.CmDeckUnsync(Deck(position));
  EvPitchUpdate(position);
  host_.ShowSyncAlert(position, syncOtherNotPlaying);
}

void TPitchCommands::EvPitchUpdate(DJDeckPosition position) {
  ShowSlider(position, SliderFromPitch(Deck(position).GetPitch()));
}

void TPitchCommands::EvFreeSlave(DJDeckPosition position) {
  ShowSlider(position, kPitchSliderCentre);
  host_.ShowSyncAlert(position, syncOutOfRange);
}

void TPitchCommands::EvDeckReset(DJDeckPosition position) { ShowSlider(position, kPitchSliderCentre); }
