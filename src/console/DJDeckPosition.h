// Which deck: 0 is A, 1 is B. Also the deck's id in the mixer.
// Threads  [any]
#pragma once

using DJDeckPosition = int;
inline constexpr DJDeckPosition kDeckA = 0, kDeckB = 1, kNoDeck = 9, kSampleDeck = 10;
inline constexpr int kDeckCount = 2;
inline constexpr DJDeckPosition kHeadphoneOnlyDeck = 8;  // reserved in the routing: never on the main channels

constexpr char DeckLetter(DJDeckPosition deck) { return char('A' + deck); }
