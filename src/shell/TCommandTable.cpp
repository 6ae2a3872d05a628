#include "shell/TCommandTable.h"

#include <algorithm>

#include "control/TAVIID.h"
#include "effects/TEqualizer.h"
#include "shell/MainDialog.h"

namespace {

constexpr bool kLoaded = true;

// Operations of a deck.
void Browse(MainDialog& d, DJDeckPosition deck, int) { d.CmBrowseLoadFile(deck); }
void PlayPause(MainDialog& d, DJDeckPosition deck, int) { d.CmPlayPause(deck); }
void Jump(MainDialog& d, DJDeckPosition deck, int) { d.CmJumpToStart(deck); }
void Headphones(MainDialog& d, DJDeckPosition deck, int) { d.CmHeadphones(deck); }
void Reset(MainDialog& d, DJDeckPosition deck, int) { d.CmResetDeck(deck); }
void Clear(MainDialog& d, DJDeckPosition deck, int) { d.CmClearDeck(deck); }
void VolumeUp(MainDialog& d, DJDeckPosition deck, int) { d.DeckSlider(deck).KeyLevelUp(); }
void VolumeDown(MainDialog& d, DJDeckPosition deck, int) { d.DeckSlider(deck).KeyLevelDown(); }
void Cue(MainDialog& d, DJDeckPosition deck, int slot) { d.CmDeckCue(deck, slot); }
void CueLoop(MainDialog& d, DJDeckPosition deck, int slot) { d.CmDeckCueBeatLoop(deck, slot); }
void LoopLength(MainDialog& d, DJDeckPosition deck, int index) { d.SetDeckCueBeatLoopLength(deck, index); }
void CueLock(MainDialog& d, DJDeckPosition deck, int) { d.CmDeckCueBeatSetToggleLock(deck); }
void WholeTrack(MainDialog& d, DJDeckPosition deck, int) { d.CmDeckWholeTrackLoopToggle(deck); }
void LongerLoop(MainDialog& d, DJDeckPosition deck, int) { d.CmDeckIncreaseBeatLoop(deck); }
void ShorterLoop(MainDialog& d, DJDeckPosition deck, int) { d.CmDeckDecreaseBeatLoop(deck); }
void SaveLoop(MainDialog& d, DJDeckPosition deck, int) { d.CmSaveDeckLoop(deck); }
void Sync(MainDialog& d, DJDeckPosition deck, int) { d.CmDeckSyncToggle(deck); }
void PitchLock(MainDialog& d, DJDeckPosition deck, int) { d.CmTogglePitchLock(deck); }
void Freestyle(MainDialog& d, DJDeckPosition deck, int) { d.CmToggleStrictBeats(deck); }
void Vinyl(MainDialog& d, DJDeckPosition deck, int) { d.CmToggleVinylMode(deck); }
void Pan(MainDialog& d, DJDeckPosition deck, int) { d.CmSetDeckStereoPan(deck); }
void Kill(MainDialog& d, DJDeckPosition, int index) { d.CmKillBand(index % kDeckCount, index / kDeckCount); }
void ScratchMode(MainDialog& d, DJDeckPosition deck, int) { d.Hand().CmMidiToggleScratchMode(deck); }
void StartScratch(MainDialog& d, DJDeckPosition deck, int) { d.Hand().CmDeckMidiBeginScratch(deck); }
void StopScratch(MainDialog& d, DJDeckPosition deck, int) { d.Hand().CmDeckMidiStopScratch(deck); }
void ToggleScratch(MainDialog& d, DJDeckPosition deck, int) { d.Hand().CmDeckMidiToggleScratch(deck); }

constexpr TCommandRow kCommands[] = {
    {idAddToDeckA, kDeckA, Browse},
    {idAddToDeckB, kDeckB, Browse},
    {idPlayPauseA, kDeckA, PlayPause, kLoaded},
    {idPlayPauseB, kDeckB, PlayPause, kLoaded},
    {idCuePointA, kDeckA, Cue, kLoaded, kCuePoints},
    {idCuePointB, kDeckB, Cue, kLoaded, kCuePoints},
    {idCueBeatLoopA, kDeckA, CueLoop, kLoaded, kCuePoints},
    {idCueBeatLoopB, kDeckB, CueLoop, kLoaded, kCuePoints},
    {idBeatLoopLengthA, kDeckA, LoopLength, !kLoaded, kLoopLengths},
    {idBeatLoopLengthB, kDeckB, LoopLength, !kLoaded, kLoopLengths},
    {idCueLockA, kDeckA, CueLock},
    {idCueLockB, kDeckB, CueLock},
    {idWholeTrackA, kDeckA, WholeTrack, kLoaded},
    {idWholeTrackB, kDeckB, WholeTrack, kLoaded},
    {idIncreaseBeatLoopA, kDeckA, LongerLoop, kLoaded},
    {idIncreaseBeatLoopB, kDeckB, LongerLoop, kLoaded},
    {idDecreaseBeatLoopA, kDeckA, ShorterLoop, kLoaded},
    {idDecreaseBeatLoopB, kDeckB, ShorterLoop, kLoaded},
    {idSaveLoopA, kDeckA, SaveLoop, kLoaded},
    {idSaveLoopB, kDeckB, SaveLoop, kLoaded},
    {idSyncA, kDeckA, Sync},
    {idSyncB, kDeckB, Sync},
    {idPitchLockA, kDeckA, PitchLock},
    {idPitchLockB, kDeckB, PitchLock},
    {idFreestyleA, kDeckA, Freestyle},
    {idFreestyleB, kDeckB, Freestyle},
    {idVinylModeA, kDeckA, Vinyl},
    {idVinylModeB, kDeckB, Vinyl},
    {idKillBassA, kNoDeck, Kill, !kLoaded, TEqualizer::kBands* kDeckCount},
    {idPanA, kDeckA, Pan},
    {idPanB, kDeckB, Pan},
    {idScratchModeA, kDeckA, ScratchMode},
    {idScratchModeB, kDeckB, ScratchMode},
    {idStartScratchA, kDeckA, StartScratch},
    {idStartScratchB, kDeckB, StartScratch},
    {idStopScratchA, kDeckA, StopScratch},
    {idStopScratchB, kDeckB, StopScratch},
    {idToggleScratchA, kDeckA, ToggleScratch},
    {idToggleScratchB, kDeckB, ToggleScratch},
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
    {idMasterUp, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.MasterSlider().KeyLevelUp(); }},
    {idMasterDown, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.MasterSlider().KeyLevelDown(); }},
    {idHeadphoneUp, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.HeadphoneSlider().KeyLevelUp(); }},
    {idHeadphoneDown, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.HeadphoneSlider().KeyLevelDown(); }},
    {idCrossfadeLeft, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmCrossfadeStep(-1); }},
    {idCrossfadeRight, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmCrossfadeStep(1); }},
    {idCrossfadeFullLeft, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmSetCrossfadePosition(0); }},
    {idCrossfadeFullRight, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmSetCrossfadePosition(100); }},
    {idCrossfadeCentre, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmSetCrossfadePosition(50); }},
    {idRecord, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmRecord(); }},
    {idMicrophone, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.ToggleMicrophoneMode(); }},
    {idSafeLive, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmToggleSafeLiveMode(); }},
    {idOpenRecordFolder, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.CmOpenRecordFolder(); }},
    {idClearEffects, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.Effects().Do({TEffectAction::Clear}); }},
    {idSaveEffectChain, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.Effects().SaveEffectChain(); }},
    {idLoadEffectChain, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.Effects().LoadEffectChain(); }},
    {idClearMasterEffects, kNoDeck,
     [](MainDialog& d, DJDeckPosition, int) {
       d.Effects().Do({TEffectAction::Clear, true});
     }},
    {idQuit, kNoDeck, [](MainDialog& d, DJDeckPosition, int) { d.RequestClose(); }},
};

}  // namespace

const TCommandRow* FindCommand(int id) {
  const auto* row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                 [&](const auto& r) { return id >= r.id && id < r.id + r.count; });
  return row == std::end(kCommands) ? nullptr : row;
}
