// A hand on a deck, by mouse or by jog wheel: it scratches the track, or, on a playing deck without vinyl mode, bends
// the pitch for as long as it holds on. Which of the two is decided when the hand takes hold.
// Law      jog events of one run of the main loop become one move: they add up and a timer of 0 ms hands them on.
// Units    frames at the deck's pitch; a jog's delta in steps of the wheel, one pixel of the detailed wave each; the
//          pitch slider is 0..1000.
// Threads  [main]
// Failure  an empty deck cannot be held; what comes for a deck that is not held does nothing. A hand is to be taken off
//          (CmDeckEndScratch) before its track is.
#pragma once
#include <array>

#include "console/DJDeckPosition.h"
#include "foundation/LTimerHandler.h"

struct TScratchDeck {
  bool loaded = false, playing = false, vinylMode = true;
  double pitch = 1.0;
  int endFrame = 0;
};

class TDeckScratchHost {
 public:
  virtual TScratchDeck LookAtDeck(DJDeckPosition deck) const = 0;
  virtual bool IsAutoPlayOn() const = 0;
  virtual void ShowAutoPlayBubble() = 0;

  // The console.
  virtual void CmScratchStart(DJDeckPosition deck, int frame) = 0;
  virtual void CmStartMidiScratch(DJDeckPosition deck) = 0;  // where the deck is heard now
  virtual void CmScratchToPosition(DJDeckPosition deck, int frame) = 0;
  virtual void CmMidiScratchToPosition(DJDeckPosition deck, int deltaFrames) = 0;
  virtual int GetMidiScratchPosition(DJDeckPosition deck) const = 0;
  virtual void CmScratchEnd(DJDeckPosition deck) = 0;
  virtual void CmDeckPitch(DJDeckPosition deck, int slider) = 0;

  // The deck's panel.
  virtual int GetPitchSlider(DJDeckPosition deck) const = 0;
  virtual double GetFramesPerPixel(DJDeckPosition deck) const = 0;  // of the detailed wave
  virtual void ScratchStopLoop(DJDeckPosition deck) = 0;            // the loop goes from the display, and comes back
  virtual void ScratchResumeLoop(DJDeckPosition deck) = 0;
  virtual void ShowDeckState(DJDeckPosition deck) = 0;                // play or pause
  virtual void ShowHand(DJDeckPosition deck, int frame) = 0;          // preview, deck time, sync display
  virtual void ShowHandOnDetail(DJDeckPosition deck, int frame) = 0;  // the mouse moves the detailed wave by itself

 protected:
  ~TDeckScratchHost() = default;
};

class TDeckScratch final : private LTimerHandler {
 public:
  explicit TDeckScratch(TDeckScratchHost& host) : host_(host) {}

  // The mouse on the wave. While the hand bends, `frame` is the distance it has been dragged.
  void CmDeckBeginScratch(DJDeckPosition deck, int frame);
  void CmDeckScratch(DJDeckPosition deck, int frame);
  void CmDeckEndScratch(DJDeckPosition deck);

  // The jog wheel. The mode latches a scratch, so that a released wheel does not end it.
  void DeckMidiDragWave(DJDeckPosition deck, int value);  // 0..127
  void CmDeckMidiBeginScratch(DJDeckPosition deck);
  void CmDeckMidiStopScratch(DJDeckPosition deck);
  void CmDeckMidiToggleScratch(DJDeckPosition deck);
  void CmMidiToggleScratchMode(DJDeckPosition deck);
  void CmMidiDisableScratchMode(DJDeckPosition deck);
  static int JogDelta(int value);  // in steps, as the settings have it

  bool IsMidiScratching(DJDeckPosition deck) const { return IsDeck(deck) && Of(deck).heldByMidi; }
  bool IsMidiScratchMode(DJDeckPosition deck) const { return IsDeck(deck) && Of(deck).midiMode; }

 private:
  enum class Grip : unsigned char { None, Scratches, Bends };
  struct Hand {
    Grip grip = Grip::None;
    bool heldByMidi = false;
    bool midiMode = false;
    bool stopRequested = true;  // leaving the mode ends the scratch
    int rememberedPitch = 0;    // of the slider, while the hand bends
    int pendingDelta = 0;       // steps since the last move
  };

  void EvTimer(int id) override;
  bool TakeHold(DJDeckPosition deck);
  void Bend(DJDeckPosition deck, long long away);
  void CmDeckMidiScratch(DJDeckPosition deck, int delta);
  void MovePending(DJDeckPosition deck);
  static bool IsDeck(DJDeckPosition deck) { return 0 <= deck && deck < kDeckCount; }
  Hand& Of(DJDeckPosition deck) { return hands_[std::size_t(deck)]; }
  const Hand& Of(DJDeckPosition deck) const { return hands_[std::size_t(deck)]; }

  TDeckScratchHost& host_;
  std::array<Hand, kDeckCount> hands_;
};
