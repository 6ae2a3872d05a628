#include "shell/TMainMenu.h"

#include "console/DJDeckPosition.h"
#include "console/TCuePoints.h"
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
};

constexpr LMenuItem kEffectMenu[] = {
    {kMenuSub, "Deckeffekte"},
    {idLoadEffectChain, "Effektkette laden"},
    {idClearEffects, "Deck-Effekte löschen"},
    {idSaveEffectChain, "Effektkette speichern"},
    kEndSub,
};

// The items of a deck: both ids, and a text unless the key table has it. Rows of several ids count up.
struct DeckItem {
  unsigned idA, idB;
  const char* text = nullptr;
  int count = 1;
};
constexpr DeckItem kDeckSeparator{0, 0}, kEndDeckSub{kMenuSub, kMenuSub};

constexpr DeckItem kDeckItems[] = {
    {idAddToDeckA, idAddToDeckB, "Titel laden..."},
    {idPlayPauseA, idPlayPauseB},
    {idJumpToStartA, idJumpToStartB},
    {idFreestyleA, idFreestyleB},
    {idVinylModeA, idVinylModeB, "Vinyl-/Scratching-Modus festlegen"},
    kDeckSeparator,
    {kMenuSub, kMenuSub, "Cue-Points"},
    {idCuePointA, idCuePointB, nullptr, kCuePoints},
    kEndDeckSub,
    {kMenuSub, kMenuSub, "Taktschleifen"},
    {idCueBeatLoopA, idCueBeatLoopB, nullptr, kCuePoints},
    kEndDeckSub,
    {kMenuSub, kMenuSub, "Länge der Taktschleife"},
    {idBeatLoopLengthA, idBeatLoopLengthB, nullptr, kLoopLengths},
    kEndDeckSub,
    {idWholeTrackA, idWholeTrackB},
    {idIncreaseBeatLoopA, idIncreaseBeatLoopB},
    {idDecreaseBeatLoopA, idDecreaseBeatLoopB},
    {idSaveLoopA, idSaveLoopB, "Loop in Sample speichern"},
    kDeckSeparator,
    {idSyncA, idSyncB},
    {idPitchLockA, idPitchLockB, "Tonhöhe sperren"},
    {idHeadphonesA, idHeadphonesB},
    {idVolumeUpA, idVolumeUpB},
    {idVolumeDownA, idVolumeDownB},
    {idResetDeckA, idResetDeckB},
    {idClearDeckA, idClearDeckB},
};

const char* DeckItemText(const DeckItem& item, unsigned id, int index) {
  if (item.idA == idBeatLoopLengthA) return arBeatLoopLengths[std::size_t(index)];
  return item.text ? item.text : TKeyTable::FindByCommand(int(id)).text;
}

void AddDeckMenu(std::vector<LMenuItem>& menu, DJDeckPosition deck) {
  menu.push_back({kMenuSub, deck == kDeckA ? "Deck A" : "Deck B"});
  for (const DeckItem& item : kDeckItems) {
    const unsigned id = deck == kDeckA ? item.idA : item.idB;
    if (id == 0 || id == kMenuSub) menu.push_back({id, item.text});
    for (int i = 0; id != 0 && id != kMenuSub && i < item.count; ++i)
      menu.push_back({id + unsigned(i), DeckItemText(item, id + unsigned(i), i)});
  }
  menu.push_back(kEndSub);
}

std::vector<LMenuItem> BuildMenu() {
  std::vector<LMenuItem> menu(std::begin(kMenu), std::end(kMenu));
  menu.push_back({kMenuSub, "Deck-Steuerelemente"});
  AddDeckMenu(menu, kDeckA);
  AddDeckMenu(menu, kDeckB);
  menu.push_back(kEndSub);
  menu.insert(menu.end(), std::begin(kEffectMenu), std::end(kEffectMenu));
  return menu;
}

}  // namespace

std::span<const LMenuItem> TMainMenu::Items() {
  static const std::vector<LMenuItem> menu = BuildMenu();
  return menu;
}

std::vector<LKeyToCommandMap> TMainMenu::Keys() {
  std::vector<LKeyToCommandMap> keys;
  for (const TKeyCommand& row : TKeyTable::Rows())
    if (row.key != 0) keys.push_back({LKey(row.key), row.id});
  keys.push_back({LKey(LKey::kCommand | 'Q'), idQuit});
  return keys;
}
