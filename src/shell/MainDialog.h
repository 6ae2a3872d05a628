// The controller: one window, one engine. It receives every command, key, drop, timer and notification, decides whether
// an action is allowed, and hands it on. State and rules live in the collaborators below; none of them knows this
// class.
// Threads  [main]
// Failure  what goes wrong is told as a German alert; with the headless toolkit as a line, and in the exit status.
#pragma once
#include <memory>
#include <string>

#include "console/DJConsole.h"
#include "screens/DJConsoleGUI.h"
#include "screens/DJDeckGUI.h"
#include "screens/DJPanelHost.h"
#include "shell/TCommandLine.h"
#include "shell/TCueCommands.h"
#include "shell/TDeckHand.h"
#include "shell/TDeckLoader.h"
#include "shell/TEffectCommands.h"
#include "shell/TPitchCommands.h"
#include "shell/TRecordCommands.h"
#include "shell/TSafeLive.h"
#include "shell/TScriptPlayer.h"
#include "toolkit/LMainWindow.h"

class MainDialog final : public LMainWindow,
                         private DJConsoleNotify,
                         private LTimerHandler,
                         private DJPanelHost,
                         private TSafeLiveView,
                         private TDeckLoaderHost,
                         private TRecordCommandsHost,
                         private TDeckCommandsHost,
                         private TEffectCommandsHost,
                         private TScriptHost {
 public:
  static constexpr int kDefaultWidth = 1056, kDefaultHeight = 595, kMinimumWidth = 936, kMinimumHeight = 561;

  MainDialog(const TStartOptions& options, TScript script);
  ~MainDialog() override;

  bool HadError() const { return hadError_; }  // a file, a recording or a device refused during this run
  DJConsole& GetConsole() { return *console_; }

  // Commands; each goes the same way from a menu, a key, a button, a script.
  void Command(int id, int code) override;
  void EnableControls();
  bool CmAddFileToDeck(DJDeckPosition deck, const std::string& path);
  void CmBrowseLoadFile(DJDeckPosition deck);
  void CmPlayPause(DJDeckPosition deck);
  void CmPlayDeck(DJDeckPosition deck);
  void CmPauseDeck(DJDeckPosition deck);
  void CmJumpToStart(DJDeckPosition deck);
  void CmHeadphones(DJDeckPosition deck);
  void CmResetDeck(DJDeckPosition deck);
  void CmClearDeck(DJDeckPosition deck);
  void CmSetCrossfadePosition(int position);
  void CmCrossfadeStep(int direction);
  void CmDeckCue(DJDeckPosition deck, int slot) { cue_.CmDeckCue(deck, slot); }
  void CmDeckCueBeatLoop(DJDeckPosition deck, int slot) { cue_.CmDeckCueBeatLoop(deck, slot); }
  void CmDeckCueBeatSetToggleLock(DJDeckPosition deck) { cue_.CmDeckCueBeatSetToggleLock(deck); }
  void SetDeckCueBeatLoopLength(DJDeckPosition deck, int index) { cue_.SetDeckCueBeatLoopLength(deck, index); }
  void CmDeckWholeTrackLoopToggle(DJDeckPosition deck) { cue_.CmDeckWholeTrackLoopToggle(deck); }
  void CmDeckIncreaseBeatLoop(DJDeckPosition deck) { cue_.CmDeckIncreaseBeatLoop(deck); }
  void CmDeckDecreaseBeatLoop(DJDeckPosition deck) { cue_.CmDeckDecreaseBeatLoop(deck); }
  void CmSaveDeckLoop(DJDeckPosition deck) { cue_.CmSaveDeckLoop(deck); }
  void CmDeckPitch(DJDeckPosition deck, int slider) { pitch_.CmDeckPitch(deck, slider); }
  void CmDeckPitchNudge(DJDeckPosition deck, int slider) { pitch_.CmDeckPitchNudge(deck, slider); }
  void CmDeckSyncToggle(DJDeckPosition deck) { pitch_.CmDeckSyncToggle(deck); }
  void CmTogglePitchLock(DJDeckPosition deck) { pitch_.CmDeckPitchLock(deck, !Deck(deck).IsKeyLocked()); }
  void CmToggleStrictBeats(DJDeckPosition deck) { Deck(deck).ToggleStrictBeats(); }
  void CmKillBand(DJDeckPosition deck, int band) { effects_.DeckUpdateEQRack(deck, band, TEffectCommands::kKilled); }
  void CmSetDeckStereoPan(DJDeckPosition deck) { Deck(deck).SetPan(!Deck(deck).IsPanOn()); }
  void CmToggleVinylMode(DJDeckPosition deck) { Deck(deck).ToggleVinylMode(); }
  void DeckSeek(DJDeckPosition deck, int frame);
  TEffectCommands& Effects() { return effects_; }
  TDeckScratch& Hand() { return hand_.Scratch(); }
  void CmRecord() { record_.CmRecord(); }
  void ToggleMicrophoneMode();
  void CmToggleSafeLiveMode();
  void CmOpenRecordFolder();
  DJDeckPosition FindFreestDeck() const;
  TDBEditSlider& MasterSlider() { return consoleGui_->MasterSlider(); }
  TDBEditSlider& HeadphoneSlider() { return consoleGui_->HeadphoneSlider(); }
  TDBEditSlider& DeckSlider(DJDeckPosition deck) { return DeckGUI(deck).VolumeSlider(); }

  void InitDialog() override;
  void DestroyDialog() override;
  bool CmCancel() override;
  void LayoutControls(int w, int h) override;
  bool EvKeyDown(LKey key) override { return EvKeyRepeat(key); }
  bool EvKeyRepeat(LKey key) override;
  bool EvDropFiles(const LDroppedFileData& files) override;

 private:
  void EvTimer(int id) override;
  void PostInitDialog();
  void LoadTracksOfCommandLine();
  void ShowNoDeviceAlert();
  void ShowDeviceMessage();
  void EndRun();
  void TakeScreenshot();
  void CheckMenuItems();
  void CheckDeckItems(DJDeckPosition deck);
  bool KeepsLists() const { return !options_.offline || !options_.dataFolder.empty(); }
  bool CmPlay(DJDeck& deck);
  bool EvAddDeckMessage(DJDeckPosition deck);
  DJDeckGUI& DeckGUI(DJDeckPosition deck) { return *deckGui_[std::size_t(deck)]; }
  DJDeck& Deck(DJDeckPosition deck) { return *console_->GetDeck(deck); }
  int Alert(const std::string& title, const std::string& text);
  void Fail(const std::string& title, const std::string& text);
  bool RefusedBySafeLive(bool allowed);  // shows the bubble if it is

  // The engine.
  void djcntfLevel(const LLevels& levels, long id) override;
  void djcntfStop(DJDeck& deck) override;
  void djcntfDeckPitchUpdate(DJDeck& deck) override { pitch_.EvPitchUpdate(deck.GetPosition()); }
  void djcntfFreeSlave(DJDeck& deck) override { pitch_.EvFreeSlave(deck.GetPosition()); }
  bool djcntfIsRecording() override { return console_->IsRecording(); }
  void djcntfShowMessage(const char* text, const char* title) override { Alert(title, text); }
  // The panels.
  void PanelCommand(int id) override { PostCommand(id); }
  void PanelCrossFade(int position) override { CmSetCrossfadePosition(position); }
  void PanelDeckVolume(DJDeckPosition deck, LLevel level) override;
  void PanelLevels(LLevel master, LLevel headphone) override;
  void PanelSeek(DJDeckPosition deck, int frame) override { DeckSeek(deck, frame); }
  void PanelBrowse(DJDeckPosition deck) override { CmBrowseLoadFile(deck); }
  bool PanelDrop(DJDeckPosition deck, const std::vector<std::string>& paths) override;
  // The rules of safe live mode.
  bool IsDeckPlaying(DJDeckPosition deck) const override { return console_->IsDeckPlaying(deck); }
  bool IsMainPlayerRunning() const override { return console_->IsMainPlayerRunning(); }
  int GetCrossFadePosition() const override { return console_->GetCrossFadePosition(); }
  // The commands of the decks.
  bool RefuseDeckAction(DJDeckPosition deck) override { return RefusedBySafeLive(safeLive_.AllowsDeckAction(deck)); }
  void PlayDeck(DJDeckPosition deck) override { CmPlayDeck(deck); }
  void SeekDeck(DJDeckPosition deck, int frame) override { DeckSeek(deck, frame); }
  void ShowDeck(DJDeckPosition deck) override;
  void ShowSyncAlert(DJDeckPosition deck, DJSyncResult result) override { DeckGUI(deck).CmSyncAlert(result); }
  void ShowSaveError(const char* title, const char* text) override { Fail(title, text); }
  LWindow* DialogParent() override { return this; }
  // Effects.
  void ShowEffectError(const std::string& title, const std::string& text) override { Fail(title, text); }
  void ShowEffectMessage(const std::string& text) override { ShowInfoLine(text); }
  LWindow* EffectDialogParent() override { return this; }
  // Loading and recording.
  void ShowLoadError(const std::string& text) override { Fail("Datei zum Deck hinzufügen", text); }
  void ShowConvertError(const std::string& text) override { Fail("Datei konvertieren", text); }
  void ShowConverting(DJDeckPosition deck, const std::string& path, int percent) override {
    DeckGUI(deck).ShowConverting(path, percent);
  }
  bool AskContinueWithLowDisk() override;
  void EvDeckToBeCleared(DJDeckPosition deck) override { Hand().CmDeckEndScratch(deck); }
  void EvDeckCleared(DJDeckPosition deck) override;
  void EvDeckLoaded(DJDeckPosition deck) override;
  void ShowRecordState(bool recording) override;
  void ShowRecordAlert(const std::string& text) override { Fail("Aufnahme", text); }
  void ShowInfoLine(const std::string& text) override;
  // The script.
  bool IsScriptToWait() override { return loader_.IsAnyConverting(); }
  void ScriptLoad(DJDeckPosition deck, const std::string& path) override { loader_.LoadFileToDeck(deck, path); }
  void ScriptCommand(int id) override { Command(id, 0); }
  void ScriptCrossfade(int position) override { CmSetCrossfadePosition(position); }
  void ScriptVolume(const TScriptEvent& event) override;
  void ScriptSeek(DJDeckPosition deck, double seconds) override;
  void ScriptPitch(DJDeckPosition deck, int slider) override { CmDeckPitch(deck, slider); }
  void ScriptLoop(DJDeckPosition deck, double beats) override { cue_.CmDeckBeatLoop(deck, beats); }
  void ScriptBpm(DJDeckPosition deck, double bpm, int frame) override { Deck(deck).SetBPM(bpm, frame); }
  void ScriptScratch(const TScriptEvent& event) override;
  void ScriptEffect(const TEffectAction& action) override { effects_.Do(action); }
  void ScriptEqualizer(DJDeckPosition deck, int band, int position) override {
    effects_.DeckUpdateEQRack(deck, band, position);
  }
  void ScriptState(const std::string& path) override;
  void ScriptEnded(bool quit) override;

  TStartOptions options_;
  std::unique_ptr<DJConsole> console_;
  TSafeLive safeLive_{*this};
  TDeckLoader loader_;
  TRecordCommands record_;
  TCueCommands cue_;
  TPitchCommands pitch_;
  TEffectCommands effects_;
  TDeckHand hand_;
  TScriptPlayer script_;
  bool hasScript_;
  int crossfadeStep_;
  std::unique_ptr<DJConsoleGUI> consoleGui_;
  std::unique_ptr<DJDeckGUI> deckGui_[kDeckCount];
  LLevel masterBeforeSpeaking_ = 0;
  bool hadError_ = false;
};
