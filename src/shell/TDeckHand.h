// The hand on the decks of the running program: joins the rules of scratching to the engine, the pitch and the panels.
// Units    frames at the deck's pitch; the pitch slider is 0..1000.
// Threads  [main]
#pragma once
#include "shell/TDeckCommandsHost.h"
#include "shell/TDeckScratch.h"

class DJConsole;
class DJDeck;
class TPitchCommands;

class TDeckHand final : private TDeckScratchHost {
 public:
  TDeckHand(DJConsole& console, TPitchCommands& pitch, TDeckCommandsHost& host)
      : console_(console), pitch_(pitch), host_(host) {}
  TDeckScratch& Scratch() { return scratch_; }

 private:
  DJDeck& Deck(DJDeckPosition deck) const;

  TScratchDeck LookAtDeck(DJDeckPosition deck) const override;
  bool IsAutoPlayOn() const override { return false; }
  void ShowAutoPlayBubble() override {}
  void CmScratchStart(DJDeckPosition deck, int frame) override;
  void CmStartMidiScratch(DJDeckPosition deck) override;
  void CmScratchToPosition(DJDeckPosition deck, int frame) override;
  void CmMidiScratchToPosition(DJDeckPosition deck, int deltaFrames) override;
  int GetMidiScratchPosition(DJDeckPosition deck) const override;
  void CmScratchEnd(DJDeckPosition deck) override;
  void CmDeckPitch(DJDeckPosition deck, int slider) override;
  int GetPitchSlider(DJDeckPosition deck) const override;
  double GetFramesPerPixel(DJDeckPosition deck) const override;
  void ScratchStopLoop(DJDeckPosition deck) override { host_.ShowDeck(deck); }
  void ScratchResumeLoop(DJDeckPosition deck) override { host_.ShowDeck(deck); }
  void ShowDeckState(DJDeckPosition deck) override { host_.ShowDeck(deck); }
  void ShowHand(DJDeckPosition deck, int) override { host_.ShowDeck(deck); }
  void ShowHandOnDetail(DJDeckPosition, int) override {}

  DJConsole& console_;
  TPitchCommands& pitch_;
  TDeckCommandsHost& host_;
  TDeckScratch scratch_{*this};
};
