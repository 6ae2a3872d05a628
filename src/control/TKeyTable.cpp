#include "control/TKeyTable.h"

#include "control/TAVIID.h"
#include "foundation/LKey.h"

const TKeyCommand InvalidKeyCommand{"Invalid Key Command", 0, 9, 0, ""};

namespace {

constexpr std::uint32_t kCmd = LKey::kCommand, kShift = LKey::kShift, kOption = LKey::kOption;
constexpr std::uint32_t Code(int code) { return LKey::FromCode(code).Value(); }
constexpr std::uint32_t kLeft = Code(LKeyCode::kLeft), kRight = Code(LKeyCode::kRight);

constexpr TKeyCommand kRows[] = {
    // name                            id                    deck  default key       German text
    {"Record", idRecord, 9, kCmd | 'R', "Aufnahme beginnen"},
    {"Safe Live Mode", idSafeLive, 9, kCmd | 'L', "Abgesicherten Live-Modus umschalten"},
    {"Microphone Mode", idMicrophone, 9, kCmd | 'N', "Mikrofonmodus umschalten"},
    {"Add to deck A", idAddToDeckA, 0, 'A', "Zum Deck hinzufügen"},
    {"Add to deck B", idAddToDeckB, 1, kOption | 'A', "Zum Deck hinzufügen"},
    {"Play/Pause A", idPlayPauseA, 0, ' ', "Wiedergabe/Pause"},
    {"Play/Pause B", idPlayPauseB, 1, kOption | ' ', "Wiedergabe/Pause"},
    {"Headphones On/Off A", idHeadphonesA, 0, 'H', "Kopfhörer an/aus"},
    {"Headphones On/Off B", idHeadphonesB, 1, kOption | 'H', "Kopfhörer an/aus"},
    {"Increase Volume (Master)", idMasterUp, 9, 'L', "Lautstärke erhöhen (Master)"},
    {"Decrease Volume (Master)", idMasterDown, 9, 'K', "Lautstärke verringern (Master)"},
    {"Increase Volume (HeadPhone)", idHeadphoneUp, 9, kOption | 'L', "Lautstärke erhöhen (Kopfhörer)"},
    {"Decrease Volume (HeadPhone)", idHeadphoneDown, 9, kOption | 'K', "Lautstärke verringern (Kopfhörer)"},
    {"Increase Volume A", idVolumeUpA, 0, 'V', "Lautstärke erhöhen"},
    {"Increase Volume B", idVolumeUpB, 1, kOption | 'V', "Lautstärke erhöhen"},
    {"Decrease Volume A", idVolumeDownA, 0, kShift | 'V', "Lautstärke verringern"},
    {"Decrease Volume B", idVolumeDownB, 1, kOption | kShift | 'V', "Lautstärke verringern"},
    {"Crossfade Left", idCrossfadeLeft, 9, kLeft, "Links überblenden (Abnahme)"},
    {"Crossfade Right", idCrossfadeRight, 9, kRight, "Rechts überblenden (Erhöhung)"},
    {"Crossfade Full Right", idCrossfadeFullRight, 9, kShift | kRight, "Vollständig überblenden Rechts"},
    {"Crossfade Full Left", idCrossfadeFullLeft, 9, kShift | kLeft, "Vollständig überblenden Links"},
    {"Crossfade Center", idCrossfadeCentre, 9, '=', "Mittig überblenden"},
    {"Jump to Start A", idJumpToStartA, 0, 'B', "Zum Anfang springen"},
    {"Jump to Start B", idJumpToStartB, 1, kOption | 'B', "Zum Anfang springen"},
    {"Reset Deck A", idResetDeckA, 0, 'R', "Deck auf Standard zurücksetzen"},
    {"Reset Deck B", idResetDeckB, 1, kOption | 'R', "Deck auf Standard zurücksetzen"},
    {"Clear Deck A", idClearDeckA, 0, 0, "Deck löschen"},
    {"Clear Deck B", idClearDeckB, 1, 0, "Deck löschen"},
};

template <class Matches>
const TKeyCommand& Find(Matches matches) {
  for (const TKeyCommand& row : kRows)
    if (matches(row)) return row;
  return InvalidKeyCommand;
}

}  // namespace

std::span<const TKeyCommand> TKeyTable::Rows() { return kRows; }

const TKeyCommand& TKeyTable::FindByName(std::string_view name) {
  return Find([&](const TKeyCommand& row) { return row.name == name; });
}

const TKeyCommand& TKeyTable::FindByCommand(int id) {
  return Find([&](const TKeyCommand& row) { return row.id == id; });
}

const TKeyCommand& TKeyTable::FindByKey(std::uint32_t key) {
  if (key == 0) return InvalidKeyCommand;
  return Find([&](const TKeyCommand& row) { return row.key == key; });
}
