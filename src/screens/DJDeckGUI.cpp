#include "screens/DJDeckGUI.h"

#include <algorithm>

#include "control/TAVIID.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kMeterPx = 34, kButtonsPx = 54, kGapPx = 8, kMarginPx = 10;
constexpr int kRowParts = 6;  // half of them for the play button, as long as the others have room

// Of the two ids of a command, the deck's.
int IdOf(DJDeckPosition deck, TAVIID ofA, TAVIID ofB) { return deck == kDeckA ? ofA : ofB; }

}  // namespace

DJDeckGUI::DJDeckGUI(LWindow& parent, DJPanelHost& host, DJDeck& deck)
    : LPaintControl(parent, 1000 + deck.GetPosition()),
      host_(host),
      deck_(deck),
      info_(*this, 1100, deck.GetPosition()),
      meter_(*this, 1101, LText::Format("Pegel von Deck %c", deck.GetLetter())),
      play_(*this, host, IdOf(deck.GetPosition(), idPlayPauseA, idPlayPauseB), LCoolButton::Icon::Play,
            "Wiedergabe/Pause", DJTheme::kGreen),
      jump_(*this, host, IdOf(deck.GetPosition(), idJumpToStartA, idJumpToStartB), LCoolButton::Icon::ToStart,
            "Zum Anfang springen", DJTheme::kText),
      headphones_(*this, host, IdOf(deck.GetPosition(), idHeadphonesA, idHeadphonesB), LCoolButton::Icon::Headphones,
                  "Kopfhörer an/aus", DJTheme::GetDeckColour(deck.GetPosition())),
      load_(*this, host, IdOf(deck.GetPosition(), idAddToDeckA, idAddToDeckB), LCoolButton::Icon::Folder, "Titel laden",
            DJTheme::kText),
      volume_(*this, 1102, LText::Format("Lautstärke Deck %c", deck.GetLetter())) {
  SetOpaque(true);
  SetAccessibleName(LText::Format("Deck %c", deck.GetLetter()));
  deck.AddNotify(*this);
  load_.SetCaption("Laden");
  volume_.SetChanged([this](LLevel level) { host_.PanelDeckVolume(deck_.GetPosition(), level); });
  info_.SetSeek(
      [this](LSoundTime time) { host_.PanelSeek(deck_.GetPosition(), LFramesFromSoundTime(time, kDeckRate)); });
  UpdateToolTips();
  EvCleared();
}

void DJDeckGUI::EvLoaded() {
  playedSinceLoad_ = false;
  const std::string& path = deck_.GetOriginalPath();
  info_.SetTrackInfo(LFile::TitleFromPath(path), LFile::FolderFromPath(path),
                     LSoundTimeFromFrames(deck_.GetTrackEnd(), kDeckRate));
  UpdatePosition();
  CmDeckPause();
}

void DJDeckGUI::ShowConverting(const std::string& path, int percent) {
  info_.SetTrackInfo(LFile::TitleFromPath(path), LText::Format("Konvertierung von %d%%", percent), 0);
}

void DJDeckGUI::EvCleared() {
  playedSinceLoad_ = false;
  info_.SetTrackInfo("", "", 0);
  CmDeckPause();
  EnableControls();
}

void DJDeckGUI::CmDeckPlay() {
  playedSinceLoad_ = true;
  play_.SetOn(true);
  play_.SetIcon(LCoolButton::Icon::Pause);
  info_.SetPlaying(true);
}

void DJDeckGUI::CmDeckPause() {
  play_.SetOn(false);
  play_.SetIcon(LCoolButton::Icon::Play);
  info_.SetPlaying(false);
  meter_.Clear();
}

void DJDeckGUI::UpdateHeadphones() { headphones_.SetOn(deck_.IsHeadphoneOn()); }

void DJDeckGUI::UpdatePosition() {
  const int frame = deck_.IsScratching() ? std::max(deck_.GetRawPosition(), 0) : deck_.GetPlayPosition();
  if (deck_.IsLoaded()) info_.SetLength(LSoundTimeFromFrames(deck_.GetTrackEnd(), kDeckRate));
  info_.SetDeckTime(LSoundTimeFromFrames(frame, kDeckRate));
}

void DJDeckGUI::CmSyncAlert(DJSyncResult result) {
  static constexpr const char* kTexts[] = {
      "Kein Titel in Deck geladen.",
      "Kein Titel in Deck geladen, mit dem synchronisiert werden soll.",
      "Deck, mit dem synchronisiert werden soll, ist bereits mit einem Deck synchronisiert.",
      "Für den ins Master-Deck (Ziel) geladenen Titel wurden die BPM nicht berechnet.",
      "Für den in dieses Deck geladenen Titel wurden die BPM nicht berechnet.",
      "Tavi ist auf -50% bis +50% der Original-Tonhöhe eingeschränkt.",
      "Dies ist das derzeitige Master-Deck und kann nicht mit einem anderen Deck synchronisiert werden.",
      "Sync-Zielobjekt spielt nicht, sodass der Takt nicht abgestimmt werden kann.",
      "Unbekannter Fehler beim Synchronisieren aufgetreten.",
  };
  if (result == syncDone) return;
  const std::size_t last = std::size(kTexts) - 1;
  bubble_.BubbleTipRun(*this, kTexts[std::min(std::size_t(result), last)]);
}

void DJDeckGUI::UpdateToolTips() {
  for (LCoolButton* button : {&play_, &jump_, &headphones_, &load_}) button->ShowKeyInToolTip();
  volume_.SetToolTip("Lautstärke; Doppelklick: 0 dB");
}

void DJDeckGUI::EnableControls() {
  play_.SetEnabled(deck_.IsLoaded());
  jump_.SetEnabled(deck_.IsLoaded());
}

void DJDeckGUI::djntfTime(LSoundTime& time, DJDeck&) { info_.SetDeckTime(time); }

void DJDeckGUI::djntfLevel(const LLevels& levels, DJDeck&) { meter_.SetLevels(levels.levels[0], levels.levels[1]); }

void DJDeckGUI::djntfStop(DJDeck&) {
  CmDeckPause();
  UpdatePosition();
}

void DJDeckGUI::EvPaint(LPaintContext& context) { DJTheme::DrawPanel(context, {0, 0, Width(), Height()}); }

void DJDeckGUI::EvResize(int w, int h) {
  LRect box = LRect{0, 0, w, h}.Inset(kMarginPx);
  volume_.SetBounds(box.TakeBottom(TDBEditSlider::HeightPx()));
  box.TakeBottom(kGapPx);
  LRect buttons = box.TakeBottom(kButtonsPx);
  box.TakeBottom(kGapPx);
  const int least = buttons.width / kRowParts;
  for (LCoolButton* button : {&load_, &jump_}) {
    button->SetBounds(buttons.TakeLeft(std::max(button->BestWidth(), least)));
    buttons.TakeLeft(kGapPx);
  }
  headphones_.SetBounds(buttons.TakeRight(std::max(headphones_.BestWidth(), least)));
  buttons.TakeRight(kGapPx);
  play_.SetBounds(buttons);
  // The meters stand at the outer sides, the console's side stays free for what belongs to both decks.
  const bool left = deck_.GetPosition() == kDeckA;
  meter_.SetBounds(left ? box.TakeLeft(kMeterPx) : box.TakeRight(kMeterPx));
  left ? box.TakeLeft(kGapPx) : box.TakeRight(kGapPx);
  info_.SetBounds(box);
}

bool DJDeckGUI::EvDropFiles(const LDroppedFileData& files) {
  EvDragHover(false);
  return host_.PanelDrop(deck_.GetPosition(), files.paths);
}

void DJDeckGUI::EvDragHover(bool over) { info_.SetDropHover(over); }
