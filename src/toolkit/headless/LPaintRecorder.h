// Writes down what a control paints, so that a test can ask for it: "one line at x = 300 in the deck's colour".
// Units    device-independent pixels; a line's or polygon's box spans its points, cut to whole pixels.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

#include "toolkit/LPaintControl.h"

class LPaintRecorder final : public LPaintContext {
 public:
  enum Kind { Fill, RoundedFill, RoundedFrame, Gradient, Ellipse, Arc, Line, Polyline, Polygon, Text, Image };
  struct Op {
    Kind kind;
    LRect box;
    LGuiColor colour;             // a gradient's first one
    std::string text;             // Text
    std::vector<LPointF> points;  // Line, Polyline, Polygon
    LRect clip;                   // in force then
    double width = 0;             // of a pen
  };

  explicit LPaintRecorder(LRect dirty) : clips_{dirty} {}
  explicit LPaintRecorder(LPaintControl& control) : LPaintRecorder(LRect{0, 0, control.Width(), control.Height()}) {
    control.EvPaint(*this);
  }

  const std::vector<Op>& Ops() const { return ops_; }
  std::vector<Op> Find(Kind kind) const;
  std::vector<Op> Find(LGuiColor colour) const;
  bool HasText(const std::string& text) const;
  bool IsBalanced() const { return clips_.size() == 1; }  // every clip was taken back

  LRect DirtyRect() const override { return clips_.front(); }
  double PixelRatio() const override { return 1; }
  void FillRect(const LRect& box, LGuiColor colour) override { Add(Fill, box, colour); }
  void FillRoundedRect(const LRect& box, double, LGuiColor colour) override { Add(RoundedFill, box, colour); }
  void DrawRoundedRect(const LRect& box, double, const LGuiPen& pen) override { Add(RoundedFrame, box, pen); }
  void FillGradient(const LRect& box, LGuiColor top, LGuiColor) override { Add(Gradient, box, top); }
  void FillEllipse(const LRect& box, LGuiColor colour) override { Add(Ellipse, box, colour); }
  void DrawArc(const LRect& box, double, double, const LGuiPen& pen) override { Add(Arc, box, pen); }
  void DrawLine(LPointF from, LPointF to, const LGuiPen& pen) override;
  void DrawPolyline(std::span<const LPointF> points, const LGuiPen& pen) override;
  void FillPolygon(std::span<const LPointF> points, LGuiColor colour) override;
  void DrawText(const LRect& box, std::string_view text, const LGuiFont&, LGuiColor colour, unsigned) override;
  void DrawImage(const LRect& box, const LGuiImage&) override { Add(Image, box, LGuiColor{}); }
  void PushClip(const LRect& box) override { clips_.push_back(clips_.back().Intersected(box)); }
  void PopClip() override;

 private:
  Op& Add(Kind kind, const LRect& box, LGuiColor colour);
  Op& Add(Kind kind, const LRect& box, const LGuiPen& pen);
  static LRect Span(std::span<const LPointF> points);
  std::vector<Op> ops_;
  std::vector<LRect> clips_;  // the first is all of it
};
