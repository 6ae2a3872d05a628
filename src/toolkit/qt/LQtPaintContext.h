// The paint context on QPainter.
// Threads  [main]
#pragma once
#include <QFont>
#include <QPainter>

#include "toolkit/LPaintContext.h"

QFont LQtFont(const LGuiFont& font);

class LQtPaintContext final : public LPaintContext {
 public:
  LQtPaintContext(QPainter& painter, const LRect& dirty);

  LRect DirtyRect() const override { return dirty_; }
  double PixelRatio() const override { return painter_.device()->devicePixelRatioF(); }
  void FillRect(const LRect& box, LGuiColor colour) override;
  void FillRoundedRect(const LRect& box, double radius, LGuiColor colour) override;
  void DrawRoundedRect(const LRect& box, double radius, const LGuiPen& pen) override;
  void FillGradient(const LRect& box, LGuiColor top, LGuiColor bottom) override;
  void FillEllipse(const LRect& box, LGuiColor colour) override;
  void DrawArc(const LRect& box, double startDegrees, double spanDegrees, const LGuiPen& pen) override;
  void DrawLine(LPointF from, LPointF to, const LGuiPen& pen) override;
  void DrawPolyline(std::span<const LPointF> points, const LGuiPen& pen) override;
  void FillPolygon(std::span<const LPointF> points, LGuiColor colour) override;
  void DrawText(const LRect& box, std::string_view text, const LGuiFont& font, LGuiColor colour,
                unsigned align) override;
  void DrawImage(const LRect& box, const LGuiImage& image) override;
  void PushClip(const LRect& box) override;
  void PopClip() override;

 private:
  QPainter& painter_;
  LRect dirty_;
  int clips_ = 0;
};
