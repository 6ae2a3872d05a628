#include "shell/MainDialog.h"

#include <algorithm>

#include "audiofile/LGenSourceTables.h"
#include "audiofile/convert/LFileCache.h"
#include "control/TAVIID.h"
#include "control/TKeyTable.h"
#include "foundation/LFile.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"
#include "screens/DJWindowLayout.h"
#include "shell/TCommandTable.h"
#include "shell/TFreestDeck.h"
#include "shell/TMainMenu.h"
#include "shell/TStateWriter.h"
#include "sound/LSoundBackend.h"
#include "toolkit/LAlert.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LToolkit.h"

namespace {

// Timers of the window.
constexpr int kNoDeviceTimer = 34, kPostInitTimer = 36, kDurationTimer = 60, kScreenshotTimer = 61, kDeviceTimer = 62;
constexpr int kPostInitRetryMs = 200;
constexpr int kScreenshotAfterMs = 2000;
constexpr int kDeviceMessageMs = 500;
constexpr int kSpeakingDropDb = 6;  // the music steps back while somebody speaks

}  // namespace

MainDialog::MainDialog(const TStartOptions& options, TScript script)
    : options_(options),
      console_(std::make_unique<DJConsole>()),
      loader_(*console_, *this),
      record_(*console_, *this),
      cue_(*console_, *this),
      pitch_(*console_, *this),
      effects_(*console_, *this),
      hand_(*console_, pitch_, *this),
      script_(std::move(script), *this),
      hasScript_(options.demo || !options.scriptPath.empty()),
      crossfadeStep_(TSettings::kCrossFadeShiftValue.Get()) {}

MainDialog::~MainDialog() = default;

// Start and end

void MainDialog::InitDialog() {
  SetTitle("Tavi");
  SetMinimumSize(kMinimumWidth, kMinimumHeight);
  SetSize(kDefaultWidth, kDefaultHeight);
  const auto keys = TMainMenu::Keys();
  SetMenu(TMainMenu::Items().data(), int(TMainMenu::Items().size()), keys.data(), int(keys.size()));
  SetStatusText("Tavi " TAVI_VERSION);
  console_->SetNotify(this);
  DJPanelHost& host = *this;
  consoleGui_ = std::make_unique<DJConsoleGUI>(*this, host);
  for (const DJDeckPosition position : {kDeckA, kDeckB}) {
    DJDeck& deck = console_->AddDeck(position);
    deck.SetEffectChain(&effects_.Chain());
    deckGui_[std::size_t(position)] = std::make_unique<DJDeckGUI>(*this, host, deck);
  }
  RestoreFrame("MainWindow");
  LayoutControls(Width(), Height());
  if (options_.device.empty() && LPlatform::SoundBackend().Name() == "null") TimerSet(kNoDeviceTimer, 0);
  console_->SetDeviceOverride(options_.device);
  console_->UpdateDevice();
  record_.PrepareFolder();
  LFileCache::SweepTempFolder();
  if (KeepsLists()) effects_.LoadDefaults();
  EnableControls();
  TimerSet(kPostInitTimer, 0);
}

void MainDialog::PostInitDialog() {
  const LLevel master = TSettings::kMasterLevel.Get(), headphone = TSettings::kHeadphoneLevel.Get();
  MasterSlider().ShowLevel(master);
  HeadphoneSlider().ShowLevel(headphone);
  console_->SetVolume(master, headphone);
  if (!options_.recordPath.empty()) record_.StartTo(options_.recordPath);
  LoadTracksOfCommandLine();
  if (options_.durationSeconds) TimerSet(kDurationTimer, int(std::min(*options_.durationSeconds * 1000, 2e9)));
  if (!options_.screenshotPath.empty() && !hasScript_) TimerSet(kScreenshotTimer, kScreenshotAfterMs);
  ShowDeviceMessage();
  if (hasScript_) script_.Start();
}

void MainDialog::LoadTracksOfCommandLine() {
  for (std::size_t i = 0; i < options_.tracks.size(); ++i) loader_.LoadFileToDeck(int(i), options_.tracks[i]);
}

void MainDialog::EvTimer(int id) {
  switch (id) {
    case kNoDeviceTimer:
      return ShowNoDeviceAlert();
    case kPostInitTimer:
      if (IsEnabled()) return PostInitDialog();
      return TimerSet(kPostInitTimer, kPostInitRetryMs);
    case kDurationTimer:
      return EndRun();
    case kDeviceTimer:
      return ShowDeviceMessage();
    case kScreenshotTimer:
      return TakeScreenshot();
    default:
      return;
  }
}

void MainDialog::ShowNoDeviceAlert() {
  Alert("Kein Gerät angeschlossen",
        "Tavi konnte kein Audiogerät finden. Bitte sicherstellen, dass ein Gerät angeschlossen ist und funktioniert.");
}

void MainDialog::EndRun() {
  if (!options_.screenshotPath.empty() && hasScript_) TakeScreenshot();
  Close();
}

void MainDialog::TakeScreenshot() {
  if (!Grab(options_.screenshotPath))
    Fail("Bildschirmfoto", "Das Bild konnte nicht gespeichert werden: " + options_.screenshotPath);
}

void MainDialog::DestroyDialog() {
  if (!options_.statePath.empty()) ScriptState(options_.statePath);
  StoreFrame("MainWindow");
  if (console_->IsSpeaking()) ToggleMicrophoneMode();  // gives the master its level back
  TSettings::kMasterLevel.Set(console_->GetMasterLevel().Get());
  TSettings::kHeadphoneLevel.Set(console_->GetHeadphoneLevel().Get());
  if (KeepsLists()) effects_.SaveDefaults();
  loader_.StopConverting();
  console_->Shutdown();
  record_.Shutdown();
  LFileCache::ClearFolder(LFileCache::GetTempFolder(), [](const std::string&) { return false; });
  TimerDestroy();
}

bool MainDialog::CmCancel() {
  if (!safeLive_.IsOn() || !console_->IsAnyDeckPlaying()) return true;
  LAlert alert("Versehentliches Schließen verhindern",
               "Wiedergabe von einem oder mehreren Decks läuft. Sind Sie sicher, dass Sie beenden möchten?",
               {"Schließen Tavi", "Nicht schließen"});
  return alert.Run(this) == 0;
}

void MainDialog::LayoutControls(int w, int h) {
  if (!consoleGui_) return;
  const auto layout = DJWindowLayout::For(w, h);
  DeckGUI(kDeckA).SetBounds(layout.deckA);
  consoleGui_->SetBounds(layout.console);
  DeckGUI(kDeckB).SetBounds(layout.deckB);
  consoleGui_->CrossFader().SetBounds(layout.crossFader);
}

// Commands

void MainDialog::Command(int id, int) {
  const TCommandRow* row = FindCommand(id);
  if (row && (!row->needsLoadedDeck || console_->IsDeckLoaded(row->deck))) row->run(*this, row->deck, id - row->id);
  EnableControls();
}

bool MainDialog::EvKeyRepeat(LKey key) {
  for (const LKeyToCommandMap& entry : TMainMenu::Keys()) {
    if (entry.key != key) continue;
    PostCommand(entry.command);
    return true;
  }
  return false;
}

void MainDialog::EnableControls() {
  for (const DJDeckPosition deck : {kDeckA, kDeckB}) DeckGUI(deck).EnableControls();
  for (const TKeyCommand& key : TKeyTable::Rows()) {
    const TCommandRow* row = FindCommand(key.id);
    if (row && row->needsLoadedDeck) EnableMenuItem(unsigned(key.id), console_->IsDeckLoaded(row->deck));
  }
  CheckMenuItems();
}

void MainDialog::CheckMenuItems() {
  CheckMenuItem(idRecord, console_->IsRecording());
  CheckMenuItem(idMicrophone, console_->IsSpeaking());
  CheckMenuItem(idSafeLive, safeLive_.IsOn());
  for (const DJDeckPosition position : {kDeckA, kDeckB}) CheckDeckItems(position);
}

void MainDialog::CheckDeckItems(DJDeckPosition position) {
  const DJDeck& deck = Deck(position);
  const auto check = [&](int idA, int idB, bool on) { CheckMenuItem(unsigned(position == kDeckA ? idA : idB), on); };
  check(idHeadphonesA, idHeadphonesB, deck.IsHeadphoneOn());
  check(idFreestyleA, idFreestyleB, !deck.HasStrictBeats());
  check(idVinylModeA, idVinylModeB, deck.HasVinylMode());
  check(idWholeTrackA, idWholeTrackB, deck.GetLoop().IsWholeTrack());
  check(idSyncA, idSyncB, deck.GetSyncState() == DJDeck::Slave);
  check(idPitchLockA, idPitchLockB, deck.IsKeyLocked());
  for (int slot = 0; slot < kCuePoints; ++slot)
    check(idCueBeatLoopA + slot, idCueBeatLoopB + slot, cue_.AppliedSlot(position) == slot);
  for (int length = 0; length < kLoopLengths; ++length)
    check(idBeatLoopLengthA + length, idBeatLoopLengthB + length, cue_.SelectedLength(position) == length);
}

bool MainDialog::RefusedBySafeLive(bool allowed) {
  if (!allowed) consoleGui_->CmShowSafeModeBubbleTip();
  return !allowed;
}

void MainDialog::CmPlayPause(DJDeckPosition deck) { IsDeckPlaying(deck) ? CmPauseDeck(deck) : CmPlayDeck(deck); }

void MainDialog::CmPlayDeck(DJDeckPosition position) {
  DeckGUI(position).SetPlayedSinceLoad();
  if (RefusedBySafeLive(safeLive_.AllowsPlayPause(position))) return;
  pitch_.UnsyncFromStoppedMaster(position);
  if (CmPlay(Deck(position))) {
    DeckGUI(position).CmDeckPlay();
    return;
  }
  Fail(LText::Format("Deck %c wurde nicht gestartet.", DeckLetter(position)),
       "Das Wiedergabegerät konnte nicht geöffnet werden.");
}

bool MainDialog::CmPlay(DJDeck& deck) {
  if (deck.GetPlayPosition() >= deck.GetEndSample()) deck.Seek(0);
  return deck.Play();
}

void MainDialog::CmPauseDeck(DJDeckPosition position) {
  if (Deck(position).GetState() <= DJDeck::Stopped) return;
  if (RefusedBySafeLive(safeLive_.AllowsPlayPause(position))) return;
  Hand().CmDeckEndScratch(position);
  Deck(position).Stop();
  DeckGUI(position).CmDeckPause();
}

void MainDialog::CmJumpToStart(DJDeckPosition position) {
  if (RefusedBySafeLive(safeLive_.AllowsPlayPause(position))) return;
  PanelSeek(position, Deck(position).GetStartPosition());
}

void MainDialog::CmHeadphones(DJDeckPosition position) {
  Deck(position).SetHeadphoneMode(!Deck(position).IsHeadphoneOn());
  DeckGUI(position).UpdateHeadphones();
  if (Deck(position).IsHeadphoneOn() && !console_->CheckHeadphones())
    consoleGui_->ShowMessage("Kopfhörer und Hauptausgang teilen sich einen Kanal.");
}

void MainDialog::CmResetDeck(DJDeckPosition position) {
  if (RefuseDeckAction(position)) return;
  Hand().CmDeckEndScratch(position);
  console_->CmDeckReset(Deck(position));
  pitch_.EvDeckReset(position);
  effects_.ResetEQRack(position);
}

void MainDialog::CmClearDeck(DJDeckPosition position) {
  if (RefuseDeckAction(position)) return;
  loader_.EvDeckEmptied(position);
  EvDeckToBeCleared(position);
  console_->CmDeckClear(Deck(position));
  EvDeckCleared(position);
}

void MainDialog::CmSetCrossfadePosition(int position) {
  if (RefusedBySafeLive(safeLive_.AllowsCrossFade(position))) {
    consoleGui_->SetCrossFade(console_->GetCrossFadePosition());
    return;
  }
  console_->SetCrossFadePosition(position);
  consoleGui_->SetCrossFade(console_->GetCrossFadePosition());
}

void MainDialog::CmCrossfadeStep(int direction) {
  const int now = console_->GetCrossFadePosition();
  const int next = std::clamp(now + direction * crossfadeStep_, 0, 100);
  if (next != now) CmSetCrossfadePosition(next);
}

void MainDialog::ToggleMicrophoneMode() {
  if (console_->IsSpeaking()) {
    console_->StopSpeaking();
    MasterSlider().SetLevel(masterBeforeSpeaking_);
  } else if (console_->StartSpeaking()) {
    masterBeforeSpeaking_ = console_->GetMasterLevel();
    MasterSlider().SetLevel(masterBeforeSpeaking_ + LLevel(-kSpeakingDropDb));
  } else {
    Fail("Mikrofon", "Das Mikrofon konnte nicht geöffnet werden.");
  }
  consoleGui_->UpdateMicrophoneButtonState(console_->IsSpeaking());
}

void MainDialog::CmToggleSafeLiveMode() {
  safeLive_.Toggle();
  consoleGui_->CmSetSafeMode(safeLive_.IsOn());
}

void MainDialog::CmOpenRecordFolder() {
  const std::string folder = TSettings::kDefaultRecordFolder.Get();
  if (!LPlatform::Toolkit().RevealFile(folder)) Alert("Aufnahmeordner öffnen", folder);
}

DJDeckPosition MainDialog::FindFreestDeck() const {
  TFreestDeckInput input;
  for (const DJDeckPosition position : {kDeckA, kDeckB}) {
    auto& deck = input.deck[position];
    deck.loaded = console_->IsDeckLoaded(position);
    deck.converting = loader_.IsConverting(position);
    deck.playing = console_->IsDeckPlaying(position);
    deck.playedSinceLoad = deckGui_[std::size_t(position)]->IsPlayedSinceLoad();
  }
  input.lastLoaded = loader_.LastDeckLoaded();
  input.crossFade = console_->GetCrossFadePosition();
  return ::FindFreestDeck(input);
}

// Loading

bool MainDialog::EvAddDeckMessage(DJDeckPosition deck) {
  if (TSettings::kNotWarnWhilePlaying.Get() || !safeLive_.IsDeckActionUnsafe(deck)) return true;
  LAlert alert("Datei zum Deck hinzufügen",
               "Derzeit spielt ein Titel. Möchten Sie das Deck anhalten und einen neuen Titel laden?",
               {"Nein", "Laden"});
  alert.checkBoxText = "Bitte nicht mehr warnen.";
  alert.escapeButton = 0;
  const bool load = alert.Run(this) == 1;
  TSettings::kNotWarnWhilePlaying.Set(alert.checked);
  return load;
}

bool MainDialog::AskContinueWithLowDisk() {
  LAlert alert("Geringer Speicherplatz",
               "Geringer Cache-Speicherplatz. Es wird empfohlen, dass Sie entweder einige Dateien aus Ihrem "
               "Zwischenspeicher löschen oder in den Optionen  > Cache leeren verwenden. Möchten Sie fortfahren",
               {"Abbrechen", "Fortfahren"});
  alert.checkBoxText = "Nicht erneut warnen";
  alert.escapeButton = 0;
  const bool goOn = alert.Run(this) == 1;
  TSettings::kWarnWhenDiskLow.Set(!alert.checked);
  return goOn;
}

bool MainDialog::CmAddFileToDeck(DJDeckPosition deck, const std::string& path) {
  if (RefusedBySafeLive(safeLive_.AllowsDeckAction(deck)) || !EvAddDeckMessage(deck)) return false;
  const bool loaded = loader_.LoadFileToDeck(deck, path);
  EnableControls();
  return loaded;
}

void MainDialog::CmBrowseLoadFile(DJDeckPosition deck) {
  if (RefusedBySafeLive(safeLive_.AllowsDeckAction(deck))) return;
  LFileDialog dialog(LFileDialog::Kind::OpenFile, LText::Format("Titel in Deck %c laden", DeckLetter(deck)));
  dialog.folder = TSettings::kLoadFromFolder.Get();
  dialog.filters = {{"Musikdateien", {}}, {"Alle Dateien", {"*"}}};
  for (const char* extension : LGenSourceExtensions())
    dialog.filters[0].patterns.push_back(std::string("*") + extension);
  if (!dialog.Run(this)) return;
  TSettings::kLoadFromFolder.Set(LFile::FolderFromPath(dialog.Path()));
  CmAddFileToDeck(deck, dialog.Path());
}

bool MainDialog::PanelDrop(DJDeckPosition deck, const std::vector<std::string>& paths) {
  return !paths.empty() && CmAddFileToDeck(deck, paths.front());
}

bool MainDialog::EvDropFiles(const LDroppedFileData& files) {
  const DJDeckPosition deck = FindFreestDeck();
  return deck != kNoDeck && PanelDrop(deck, files.paths);
}

void MainDialog::EvDeckLoaded(DJDeckPosition deck) {
  DeckGUI(deck).EvLoaded();
  EnableControls();
}

// The engine and the panels

void MainDialog::djcntfLevel(const LLevels& levels, long id) {
  if (id == kMainPlayerId) consoleGui_->SetLevels(levels);
}

void MainDialog::djcntfStop(DJDeck&) {
  if (!console_->IsAnyDeckPlaying()) consoleGui_->ClearLevels();
}

// By a timer of its own: a lost device reports no time.
void MainDialog::ShowDeviceMessage() {
  const std::string message = LPlatform::SoundBackend().TakeMessage();
  if (!message.empty()) ShowInfoLine(message);
  TimerSet(kDeviceTimer, kDeviceMessageMs);
}

void MainDialog::PanelDeckVolume(DJDeckPosition position, LLevel level) {
  if (RefusedBySafeLive(!safeLive_.IsOn() || !IsDeckPlaying(position))) {
    DeckSlider(position).ShowLevel(Deck(position).GetVolume());
    return;
  }
  Deck(position).SetVolume(level);
}

void MainDialog::PanelLevels(LLevel master, LLevel headphone) { console_->SetVolume(master, headphone); }

void MainDialog::EvDeckCleared(DJDeckPosition position) {
  cue_.EvDeckEmptied(position);
  pitch_.EvPitchUpdate(position);
  DeckGUI(position).EvCleared();
}

void MainDialog::ShowDeck(DJDeckPosition position) {
  if (deckGui_[std::size_t(position)]) DeckGUI(position).UpdatePosition();
}

void MainDialog::DeckSeek(DJDeckPosition position, int frame) {
  DJDeck& deck = Deck(position);
  if (!deck.IsLoaded()) return;
  // The hand owns the position; the panel alone follows.
  if (!deck.IsScratching()) console_->CmSeek(std::clamp(frame, 0, std::max(deck.GetTrackEnd(), 0)), deck);
  DeckGUI(position).UpdatePosition();
}

void MainDialog::ShowRecordState(bool recording) {
  consoleGui_->UIApplyRecordState(recording);
  EnableControls();
}

void MainDialog::ShowInfoLine(const std::string& text) {
  consoleGui_->ShowMessage(text);
  SetStatusText(text);
}

int MainDialog::Alert(const std::string& title, const std::string& text) { return LAlert(title, text).Run(this); }

void MainDialog::Fail(const std::string& title, const std::string& text) {
  hadError_ = true;
  Alert(title, text);
}

// The script

void MainDialog::ScriptVolume(const TScriptEvent& event) {
  const LLevel level = int(event.value);
  if (event.deck != kNoDeck)
    DeckSlider(event.deck).SetLevel(level);
  else if (event.target == 1)
    HeadphoneSlider().SetLevel(level);
  else
    MasterSlider().SetLevel(level);
}

void MainDialog::ScriptSeek(DJDeckPosition deck, double seconds) {
  PanelSeek(deck, int(std::min(seconds * kDeckRate, double(kEndless))));
}

void MainDialog::ScriptScratch(const TScriptEvent& event) {
  TDeckScratch& hand = Hand();
  if (event.target == TScriptEvent::ScratchBegin)
    hand.CmDeckBeginScratch(event.deck, Deck(event.deck).GetRawPosition());
  else if (event.target == TScriptEvent::ScratchEnd)
    hand.CmDeckEndScratch(event.deck);
  else
    hand.CmDeckScratch(event.deck, int(event.value));
}

void MainDialog::ScriptState(const std::string& path) {
  const std::string json = TStateWriter::ToJson(*console_, safeLive_, effects_.Chain());
  if (!LFile::WriteReplacing(path, json)) Fail("Zustand", "Die Datei konnte nicht geschrieben werden: " + path);
}

void MainDialog::ScriptEnded(bool quit) {
  if (quit || !options_.durationSeconds) EndRun();
}
