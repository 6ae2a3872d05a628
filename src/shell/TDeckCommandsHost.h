// What the commands on a deck ask of the application: its rules, and to show what has changed.
// Threads  [main]
#pragma once
#include "console/DJDeckPosition.h"
#include "console/DJSyncResult.h"

class LWindow;

class TDeckCommandsHost {
 public:
  virtual bool RefuseDeckAction(DJDeckPosition deck) = 0;  // by safe live mode, whose hint is shown then
  virtual void PlayDeck(DJDeckPosition deck) = 0;
  virtual void SeekDeck(DJDeckPosition deck, int frame) = 0;
  virtual void ShowDeck(DJDeckPosition deck) = 0;  // its position, pitch, loop and cue points
  virtual void ShowSyncAlert(DJDeckPosition deck, DJSyncResult result) = 0;
  virtual void ShowSaveError(const char* title, const char* text) = 0;
  virtual LWindow* DialogParent() = 0;

 protected:
  ~TDeckCommandsHost() = default;
};
