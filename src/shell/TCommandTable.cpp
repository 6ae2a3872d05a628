#include "shell/TCommandTable.h"

#include <algorithm>

#include "control/TAVIID.h"
#include "shell/MainDialog.h"

namespace {

constexpr bool kLoaded = true;

void Browse(MainDialog& d, DJDeckPosition deck) { d.CmBrowseLoadFile(deck); }
void PlayPause(MainDialog& d, DJDeckPosition deck) { d.CmPlayPause(deck); }
void Jump(MainDialog& d, DJDeckPosition deck) { d.CmJumpToStart(deck); }
void Headphones(MainDialog& d, DJDeckPosition deck) { d.CmHeadphones(deck); }
void Reset(MainDialog& d, DJDeckPosition deck) { d.CmResetDeck(deck); }
void Clear(MainDialog& d, DJDeckPosition deck) { d.CmClearDeck(deck); }
void VolumeUp(MainDialog& d, DJDeckPosition deck) { d.DeckSlider(deck).KeyLevelUp(); }
void VolumeDown(MainDialog& d, DJDeckPosition deck) { d.DeckSlider(deck).KeyLevelDown(); }

constexpr TCommandRow kCommands[] = {
    {idAddToDeckA, kDeckA, Browse},
    {idAddToDeckB, kDeckB, Browse},
    {idPlayPauseA, kDeckA, PlayPause, kLoaded},
    {idPlayPauseB, kDeckB, PlayPause, kLoaded},
    {idJumpToStartA, kDeckA, Jump, kLoaded},
    {idJumpToStartB, kDeckB, Jump, kLoaded},
    {idHeadphonesA, kDeckA, Headphones},
    {idHeadphonesB, kDeckB, Headphones},
    {idResetDeckA, kDeckA, Reset},
    {idResetDeckB, kDeckB, Reset},
    {idClearDeckA, kDeckA, Clear, kLoaded},
    {idClearDeckB, kDeckB, Clear, kLoaded},
    {idVolumeUpA, kDeckA, VolumeUp},
    {idVolumeUpB, kDeckB, VolumeUp},
    {idVolumeDownA, kDeckA, VolumeDown},
    {idVolumeDownB, kDeckB, VolumeDown},
    {idMasterUp, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.MasterSlider().KeyLevelUp(); }},
    {idMasterDown, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.MasterSlider().KeyLevelDown(); }},
    {idHeadphoneUp, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.HeadphoneSlider().KeyLevelUp(); }},
    {idHeadphoneDown, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.HeadphoneSlider().KeyLevelDown(); }},
    {idCrossfadeLeft, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmCrossfadeStep(-1); }},
    {idCrossfadeRight, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmCrossfadeStep(1); }},
    {idCrossfadeFullLeft, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmSetCrossfadePosition(0); }},
    {idCrossfadeFullRight, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmSetCrossfadePosition(100); }},
    {idCrossfadeCentre, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmSetCrossfadePosition(50); }},
    {idRecord, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmRecord(); }},
    {idMicrophone, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.ToggleMicrophoneMode(); }},
    {idSafeLive, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmToggleSafeLiveMode(); }},
    {idOpenRecordFolder, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.CmOpenRecordFolder(); }},
    {idQuit, kNoDeck, [](MainDialog& d, DJDeckPosition) { d.RequestClose(); }},
};

}  // namespace

const TCommandRow* FindCommand(int id) {
  const auto* row = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const auto& r) { return r.id == id; });
  return row == std::end(kCommands) ? nullptr : row;
}
