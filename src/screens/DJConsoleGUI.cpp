#include "screens/DJConsoleGUI.h"

#include "control/TAVIID.h"
#include "control/TKeyTable.h"
#include "foundation/LKey.h"
#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kMarginPx = 10, kGapPx = 8, kButtonPx = 36, kSliderPx = 44, kFaderPx = 60, kMeterPx = 60;
constexpr int kFlashTimer = 101, kFlashMs = 500, kFlashTicks = 12;

void SetTip(LCoolButton& button) {
  const std::string key = LKey(TKeyTable::FindByCommand(button.Id()).key).GetDisplayText();
  button.SetToolTip(LText::Format("%s (%s)", button.GetAccessibleName().c_str(), key.c_str()));
}

}  // namespace

DJConsoleGUI::DJConsoleGUI(LWindow& parent, DJPanelHost& host)
    : LPaintControl(parent, 1200),
      host_(host),
      meter_(*this, 1201, "Gesamtpegel"),
      master_(*this, 1202, "Master"),
      headphone_(*this, 1203, "Kopfhörer"),
      crossFader_(*this, 1204),
      record_(*this, host, idRecord, LCoolButton::Icon::Record, "Aufnahme", DJTheme::kRed),
      safeLive_(*this, host, idSafeLive, LCoolButton::Icon::Shield, "Abgesicherter Live-Modus", DJTheme::kGreen),
      microphone_(*this, host, idMicrophone, LCoolButton::Icon::Microphone, "Mikrofon", DJTheme::kYellow) {
  SetAccessibleName("Konsole");
  record_.SetCaption("Aufnahme");
  safeLive_.SetCaption("Live-Schutz");
  microphone_.SetCaption("Mikrofon");
  const auto levels = [this](LLevel) { host_.PanelLevels(master_.GetLevel(), headphone_.GetLevel()); };
  master_.SetChanged(levels);
  headphone_.SetChanged(levels);
  crossFader_.SetChanged([this](int position) { host_.PanelCrossFade(position); });
  UpdateToolTips();
}

void DJConsoleGUI::UpdateToolTips() {
  for (LCoolButton* button : {&record_, &safeLive_, &microphone_}) SetTip(*button);
  crossFader_.SetToolTip("Crossfader; Doppelklick: Mitte");
  master_.SetToolTip("Gesamtlautstärke; Doppelklick: 0 dB");
  headphone_.SetToolTip("Kopfhörerlautstärke; Doppelklick: 0 dB");
}

void DJConsoleGUI::SetCrossFade(int position) { crossFader_.SetPosition(position); }

void DJConsoleGUI::SetLevels(const LLevels& levels) { meter_.SetLevels(levels.levels[0], levels.levels[1]); }

void DJConsoleGUI::ClearLevels() { meter_.Clear(); }

void DJConsoleGUI::UIApplyRecordState(bool recording) { record_.SetOn(recording); }

void DJConsoleGUI::CmSetSafeMode(bool on) {
  safeMode_ = on;
  safeLive_.SetOn(on);
}

void DJConsoleGUI::UpdateMicrophoneButtonState(bool on) { microphone_.SetOn(on); }

void DJConsoleGUI::CmShowSafeModeBubbleTip() {
  if (flashTicks_ > 0) return;
  flashTicks_ = kFlashTicks;
  TimerSet(kFlashTimer, kFlashMs);
  bubble_.BubbleTipRun(safeLive_,
                       "Abgesicherter Live-Modus ist derzeit aktiviert. Dieser Vorgang wurde angehalten, da er zu einer\n"
                       "Unterbrechung der Audioausgabe führen könnte. Deaktivieren Sie den abgesicherten Live-Modus, um "
                       "dies zuzulassen.");
}

void DJConsoleGUI::EvTimer(int) {
  --flashTicks_;
  safeLive_.SetOn(flashTicks_ > 0 ? flashTicks_ % 2 == 0 : safeMode_);
  if (flashTicks_ > 0) TimerSet(kFlashTimer, kFlashMs);
}

void DJConsoleGUI::ShowMessage(const std::string& text) {
  if (text.empty()) bubble_.Close();
  else bubble_.BubbleTipRun(*this, text);
}

void DJConsoleGUI::EvPaint(LPaintContext& context) { DJTheme::DrawPanel(context, {0, 0, Width(), Height()}); }

void DJConsoleGUI::EvResize(int w, int h) {
  LRect box = LRect{0, 0, w, h}.Inset(kMarginPx);
  crossFader_.SetBounds(box.TakeBottom(kFaderPx));
  for (TDBEditSlider* slider : {&headphone_, &master_}) {
    box.TakeBottom(kGapPx);
    slider->SetBounds(box.TakeBottom(kSliderPx));
  }
  for (LCoolButton* button : {&record_, &safeLive_, &microphone_}) {
    button->SetBounds(box.TakeTop(kButtonPx));
    box.TakeTop(kGapPx);
  }
  box.TakeBottom(kGapPx);
  meter_.SetBounds({box.x + (box.width - kMeterPx) / 2, box.y, kMeterPx, box.height});
}
