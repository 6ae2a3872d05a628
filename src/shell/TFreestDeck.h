// The deck that a new track should go to.
// Threads  [any]
#pragma once
#include "console/DJDeckPosition.h"

struct TFreestDeckInput {
  struct Deck {
    bool isThere = true, loaded = false, converting = false, playing = false, playedSinceLoad = false;
  };
  Deck deck[kDeckCount];
  DJDeckPosition lastLoaded = kDeckA;
  int crossFade = 50;  // 0 deck A .. 100 deck B
};

DJDeckPosition FindFreestDeck(const TFreestDeckInput& input);  // kNoDeck: both play and the crossfader decides nothing
