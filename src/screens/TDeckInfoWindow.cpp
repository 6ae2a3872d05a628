#include "screens/TDeckInfoWindow.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/LText.h"
#include "screens/DJTheme.h"

namespace {

constexpr int kInsetPx = 12, kPlacePx = 30, kMarkerPx = 3, kMarkerOutPx = 4;
constexpr const char* kWidestTime = "+ 0:00:00.0";
constexpr double kSmallestClock = 1.5, kLargestClock = 12, kRemainingOfElapsed = 0.6;
constexpr double kLargestTitle = 2.4, kPxPerTitle = 250, kDetailOfTitle = 0.67, kLetterOfTitle = 1.3;
constexpr int kGrabPx = 10;  // how far beside the bar a drag still seeks
constexpr LSoundTime kMinuteMs = 60000;
constexpr int kClosestTicksPx = 6;

}  // namespace

TDeckInfoWindow::TDeckInfoWindow(LWindow& parent, int id, DJDeckPosition deck)
    : LPaintControl(parent, id), deck_(deck) {
  SetOpaque(true);
  SetAccessibleRole(LAccessibleRole::Text);
  SetAccessibleName(LText::Format("Titel von Deck %c", DeckLetter(deck)));
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

void TDeckInfoWindow::SetLength(LSoundTime length) {
  if (length == length_) return;
  length_ = length;
  Redraw();
}

void TDeckInfoWindow::SetDeckTime(LSoundTime elapsed) {
  const int before = PlayedPx();
  elapsed_ = std::max(elapsed, 0);
  const int after = PlayedPx(), from = std::min(before, after), moved = std::abs(after - before);
  if (moved > 0)
    Redraw({place_.x + from - kMarkerPx, place_.y - kMarkerOutPx, moved + 2 * kMarkerPx,
            place_.height + 2 * kMarkerOutPx});
  std::string elapsedText = "+ " + LSoundTimeText::GetTextHMMSSF(elapsed_);
  if (elapsedText == elapsedText_) return;
  elapsedText_ = std::move(elapsedText);
  remainingText_ = "- " + LSoundTimeText::GetTextHMMSSF(std::max(length_ - elapsed_, 0));
  Redraw(elapsedLine_);
  Redraw(remainingLine_);
}

void TDeckInfoWindow::SetPlaying(bool playing) {
  if (playing == playing_) return;
  playing_ = playing;
  Redraw();
}

void TDeckInfoWindow::SetDropHover(bool over) {
  if (over == dropHover_) return;
  dropHover_ = over;
  Redraw();
}

void TDeckInfoWindow::EvResize(int w, int h) {
  LRect box = LRect{0, 0, w, h}.Inset(kInsetPx);
  titleFont_.scale = std::clamp(h / kPxPerTitle, DJTheme::kTitle.scale, kLargestTitle);
  detailFont_.scale = titleFont_.scale * kDetailOfTitle;
  header_ = box.TakeTop(DJTheme::LineHeight(titleFont_) + DJTheme::LineHeight(detailFont_) + 6);
  place_ = box.TakeBottom(kPlacePx);
  body_ = box.Inset(0, kInsetPx);
  elapsedFont_ = DJTheme::FontToFit(DJTheme::kClock, kWidestTime, body_.width * 9 / 10, body_.height / 2,
                                    kSmallestClock, kLargestClock);
  remainingFont_ = elapsedFont_;
  remainingFont_.scale *= kRemainingOfElapsed;
  remainingFont_.bold = false;
  const int elapsedPx = DJTheme::LineHeight(elapsedFont_), remainingPx = DJTheme::LineHeight(remainingFont_);
  LRect lines = body_.Inset(0, (body_.height - elapsedPx - remainingPx) / 2);
  elapsedLine_ = lines.TakeTop(elapsedPx);
  remainingLine_ = lines.TakeTop(remainingPx);
  const auto narrow = [](LRect& line, const LGuiFont& font) {
    line = line.Inset(std::max(0, (line.width - DJTheme::TextWidth(font, kWidestTime)) / 2 - 4), 0);
  };
  narrow(elapsedLine_, elapsedFont_);
  narrow(remainingLine_, remainingFont_);
}

void TDeckInfoWindow::SeekTo(int x) {
  if (length_ <= 0 || place_.IsEmpty() || !seek_) return;
  seek_(LSoundTime((long long)(length_)*std::clamp(x - place_.x, 0, place_.width) / place_.width));
}

int TDeckInfoWindow::PlayedPx() const {
  return length_ > 0 ? int((long long)(place_.width) * std::min(elapsed_, length_) / length_) : 0;
}

void TDeckInfoWindow::EvMouseDown(const LMouseEvent& event) {
  if (event.button == LMouseButton::Left && place_.Contains(event.at)) SeekTo(event.at.x);
}

void TDeckInfoWindow::EvMouseMove(const LMouseEvent& event) {
  if (IsCaptured() && place_.Inset(-kGrabPx).Contains(event.at)) SeekTo(event.at.x);
}

void TDeckInfoWindow::EvPaint(LPaintContext& context) {
  PaintGround(context);
  PaintHeader(context);
  if (title_.empty()) return PaintEmpty(context);
  PaintClocks(context);
  PaintPlace(context);
}

void TDeckInfoWindow::PaintGround(LPaintContext& context) const {
  const LRect box{0, 0, Width(), Height()}, dirty = context.DirtyRect();
  if (dirty.Intersected(box.Inset(kInsetPx / 2)) == dirty) return context.FillRect(dirty, DJTheme::kWell);
  DJTheme::DrawWell(context, box);
  if (dropHover_ || playing_) context.DrawRoundedRect(box, 4, {DJTheme::GetDeckColour(deck_), dropHover_ ? 3.0 : 1.5});
}

void TDeckInfoWindow::PaintHeader(LPaintContext& context) const {
  if (context.DirtyRect().Intersected(header_).IsEmpty()) return;
  LRect box = header_;
  const LRect badge = box.TakeLeft(box.height);
  context.FillRoundedRect(badge, 5, DJTheme::GetDeckColour(deck_));
  const char letter[] = {DeckLetter(deck_), 0};
  context.DrawText(badge, letter, {.scale = titleFont_.scale * kLetterOfTitle, .bold = true}, DJTheme::kDark,
                   ltaCentre);
  if (title_.empty()) return;
  box.TakeLeft(kInsetPx);
  context.DrawText(box.TakeTop(DJTheme::LineHeight(titleFont_)), title_, titleFont_, DJTheme::kText);
  LRect second = box.TakeBottom(DJTheme::LineHeight(detailFont_));
  const std::string length = LSoundTimeText::GetTextHMMSS(length_);
  const LRect right = second.TakeRight(DJTheme::TextWidth(detailFont_, length) + 2);
  second.TakeRight(kInsetPx);
  context.DrawText(right, length, detailFont_, DJTheme::kText, ltaRight);
  context.DrawText(second, detail_, detailFont_, DJTheme::kTextDim);
}

void TDeckInfoWindow::PaintEmpty(LPaintContext& context) const {
  LRect lines = body_;
  const LRect first = lines.TakeTop(body_.height / 2);
  const int line = DJTheme::LineHeight(titleFont_);
  context.DrawText({first.x, first.Bottom() - line, first.width, line},
                   dropHover_ ? "Hier loslassen" : "Kein Titel geladen", titleFont_, DJTheme::kText, ltaCentre);
  context.DrawText({lines.x, lines.y + 4, lines.width, DJTheme::LineHeight(detailFont_)},
                   "Datei hierher ziehen oder „Laden“ drücken", detailFont_, DJTheme::kTextDim, ltaCentre);
}

void TDeckInfoWindow::PaintClocks(LPaintContext& context) const {
  const bool ending = playing_ && length_ - elapsed_ <= kLastMs;
  context.DrawText(elapsedLine_, elapsedText_, elapsedFont_, playing_ ? DJTheme::GetDeckColour(deck_) : DJTheme::kText,
                   ltaCentre);
  context.DrawText(remainingLine_, remainingText_, remainingFont_, ending ? DJTheme::kRed : DJTheme::kTextDim,
                   ltaCentre);
}

void TDeckInfoWindow::PaintPlace(LPaintContext& context) const {
  if (context.DirtyRect().Intersected(place_.Inset(-kMarkerOutPx)).IsEmpty()) return;
  const int played = PlayedPx();
  context.FillRect(place_, DJTheme::kPanel);
  context.FillRect({place_.x, place_.y, played, place_.height},
                   DJTheme::GetDeckColour(deck_).Mixed(DJTheme::kWell, 50));
  const int minutes = length_ / kMinuteMs;
  if (minutes > 0 && place_.width / minutes >= kClosestTicksPx)
    for (int i = 1; i <= minutes; ++i) {
      const int x = int((long long)(place_.width) * i * kMinuteMs / length_);
      context.FillRect({place_.x + x, place_.Bottom() - place_.height / 4, 1, place_.height / 4}, DJTheme::kFrameHot);
    }
  context.FillRect({place_.x + std::min(played, place_.width - kMarkerPx), place_.y - kMarkerOutPx, kMarkerPx,
                    place_.height + 2 * kMarkerOutPx},
                   DJTheme::kText);
}
