#include "screens/DJConsoleGUI.h"

#include "control/TAVIID.h"
#include "foundation/LPlatform.h"
#include "screens/DJTheme.h"
#include "sound/LSoundTime.h"

namespace {

constexpr int kMarginPx = 10, kGapPx = 8, kButtonPx = 38, kMeterPx = 96;
constexpr int kFlashTimer = 101, kFlashMs = 500, kFlashTicks = 12;
constexpr int kRecordTimer = 102;
constexpr std::uint32_t kSecondMs = 1000, kHourMs = 3600000;

constexpr std::uint32_t kTenMinutesMs = 600000;

// With the word as long as it leaves room for the time.
std::string RecordText(std::uint32_t ms) {
  std::string time = LSoundTimeText::GetTextHMMSS(int(ms));
  if (ms >= kHourMs) return time;
  return "Aufnahme " + time.substr(ms < kTenMinutesMs ? 3 : 2);
}

}  // namespace

DJConsoleGUI::DJConsoleGUI(LWindow& parent, DJPanelHost& host)
    : LPaintControl(parent, 1200),
      host_(host),
      meter_(*this, 1201, "Gesamtpegel", TLevelMeter::Scale::Numbers),
      master_(*this, 1202, "Master"),
      headphone_(*this, 1203, "Kopfhörer"),
      crossFader_(parent, 1204),
      record_(*this, host, idRecord, LCoolButton::Icon::Record, "Aufnahme", DJTheme::kRed),
      safeLive_(*this, host, idSafeLive, LCoolButton::Icon::Shield, "Abgesicherter Live-Modus", DJTheme::kGreen),
      microphone_(*this, host, idMicrophone, LCoolButton::Icon::Microphone, "Mikrofon", DJTheme::kYellow) {
  SetOpaque(true);
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
  for (LCoolButton* button : {&record_, &safeLive_, &microphone_}) button->ShowKeyInToolTip();
  crossFader_.SetToolTip("Crossfader; Doppelklick: Mitte");
  master_.SetToolTip("Gesamtlautstärke; Doppelklick: 0 dB");
  headphone_.SetToolTip("Kopfhörerlautstärke; Doppelklick: 0 dB");
}

void DJConsoleGUI::SetCrossFade(int position) { crossFader_.SetPosition(position); }

void DJConsoleGUI::SetLevels(const LLevels& levels) { meter_.SetLevels(levels.levels[0], levels.levels[1]); }

void DJConsoleGUI::ClearLevels() { meter_.Clear(); }

void DJConsoleGUI::UIApplyRecordState(bool recording) {
  if (recording && !recording_) recordStartMs_ = LPlatform::Clock().NowMs();
  recording_ = recording;
  record_.SetOn(recording);
  ShowRecordTime();
}

void DJConsoleGUI::ShowRecordTime() {
  if (!recording_) return record_.SetCaption("Aufnahme");
  const std::uint32_t ms = LPlatform::Clock().NowMs() - recordStartMs_;
  record_.SetCaption(RecordText(ms));
  TimerSet(kRecordTimer, int(kSecondMs - ms % kSecondMs));
}

void DJConsoleGUI::CmSetSafeMode(bool on) {
  safeMode_ = on;
  safeLive_.SetOn(on);
}

void DJConsoleGUI::UpdateMicrophoneButtonState(bool on) { microphone_.SetOn(on); }

void DJConsoleGUI::CmShowSafeModeBubbleTip() {
  if (flashTicks_ > 0) return;
  flashTicks_ = kFlashTicks;
  TimerSet(kFlashTimer, kFlashMs);
  bubble_.BubbleTipRun(
      safeLive_,
      "Abgesicherter Live-Modus ist derzeit aktiviert. Dieser Vorgang wurde angehalten, da er zu einer\n"
      "Unterbrechung der Audioausgabe führen könnte. Deaktivieren Sie den abgesicherten Live-Modus, um "
      "dies zuzulassen.");
}

void DJConsoleGUI::EvTimer(int id) { id == kRecordTimer ? ShowRecordTime() : Flash(); }

void DJConsoleGUI::Flash() {
  --flashTicks_;
  safeLive_.SetOn(flashTicks_ > 0 ? flashTicks_ % 2 == 0 : safeMode_);
  if (flashTicks_ > 0) TimerSet(kFlashTimer, kFlashMs);
}

void DJConsoleGUI::ShowMessage(const std::string& text) {
  if (text.empty())
    bubble_.Close();
  else
    bubble_.BubbleTipRun(*this, text);
}

void DJConsoleGUI::EvPaint(LPaintContext& context) { DJTheme::DrawPanel(context, {0, 0, Width(), Height()}); }

void DJConsoleGUI::EvResize(int w, int h) {
  LRect box = LRect{0, 0, w, h}.Inset(kMarginPx);
  for (TDBEditSlider* slider : {&headphone_, &master_}) {
    slider->SetBounds(box.TakeBottom(TDBEditSlider::HeightPx()));
    box.TakeBottom(kGapPx);
  }
  for (LCoolButton* button : {&record_, &safeLive_, &microphone_}) {
    button->SetBounds(box.TakeTop(kButtonPx));
    box.TakeTop(kGapPx);
  }
  meter_.SetBounds({box.x + (box.width - kMeterPx) / 2, box.y, kMeterPx, box.height});
}
