#include "screens/TDeckInfoWindow.h"

#include <algorithm>

#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kBadgePx = 44, kTitlePx = 30, kDetailPx = 22, kPlacePx = 34, kClockPx = 64, kDigitsPx = 30;

}  // namespace

TDeckInfoWindow::TDeckInfoWindow(LWindow& parent, int id, DJDeckPosition deck) : LPaintControl(parent, id), deck_(deck) {
  SetAccessibleRole(LAccessibleRole::Text);
  SetAccessibleName(LText::Format("Deck %c", DeckLetter(deck)));
}

void TDeckInfoWindow::SetTrackInfo(const std::string& title, const std::string& detail, LSoundTime length) {
  title_ = title;
  detail_ = detail;
  length_ = length;
  elapsedText_.clear();
  SetAccessibleValue(title);
  SetDeckTime(0);
  Redraw();
}

void TDeckInfoWindow::SetDeckTime(LSoundTime elapsed) {
  elapsed_ = std::max(elapsed, 0);
  std::string elapsedText = "+ " + LSoundTimeText::GetTextHMMSSF(elapsed_);
  if (elapsedText == elapsedText_) return;
  elapsedText_ = std::move(elapsedText);
  remainingText_ = "- " + LSoundTimeText::GetTextHMMSSF(std::max(length_ - elapsed_, 0));
  Redraw();
}

void TDeckInfoWindow::SetPlaying(bool playing) {
  playing_ = playing;
  Redraw();
}

void TDeckInfoWindow::SetDropHover(bool over) {
  dropHover_ = over;
  Redraw();
}

LRect TDeckInfoWindow::PlaceBar() const { return LRect{10, Height() - kPlacePx - 10, Width() - 20, kPlacePx}; }

void TDeckInfoWindow::SeekTo(int x) {
  const LRect bar = PlaceBar();
  if (length_ <= 0 || bar.width <= 0 || !seek_) return;
  seek_(LSoundTime((long long)(length_)*std::clamp(x - bar.x, 0, bar.width) / bar.width));
}

void TDeckInfoWindow::EvMouseDown(const LMouseEvent& event) {
  if (event.button == LMouseButton::Left && PlaceBar().Contains(event.at)) SeekTo(event.at.x);
}

void TDeckInfoWindow::EvMouseMove(const LMouseEvent& event) {
  if (IsCaptured() && PlaceBar().Inset(-8).Contains(event.at)) SeekTo(event.at.x);
}

void TDeckInfoWindow::EvPaint(LPaintContext& context) {
  LRect box{0, 0, Width(), Height()};
  const LGuiColor colour = DJTheme::GetDeckColour(deck_);
  context.FillRoundedRect(box, 4, DJTheme::kWell);
  context.DrawRoundedRect(box, 4, {dropHover_ ? colour : DJTheme::kFrame, dropHover_ ? 2.0 : 1.0});
  box = box.Inset(10);
  const LRect badge{box.x, box.y, kBadgePx, kBadgePx};
  context.FillRoundedRect(badge, 4, colour);
  const char letter[] = {DeckLetter(deck_), 0};
  context.DrawText(badge, letter, DJTheme::kTitle, DJTheme::kDark, ltaCentre);
  box.TakeLeft(kBadgePx + 12);
  if (title_.empty()) return PaintEmpty(context, {box.x, box.y, box.width, kBadgePx});
  context.DrawText(box.TakeTop(kTitlePx), title_, DJTheme::kTitle, DJTheme::kText);
  context.DrawText(box.TakeTop(kDetailPx), detail_, DJTheme::kSmall, DJTheme::kTextDim);

  LRect times{10, badge.Bottom() + 8, Width() - 20, PlaceBar().y - badge.Bottom() - 16};
  times = {times.x, times.y + std::max(times.height - kClockPx - kDigitsPx, 0) / 2, times.width, times.height};
  context.DrawText(times.TakeTop(kClockPx), elapsedText_, DJTheme::kClock, playing_ ? colour : DJTheme::kText, ltaCentre);
  context.DrawText(times.TakeTop(kDigitsPx), remainingText_, DJTheme::kDigits, DJTheme::kTextDim, ltaCentre);
  PaintPlace(context);
}

void TDeckInfoWindow::PaintEmpty(LPaintContext& context, const LRect& box) const {
  context.DrawText(box, "Kein Titel geladen: Datei hierher ziehen oder laden", DJTheme::kNormal, DJTheme::kTextDim);
}

void TDeckInfoWindow::PaintPlace(LPaintContext& context) const {
  const LRect bar = PlaceBar();
  context.FillRoundedRect(bar, 3, DJTheme::kPanel);
  const int played = length_ > 0 ? int((long long)(bar.width) * std::min(elapsed_, length_) / length_) : 0;
  const LGuiColor colour = DJTheme::GetDeckColour(deck_);
  context.FillRect({bar.x, bar.y, played, bar.height}, colour.Mixed(DJTheme::kWell, 55));
  context.FillRect({bar.x + std::min(played, bar.width - 2), bar.y - 3, 2, bar.height + 6}, DJTheme::kText);
}
