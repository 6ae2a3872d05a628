#include "shell/TMainMenu.h"

#include "control/TAVIID.h"
#include "control/TKeyTable.h"

namespace {

constexpr LMenuItem kSeparator{0, nullptr}, kEndSub{kMenuSub, nullptr};

constexpr LMenuItem kMenu[] = {
    {kMenuSub, "Tavi"},
    {idOpenRecordFolder, "Aufnahmeordner öffnen"},
    kSeparator,
    {idQuit, "Beenden"},
    kEndSub,
    {kMenuSub, "Konsolen-Steuerung"},
    {idSafeLive, "Abgesicherten Live-Modus umschalten"},
    {idRecord, "Aufnahme beginnen"},
    {idMicrophone, "Mikrofonmodus umschalten"},
    kSeparator,
    {idMasterUp, "Lautstärke erhöhen (Master)"},
    {idMasterDown, "Lautstärke verringern (Master)"},
    {idHeadphoneUp, "Lautstärke erhöhen (Kopfhörer)"},
    {idHeadphoneDown, "Lautstärke verringern (Kopfhörer)"},
    kSeparator,
    {idCrossfadeFullLeft, "Vollständig überblenden Links"},
    {idCrossfadeFullRight, "Vollständig überblenden Rechts"},
    {idCrossfadeCentre, "Mittig überblenden"},
    {idCrossfadeLeft, "Links überblenden (Abnahme)"},
    {idCrossfadeRight, "Rechts überblenden (Erhöhung)"},
    kEndSub,
    {kMenuSub, "Deck-Steuerelemente"},
    {kMenuSub, "Deck A"},
    {idAddToDeckA, "Titel laden..."},
    {idPlayPauseA, "Wiedergabe/Pause"},
    {idJumpToStartA, "Zum Anfang springen"},
    {idHeadphonesA, "Kopfhörer an/aus"},
    {idVolumeUpA, "Lautstärke erhöhen"},
    {idVolumeDownA, "Lautstärke verringern"},
    {idResetDeckA, "Deck auf Standard zurücksetzen"},
    {idClearDeckA, "Deck löschen"},
    kEndSub,
    {kMenuSub, "Deck B"},
    {idAddToDeckB, "Titel laden..."},
    {idPlayPauseB, "Wiedergabe/Pause"},
    {idJumpToStartB, "Zum Anfang springen"},
    {idHeadphonesB, "Kopfhörer an/aus"},
    {idVolumeUpB, "Lautstärke erhöhen"},
    {idVolumeDownB, "Lautstärke verringern"},
    {idResetDeckB, "Deck auf Standard zurücksetzen"},
    {idClearDeckB, "Deck löschen"},
    kEndSub,
    kEndSub,
};

}  // namespace

std::span<const LMenuItem> TMainMenu::Items() { return kMenu; }

std::vector<LKeyToCommandMap> TMainMenu::Keys() {
  std::vector<LKeyToCommandMap> keys;
  for (const TKeyCommand& row : TKeyTable::Rows())
    if (row.key != 0) keys.push_back({LKey(row.key), row.id});
  keys.push_back({LKey(LKey::kCommand | 'Q'), idQuit});
  return keys;
}
