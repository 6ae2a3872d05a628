#include "library/TLibraryColumns.h"

#include "foundation/LText.h"
#include "library/TTrackFields.h"
#include "sound/LSoundTime.h"

const TLibraryColumnRow kTemplateListCols[kLibraryColumns] = {
    {"Titel", 20, false, false}, {"Kommentar", 20, true, false}, {"Interpret", 19, false, false},
    {"Album", 19, false, false}, {"Länge", 10, false, false},    {"Wiedergabeanzahl", 10, true, true},
    {"BPM", 9, false, true},     {"Deck", 7, false, false},      {"Zuführung zu", 7, true, false},
};

namespace {

std::string LengthText(const LPlayItem& item) {
  const int length = TrackLength(item);
  if (length == 0) return "-Nicht bestimmt-";
  return LSoundTimeText::GetTextHMMSS(LSoundTimeFromFrames(length, TrackSampleRate(item)));
}

std::string BpmText(const LPlayItem& item) {
  const double bpm = TrackBpm(item);
  return bpm > 1 ? LText::Format("%3.2f", bpm) : bpm > 0 ? kUnknown : "--";
}

std::string DeckText(TLVDeckPositionHelper decks) {
  const bool a = decks.IsAppliedToDeck(0), b = decks.IsAppliedToDeck(1);
  return a && b ? "A, B" : a ? "A" : b ? "B" : "";
}

}  // namespace

std::string LibraryCellText(const LPlayItem& item, int column, TLVDeckPositionHelper decks) {
  switch (column) {
    case lcTitle:
      return TrackText(item, kTitleField);
    case lcComment:
      return item.fields.GetParm(kCommentField, "");
    case lcArtist:
      return TrackText(item, kArtistField);
    case lcAlbum:
      return TrackText(item, kAlbumField);
    case lcLength:
      return LengthText(item);
    case lcPlayTimes:
      return std::to_string(TrackPlayTimes(item));
    case lcBpm:
      return BpmText(item);
    case lcDeck:
      return DeckText(decks);
    case lcFeedTo:
      return TrackFeedTo(item);
    default:
      return "";
  }
}

std::int64_t LibrarySortNumber(std::string_view cellText) {
  const std::string_view text = cellText.substr(std::min(cellText.find_first_not_of(" \t"), cellText.size()));
  const bool negative = text.starts_with('-');
  std::uint64_t number = 0;  // of more digits than fit, the lowest bits
  for (const char c : text)
    if (c >= '0' && c <= '9') number = number * 10 + std::uint64_t(c - '0');
  return std::int64_t(negative ? 0 - number : number);
}
