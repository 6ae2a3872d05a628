#include "shell/TFreestDeck.h"

#include <initializer_list>

DJDeckPosition FindFreestDeck(const TFreestDeckInput& input) {
  for (const DJDeckPosition position : {kDeckA, kDeckB}) {
    const auto& deck = input.deck[position];
    if (!deck.isThere || (!deck.loaded && !deck.converting)) return position;
  }
  const auto &a = input.deck[kDeckA], &b = input.deck[kDeckB];
  if (!a.playing && !b.playing) {
    if (a.playedSinceLoad && input.lastLoaded != kDeckA) return kDeckA;
    if (b.playedSinceLoad && input.lastLoaded == kDeckA) return kDeckB;
    return input.lastLoaded == kDeckA ? kDeckB : kDeckA;
  }
  if (!a.playing) return kDeckA;
  if (!b.playing) return kDeckB;
  if (input.crossFade == 0) return kDeckB;
  return input.crossFade == 100 ? kDeckA : kNoDeck;
}
