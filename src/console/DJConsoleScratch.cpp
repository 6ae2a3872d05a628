// The hand on the record: start, moves and end of a scratch.
#include <algorithm>
#include <utility>

#include "console/DJConsole.h"

void DJConsole::CmScratchStart(DJDeck& deck, int frame) { StartDeckScratch(deck, frame); }

void DJConsole::CmStartMidiScratch(DJDeck& deck) {
  int& start = midiScratchStart_[std::size_t(deck.GetPosition())];
  {
    const TPlayersLock lock(players_);
    start = deck.GetRawPosition();
  }
  StartDeckScratch(deck, start);
}

bool DJConsole::StartDeckScratch(DJDeck& deck, int frame) {
  {
    const TPlayersLock lock(players_);
    deck.ScratchStart(frame);
    if (!deck.IsPlaying()) deck.SetState(DJDeck::Starting);
    AddDeckSourceToMixer(deck);
    ResyncAll(true);
  }
  const bool started = StartPlayingDeck(deck);
  deck.SetState(started ? DJDeck::Playing : DJDeck::Stopped);
  return started;
}

void DJConsole::CmScratchToPosition(DJDeck& deck, int frame) {
  if (!deck.IsScratching()) return;
  const TPlayersLock lock(players_);
  deck.ScratchToPosition(frame);
  ResyncAll(false);  // the hand is heard at once, not behind what is queued
}

void DJConsole::CmMidiScratchToPosition(DJDeck& deck, int delta) {
  int& position = midiScratchStart_[std::size_t(deck.GetPosition())];
  position = int(std::clamp((long long)position + delta, 0LL, (long long)std::max(deck.GetTrackEnd(), 0)));
  CmScratchToPosition(deck, position);
}

void DJConsole::CmScratchEnd(DJDeck& deck) {
  if (!deck.IsScratching()) return;
  {
    const TPlayersLock lock(players_);
    const int raw = deck.GetRawPosition();
    deck.ScratchEnd();
    if (!deck.IsPlaying()) {  // its start had failed
      mixer_.DeleteSource(deck.GetPosition());
      deck.CloseChain();
      return;
    }
    ReplaceChain(deck, raw + GetLag(false));
    deck.SetRawPosition(raw);
    ResyncAll(true);
  }
  if (!deck.WasPlayingAtScratchStart()) deck.Stop();
  if (const auto pitch = std::exchange(pitchAfterScratch_[std::size_t(deck.GetPosition())], std::nullopt))
    QueuePitch(deck, *pitch);
}

void DJConsole::ResyncPlayerScratch(DJDeck& deck) {
  const TPlayersLock lock(players_);
  deck.ScratchRestart(deck.GetRawPosition());
  LSoundSource chain = deck.OpenSource();
  mixer_.ChangeSource(deck.GetPosition(), chain);
  ResyncAll(false);
}
