#include "toolkit/headless/LPaintRecorder.h"

#include <algorithm>
#include <cmath>

LPaintRecorder::Op& LPaintRecorder::Add(Kind kind, const LRect& box, LGuiColor colour) {
  ops_.push_back({kind, box, colour, "", {}, clips_.back()});
  return ops_.back();
}

LPaintRecorder::Op& LPaintRecorder::Add(Kind kind, const LRect& box, const LGuiPen& pen) {
  Op& op = Add(kind, box, pen.colour);
  op.width = pen.width;
  return op;
}

LRect LPaintRecorder::Span(std::span<const LPointF> points) {
  if (points.empty()) return {};
  const auto [left, right] =
      std::minmax_element(points.begin(), points.end(), [](LPointF a, LPointF b) { return a.x < b.x; });
  const auto [top, bottom] =
      std::minmax_element(points.begin(), points.end(), [](LPointF a, LPointF b) { return a.y < b.y; });
  const int x = int(std::floor(left->x)), y = int(std::floor(top->y));
  return {x, y, int(std::floor(right->x)) - x, int(std::floor(bottom->y)) - y};
}

void LPaintRecorder::DrawLine(LPointF from, LPointF to, const LGuiPen& pen) {
  const LPointF ends[] = {from, to};
  Add(Line, Span(ends), pen).points = {from, to};
}

void LPaintRecorder::DrawPolyline(std::span<const LPointF> points, const LGuiPen& pen) {
  Add(Polyline, Span(points), pen).points.assign(points.begin(), points.end());
}

void LPaintRecorder::FillPolygon(std::span<const LPointF> points, LGuiColor colour) {
  Add(Polygon, Span(points), colour).points.assign(points.begin(), points.end());
}

void LPaintRecorder::DrawText(const LRect& box, std::string_view text, const LGuiFont&, LGuiColor colour, unsigned) {
  Add(Text, box, colour).text = text;
}

void LPaintRecorder::PopClip() {
  if (clips_.size() > 1) clips_.pop_back();
}

std::vector<LPaintRecorder::Op> LPaintRecorder::Find(Kind kind) const {
  std::vector<Op> found;
  std::copy_if(ops_.begin(), ops_.end(), std::back_inserter(found), [kind](const Op& op) { return op.kind == kind; });
  return found;
}

std::vector<LPaintRecorder::Op> LPaintRecorder::Find(LGuiColor colour) const {
  std::vector<Op> found;
  std::copy_if(ops_.begin(), ops_.end(), std::back_inserter(found), [&](const Op& op) { return op.colour == colour; });
  return found;
}

bool LPaintRecorder::HasText(const std::string& text) const {
  return std::any_of(ops_.begin(), ops_.end(), [&](const Op& op) { return op.kind == Text && op.text == text; });
}
