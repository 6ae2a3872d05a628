// The columns of the library's list: what each shows of a track, and how it sorts. Other code addresses them by index.
// Law      play count and tempo sort by the digits of their texts, so "128.50" counts as 12850 and "--" as 0; the others
//          sort by folded text.
// Units    shares of the list's width
// Threads  [any]
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "library/LPlayItem.h"

enum TLibraryColumn {
  lcTitle,
  lcComment,
  lcArtist,
  lcAlbum,
  lcLength,
  lcPlayTimes,
  lcBpm,
  lcDeck,
  lcFeedTo,  // shown only where tracks are fed to decks
  kLibraryColumns
};

struct TLibraryColumnRow {
  const char* header;
  int share;
  bool isEditable, isNumeric;
};
extern const TLibraryColumnRow kTemplateListCols[kLibraryColumns];

// On which decks a track stands: bit 0 deck A, bit 1 deck B.
class TLVDeckPositionHelper {
 public:
  void ApplyToDeck(unsigned deck, bool on) {
    if (deck < kDecks) mask_ = on ? mask_ | 1u << deck : mask_ & ~(1u << deck);
  }
  bool IsAppliedToDeck(unsigned deck) const { return deck < kDecks && (mask_ >> deck & 1) != 0; }

 private:
  static constexpr unsigned kDecks = 2;
  unsigned mask_ = 0;
};

std::string LibraryCellText(const LPlayItem& item, int column, TLVDeckPositionHelper decks = {});
std::int64_t LibrarySortNumber(std::string_view cellText);
