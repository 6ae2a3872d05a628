// What a custom-drawn control paints on. One call of EvPaint gets one context; it is not kept.
// Law      (0, 0) is the control's own top left corner. Later calls cover earlier ones. Edges are smoothed.
// Units    device-independent pixels; angles in degrees, 0 at three o'clock, counter-clockwise.
// Threads  [main]
#pragma once
#include <span>
#include <string_view>

#include "toolkit/LGuiFont.h"
#include "toolkit/LGuiImage.h"
#include "toolkit/LGuiPen.h"
#include "toolkit/LRect.h"

// Across in the low bits, down in the high ones; one of each is or-ed. Text that does not fit ends in an ellipsis.
enum LTextAlign : unsigned {
  ltaLeft = 0,
  ltaCentre = 1,
  ltaRight = 2,
  ltaMiddle = 0,
  ltaTop = 4,
  ltaBottom = 8,
  ltaWrap = 16
};

class LPaintContext {
 public:
  virtual ~LPaintContext() = default;
  virtual LRect DirtyRect() const = 0;    // what needs painting; painting more is allowed and clipped
  virtual double PixelRatio() const = 0;  // device pixels per unit, for images made to measure

  virtual void FillRect(const LRect& box, LGuiColor colour) = 0;
  virtual void FillRoundedRect(const LRect& box, double radius, LGuiColor colour) = 0;
  virtual void DrawRoundedRect(const LRect& box, double radius, const LGuiPen& pen) = 0;  // radius 0: a plain frame
  virtual void FillGradient(const LRect& box, LGuiColor top, LGuiColor bottom) = 0;
  virtual void FillEllipse(const LRect& box, LGuiColor colour) = 0;
  virtual void DrawArc(const LRect& box, double startDegrees, double spanDegrees, const LGuiPen& pen) = 0;
  virtual void DrawLine(LPointF from, LPointF to, const LGuiPen& pen) = 0;
  virtual void DrawPolyline(std::span<const LPointF> points, const LGuiPen& pen) = 0;
  virtual void FillPolygon(std::span<const LPointF> points, LGuiColor colour) = 0;
  virtual void DrawText(const LRect& box, std::string_view text, const LGuiFont& font, LGuiColor colour,
                        unsigned align = ltaLeft | ltaMiddle) = 0;
  virtual void DrawImage(const LRect& box, const LGuiImage& image) = 0;  // scaled to the box
  virtual void PushClip(const LRect& box) = 0;                           // within the present one
  virtual void PopClip() = 0;
};

// Clips for a scope.
class LPaintClip {
 public:
  LPaintClip(LPaintContext& context, const LRect& box) : context_(context) { context_.PushClip(box); }
  ~LPaintClip() { context_.PopClip(); }
  LPaintClip(const LPaintClip&) = delete;
  LPaintClip& operator=(const LPaintClip&) = delete;

 private:
  LPaintContext& context_;
};
