// Speed, key lock and sync of the decks as the user knows them.
// Units    the pitch slider is 0..1000, 500 is normal speed.
// Threads  [main]
// Failure  a sync that cannot be is told by the deck's panel.
#pragma once
#include <array>

#include "console/DJDeckPosition.h"
#include "console/DJPitchLaw.h"
#include "shell/TDeckCommandsHost.h"

class DJConsole;
class DJDeck;

class TPitchCommands {
 public:
  TPitchCommands(DJConsole& console, TDeckCommandsHost& host) : console_(console), host_(host) {
    sliders_.fill(kPitchSliderCentre);
  }

  void CmDeckPitch(DJDeckPosition deck, int slider);
  void CmDeckPitchNudge(DJDeckPosition deck, int slider);  // there, and with the next call back
  void CmDeckPitchLock(DJDeckPosition deck, bool on);
  void CmDeckSync(DJDeckPosition deck);
  void CmDeckSyncToggle(DJDeckPosition deck);
  void CmDeckUnsync(DJDeckPosition deck);
  void UnsyncFromStoppedMaster(DJDeckPosition deck);  // as a slave is about to play

  void EvPitchUpdate(DJDeckPosition deck);  // the engine has changed the pitch
  void EvFreeSlave(DJDeckPosition deck);    // the engine had to free the slave
  void EvDeckReset(DJDeckPosition deck);
  int Slider(DJDeckPosition deck) const { return sliders_[std::size_t(deck)]; }

 private:
  DJDeck& Deck(DJDeckPosition deck) const;
  void ShowSlider(DJDeckPosition deck, int slider);

  DJConsole& console_;
  TDeckCommandsHost& host_;
  std::array<int, kDeckCount> sliders_;
};
