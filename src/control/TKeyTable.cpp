#include "control/TKeyTable.h"

#include "control/TAVIID.h"
#include "foundation/LKey.h"

const TKeyCommand InvalidKeyCommand{"Invalid Key Command", 0, 9, 0, ""};

namespace {

constexpr std::uint32_t kCmd = LKey::kCommand, kShift = LKey::kShift, kOption = LKey::kOption;
constexpr std::uint32_t Code(int code) { return LKey::FromCode(code).Value(); }
constexpr std::uint32_t kLeft = Code(LKeyCode::kLeft), kRight = Code(LKeyCode::kRight);
constexpr std::uint32_t kUp = Code(LKeyCode::kUp), kDown = Code(LKeyCode::kDown);

constexpr TKeyCommand kRows[] = {
    // name                            id                    deck  default key       German text
    {"Clear Effects", idClearEffects, 9, 0, "Deck-Effekte löschen"},
    {"Record", idRecord, 9, kCmd | 'R', "Aufnahme beginnen"},
    {"Safe Live Mode", idSafeLive, 9, kCmd | 'L', "Abgesicherten Live-Modus umschalten"},
    {"Microphone Mode", idMicrophone, 9, kCmd | 'N', "Mikrofonmodus umschalten"},
    {"Add to deck A", idAddToDeckA, 0, 'A', "Zum Deck hinzufügen"},
    {"Add to deck B", idAddToDeckB, 1, kOption | 'A', "Zum Deck hinzufügen"},
    {"Play/Pause A", idPlayPauseA, 0, ' ', "Wiedergabe/Pause"},
    {"Play/Pause B", idPlayPauseB, 1, kOption | ' ', "Wiedergabe/Pause"},
    {"Cue Point 1 A", idCuePointA, 0, '1', "Cue-Point 1 verwenden"},
    {"Cue Point 2 A", idCuePointA + 1, 0, '2', "Cue-Point 2 verwenden"},
    {"Cue Point 3 A", idCuePointA + 2, 0, '3', "Cue-Point 3 verwenden"},
    {"Cue Point 4 A", idCuePointA + 3, 0, '4', "Cue-Point 4 verwenden"},
    {"Cue Point 5 A", idCuePointA + 4, 0, '5', "Cue-Point 5 verwenden"},
    {"Cue Point 6 A", idCuePointA + 5, 0, '6', "Cue-Point 6 verwenden"},
    {"Cue Point 7 A", idCuePointA + 6, 0, '7', "Cue-Point 7 verwenden"},
    {"Cue Point 8 A", idCuePointA + 7, 0, '8', "Cue-Point 8 verwenden"},
    {"Cue Point 1 B", idCuePointB, 1, kOption | '1', "Cue-Point 1 verwenden"},
    {"Cue Point 2 B", idCuePointB + 1, 1, kOption | '2', "Cue-Point 2 verwenden"},
    {"Cue Point 3 B", idCuePointB + 2, 1, kOption | '3', "Cue-Point 3 verwenden"},
    {"Cue Point 4 B", idCuePointB + 3, 1, kOption | '4', "Cue-Point 4 verwenden"},
    {"Cue Point 5 B", idCuePointB + 4, 1, kOption | '5', "Cue-Point 5 verwenden"},
    {"Cue Point 6 B", idCuePointB + 5, 1, kOption | '6', "Cue-Point 6 verwenden"},
    {"Cue Point 7 B", idCuePointB + 6, 1, kOption | '7', "Cue-Point 7 verwenden"},
    {"Cue Point 8 B", idCuePointB + 7, 1, kOption | '8', "Cue-Point 8 verwenden"},
    {"Cue Beat Loop 1 A", idCueBeatLoopA, 0, 0, "Taktschleife für Cue-Point 1 übernehmen"},
    {"Cue Beat Loop 2 A", idCueBeatLoopA + 1, 0, 0, "Taktschleife für Cue-Point 2 übernehmen"},
    {"Cue Beat Loop 3 A", idCueBeatLoopA + 2, 0, 0, "Taktschleife für Cue-Point 3 übernehmen"},
    {"Cue Beat Loop 4 A", idCueBeatLoopA + 3, 0, 0, "Taktschleife für Cue-Point 4 übernehmen"},
    {"Cue Beat Loop 5 A", idCueBeatLoopA + 4, 0, 0, "Taktschleife für Cue-Point 5 übernehmen"},
    {"Cue Beat Loop 6 A", idCueBeatLoopA + 5, 0, 0, "Taktschleife für Cue-Point 6 übernehmen"},
    {"Cue Beat Loop 7 A", idCueBeatLoopA + 6, 0, 0, "Taktschleife für Cue-Point 7 übernehmen"},
    {"Cue Beat Loop 8 A", idCueBeatLoopA + 7, 0, 0, "Taktschleife für Cue-Point 8 übernehmen"},
    {"Cue Beat Loop 1 B", idCueBeatLoopB, 1, 0, "Taktschleife für Cue-Point 1 übernehmen"},
    {"Cue Beat Loop 2 B", idCueBeatLoopB + 1, 1, 0, "Taktschleife für Cue-Point 2 übernehmen"},
    {"Cue Beat Loop 3 B", idCueBeatLoopB + 2, 1, 0, "Taktschleife für Cue-Point 3 übernehmen"},
    {"Cue Beat Loop 4 B", idCueBeatLoopB + 3, 1, 0, "Taktschleife für Cue-Point 4 übernehmen"},
    {"Cue Beat Loop 5 B", idCueBeatLoopB + 4, 1, 0, "Taktschleife für Cue-Point 5 übernehmen"},
    {"Cue Beat Loop 6 B", idCueBeatLoopB + 5, 1, 0, "Taktschleife für Cue-Point 6 übernehmen"},
    {"Cue Beat Loop 7 B", idCueBeatLoopB + 6, 1, 0, "Taktschleife für Cue-Point 7 übernehmen"},
    {"Cue Beat Loop 8 B", idCueBeatLoopB + 7, 1, 0, "Taktschleife für Cue-Point 8 übernehmen"},
    {"Whole Track A", idWholeTrackA, 0, 0, "Spur loopen"},
    {"Whole Track B", idWholeTrackB, 1, 0, "Spur loopen"},
    {"Increase Beat Loop A", idIncreaseBeatLoopA, 0, kShift | kUp, "Derzeit angewandte Taktschleife erhöhen"},
    {"Increase Beat Loop B", idIncreaseBeatLoopB, 1, kOption | kShift | kUp, "Derzeit angewandte Taktschleife erhöhen"},
    {"Decrease Beat Loop A", idDecreaseBeatLoopA, 0, kShift | kDown, "Derzeit angewandte Taktschleife verringern"},
    {"Decrease Beat Loop B", idDecreaseBeatLoopB, 1, kOption | kShift | kDown,
     "Derzeit angewandte Taktschleife verringern"},
    {"Sync On/Off A", idSyncA, 0, 'S', "Mit gewähltem Deck synchronisieren"},
    {"Sync On/Off B", idSyncB, 1, kOption | 'S', "Mit gewähltem Deck synchronisieren"},
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
    {"Pan On/Off A", idPanA, 0, 0, "Stereoschwenk ein/aus"},
    {"Pan On/Off B", idPanB, 1, 0, "Stereoschwenk ein/aus"},
    {"Jump to Start A", idJumpToStartA, 0, 'B', "Zum Anfang springen"},
    {"Jump to Start B", idJumpToStartB, 1, kOption | 'B', "Zum Anfang springen"},
    {"Reset Deck A", idResetDeckA, 0, 'R', "Deck auf Standard zurücksetzen"},
    {"Reset Deck B", idResetDeckB, 1, kOption | 'R', "Deck auf Standard zurücksetzen"},
    {"Clear Deck A", idClearDeckA, 0, 0, "Deck löschen"},
    {"Clear Deck B", idClearDeckB, 1, 0, "Deck löschen"},
    {"Set Freestyle On/Off A", idFreestyleA, 0, kShift | 'S', "FreeStyle-Modus festlegen"},
    {"Set Freestyle On/Off B", idFreestyleB, 1, kOption | kShift | 'S', "FreeStyle-Modus festlegen"},
    {"Clear Master Effects", idClearMasterEffects, 9, 0, "Master-Effekte löschen"},
};

// What a controller can do besides the above, and under other names.
constexpr TKeyCommand kControllerRows[] = {
    {"Play/Pause (A)", idPlayPauseA, 0, 0, "Wiedergabe/Pause"},
    {"Play/Pause (B)", idPlayPauseB, 1, 0, "Wiedergabe/Pause"},
    {"Loop Increase (A)", idIncreaseBeatLoopA, 0, 0, "Derzeit angewandte Taktschleife erhöhen"},
    {"Loop Increase (B)", idIncreaseBeatLoopB, 1, 0, "Derzeit angewandte Taktschleife erhöhen"},
    {"Loop Decrease (A)", idDecreaseBeatLoopA, 0, 0, "Derzeit angewandte Taktschleife verringern"},
    {"Loop Decrease (B)", idDecreaseBeatLoopB, 1, 0, "Derzeit angewandte Taktschleife verringern"},
    {"Sync (A)", idSyncA, 0, 0, "Mit gewähltem Deck synchronisieren"},
    {"Sync (B)", idSyncB, 1, 0, "Mit gewähltem Deck synchronisieren"},
    {"Pitch Lock A", idPitchLockA, 0, 0, "Tonhöhe sperren"},
    {"Pitch Lock B", idPitchLockB, 1, 0, "Tonhöhe sperren"},
    {"Kill Bass A", idKillBassA, 0, 0, ""},
    {"Kill Bass B", idKillBassA + 1, 1, 0, ""},
    {"Kill Mid Low A", idKillBassA + 2, 0, 0, ""},
    {"Kill Mid Low B", idKillBassA + 3, 1, 0, ""},
    {"Kill Mid A", idKillBassA + 4, 0, 0, ""},
    {"Kill Mid B", idKillBassA + 5, 1, 0, ""},
    {"Kill Mid High A", idKillBassA + 6, 0, 0, ""},
    {"Kill Mid High B", idKillBassA + 7, 1, 0, ""},
    {"Kill High A", idKillBassA + 8, 0, 0, ""},
    {"Kill High B", idKillBassA + 9, 1, 0, ""},
    {"Scratch Mode On/Off A", idScratchModeA, 0, 0, ""},
    {"Scratch Mode On/Off B", idScratchModeB, 1, 0, ""},
    {"Start Scratching A", idStartScratchA, 0, 0, ""},
    {"Start Scratching B", idStartScratchB, 1, 0, ""},
    {"Stop Scratching A", idStopScratchA, 0, 0, ""},
    {"Stop Scratching B", idStopScratchB, 1, 0, ""},
    {"Toggle Scratching A", idToggleScratchA, 0, 0, ""},
    {"Toggle Scratching B", idToggleScratchB, 1, 0, ""},
    {"Set Headphones Deck A", idHeadphonesA, 0, 0, "Kopfhörer an/aus"},
    {"Set Headphones Deck B", idHeadphonesB, 1, 0, "Kopfhörer an/aus"},
};

template <class Matches>
const TKeyCommand& Find(std::span<const TKeyCommand> rows, Matches matches) {
  for (const TKeyCommand& row : rows)
    if (matches(row)) return row;
  return InvalidKeyCommand;
}

}  // namespace

std::span<const TKeyCommand> TKeyTable::Rows() { return kRows; }

const TKeyCommand& TKeyTable::FindByName(std::string_view name) {
  const auto matches = [&](const TKeyCommand& row) { return row.name == name; };
  const TKeyCommand& row = Find(kRows, matches);
  return IsValid(row) ? row : Find(kControllerRows, matches);
}

const TKeyCommand& TKeyTable::FindByCommand(int id) {
  return Find(kRows, [&](const TKeyCommand& row) { return row.id == id; });
}

const TKeyCommand& TKeyTable::FindByKey(std::uint32_t key) {
  if (key == 0) return InvalidKeyCommand;
  return Find(kRows, [&](const TKeyCommand& row) { return row.key == key; });
}
