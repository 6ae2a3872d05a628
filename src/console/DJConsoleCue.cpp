// Cue points and loops of decks that may be playing.
#include <algorithm>

#include "console/DJConsole.h"

// Cue points

void DJConsole::CmDeckSetCuePoint(DJDeck& deck, int index) {
  const TPlayersLock lock(players_);
  deck.SetCuePointAtIndex(index, -1);
}

bool DJConsole::djntfCuePlay(DJDeck& deck, int frame) {
  if (!players_.IsRunning()) {
    deck.Seek(frame);
    AddDeckSourceToMixer(deck);
    return StartPlayingDeck(deck);
  }
  {
    const TPlayersLock lock(players_);
    ResyncAll(false);
    if (!deck.IsPlaying()) {
      deck.Seek(frame);
      AddDeckSourceToMixer(deck);
    } else if (MasterOf(deck)) {
      deck.Seek(frame);
      SeekToMaster(deck);
    } else {
      if (deck.SnapsToBeats()) frame = deck.GetBeatGrid().GetPhaseKeepingPos(frame, MixerPosition(deck));
      deck.Seek(std::max(frame, 0));
    }
    ResyncAll(true);
  }
  if (target_) target_->djcntfPlay(deck);
  return true;
}

void DJConsole::CmDeckCuePause(DJDeck& deck, int index) {
  const int cue = deck.GetCuePosition(index);
  if (cue == kNoCue) return;
  if (deck.GetLoop().on) deck.SetBeatLoopStart(cue);
  deck.ClearState();
  deck.Seek(cue);
}

// Loops

int DJConsole::PositionInLoop(DJDeck& deck, int position) const {
  const TDeckLoop& loop = deck.GetLoop();
  if (loop.IsActive() && !loop.Holds(position)) position = loop.start;
  const DJDeck* master = PlayingMasterOf(deck);
  return master ? std::max(GetEquivalentBarPosition(*master, deck, 0), 0) : position;
}

void DJConsole::UpdateDeckLoop(DJDeck& deck) {
  if (deck.IsPlaying()) ChangeInMix(deck, [&] { return PositionInLoop(deck, MixerPosition(deck)); });
}

void DJConsole::CmDeckApplyCueBeatLoop(DJDeck& deck, int index) {
  const int length = deck.Cues().LoopLength(index);
  const double beats = length == kNoLoopLength ? 0 : arLoopLengths[std::size_t(length)];
  int start = deck.GetCuePosition(index);
  if (!deck.IsPlaying()) {
    if (start == kNoCue) {
      start = std::max(deck.GetRawPosition(), 0);
      if (deck.SnapsToBeats()) start = deck.GetBeatGrid().GetClosestBeatPos(start);
    }
    deck.Seek(start);
    deck.CmApplyBeatLoop(start, beats);
    return;
  }
  ChangeInMix(deck, [&] {
    if (start == kNoCue) {
      start = deck.GetRealPosition(0);
      if (deck.SnapsToBeats()) start = deck.GetBeatGrid().GetPreviousBeatPos(start);
    }
    const int position = MixerPosition(deck);
    deck.CmApplyBeatLoop(start, beats);
    return PositionInLoop(deck, position);
  });
}

void DJConsole::CmDeckRemoveCueBeatLoop(DJDeck& deck) {
  if (!deck.GetLoop().on) return;
  if (!deck.IsPlaying()) return deck.CmRemoveBeatLoop();
  ChangeInMix(deck, [&] {
    deck.CmRemoveBeatLoop();
    return MixerPosition(deck);
  });
}

void DJConsole::CmDeckLoopTrack(DJDeck& deck) {
  if (!deck.IsPlaying()) return deck.CmApplyBeatLoop(0, kWholeTrack);
  ChangeInMix(deck, [&] {
    deck.CmApplyBeatLoop(0, kWholeTrack);
    return PositionInLoop(deck, MixerPosition(deck));
  });
}
