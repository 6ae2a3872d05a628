// What a deck tells its two listeners (the console first, the panel second), and what the console tells the
// application.
// Threads  [main]
#pragma once
#include "sound/LSoundTime.h"
#include "sound/LdB.h"

class DJDeck;

class DJDeckNotify {
 public:
  virtual ~DJDeckNotify() = default;
  virtual bool djntfPlay(DJDeck&) { return true; }  // false refuses
  virtual bool djntfCuePlay(DJDeck&, int /*frame*/) { return true; }
  virtual void djntfStop(DJDeck&) {}
  virtual void djntfLevel(const LLevels&, DJDeck&) {}
  virtual void djntfVolume(LLevel /*volume*/, LLevel /*crossfade*/, DJDeck&) {}
  virtual void djntfTime(LSoundTime&, DJDeck&) {}
  virtual void djntfFX(DJDeck&) {}
  virtual void djntfBeats(DJDeck&) {}
  virtual void djntfHeadphone(DJDeck&, bool /*on*/) {}
  virtual void djntfBeatLoop(DJDeck&) {}
};

class DJConsoleNotify {
 public:
  virtual ~DJConsoleNotify() = default;
  virtual void djcntfLevel(const LLevels&, long /*id*/) {}
  virtual void djcntfBeats(DJDeck&) {}
  virtual void djcntfStop(DJDeck&) {}
  virtual void djcntfPlay(DJDeck&) {}
  virtual void djcntfTime() {}
  virtual void djcntfDeckPitchUpdate(DJDeck&) {}  // the pitch of the deck has changed
  virtual void djcntfFreeSlave(DJDeck&) {}        // the deck could not follow its master any longer
  virtual bool djcntfIsRecording() { return false; }
  virtual void djcntfShowMessage(const char* /*text*/, const char* /*title*/) {}
};
