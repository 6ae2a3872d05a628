// Cue points and loops as the user knows them: eight slots a deck, each a position and maybe a loop, one of which is
// applied at a time.
// Units    slots 0..7; indices into arLoopLengths; beats below 0 mean the whole track, 0 no loop.
// Threads  [main]
// Failure  a command for an empty deck, a wrong slot or, for beat loops, a deck without beats does nothing.
#pragma once
#include <array>
#include <string>

#include "console/DJDeckPosition.h"
#include "console/TCuePoints.h"
#include "shell/TDeckCommandsHost.h"

class DJConsole;
class DJDeck;

class TCueCommands {
 public:
  static constexpr int kNoSlot = -1;
  static constexpr int kFourBeats = 6;  // the length that new loops have until another is chosen

  TCueCommands(DJConsole& console, TDeckCommandsHost& host) : console_(console), host_(host) {}

  void CmDeckCue(DJDeckPosition deck, int slot);  // sets an empty one; from a set one the deck plays
  void CmDeckCuePause(DJDeckPosition deck, int slot);
  void CmDeckCueClear(DJDeckPosition deck, int slot);
  void CmDeckCueBeatSetToggleLock(DJDeckPosition deck);

  void CmDeckCueBeatLoop(DJDeckPosition deck, int slot);  // on, and with the applied slot off
  void CmDeckCueBeatLoopClear(DJDeckPosition deck, int slot);
  void CmUpdateDeckCueBeatLoop(DJDeckPosition deck);  // the length of the applied slot has changed
  void CmDeckIncreaseBeatLoop(DJDeckPosition deck) { StepBeatLoop(deck, 1); }
  void CmDeckDecreaseBeatLoop(DJDeckPosition deck) { StepBeatLoop(deck, -1); }
  void CmDeckWholeTrackLoopToggle(DJDeckPosition deck);
  void CmDeckBeatLoop(DJDeckPosition deck, double beats);  // from the audible beat on
  void SetDeckCueBeatLoopLength(DJDeckPosition deck, int lengthIndex);
  void CmSaveDeckLoop(DJDeckPosition deck);
  bool SaveLoop(DJDeckPosition deck, const std::string& path);

  void EvDeckEmptied(DJDeckPosition deck);
  int AppliedSlot(DJDeckPosition deck) const { return panels_[std::size_t(deck)].applied; }
  int SelectedLength(DJDeckPosition deck) const { return panels_[std::size_t(deck)].length; }

 private:
  struct Panel {
    int applied = kNoSlot;
    int length = kFourBeats;
  };

  DJDeck* LoadedDeck(DJDeckPosition deck) const;  // null: empty
  void StepBeatLoop(DJDeckPosition deck, int step);
  void ApplySlot(DJDeck& deck, int slot);
  void CmDeckCueBeatLoopRemoveApplied(DJDeckPosition deck);
  Panel& Of(DJDeckPosition deck) { return panels_[std::size_t(deck)]; }

  DJConsole& console_;
  TDeckCommandsHost& host_;
  std::array<Panel, kDeckCount> panels_;
};
