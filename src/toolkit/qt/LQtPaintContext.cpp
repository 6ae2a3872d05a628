#include "toolkit/qt/LQtPaintContext.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPolygonF>

#include "toolkit/qt/LQtConvert.h"

namespace {

QPen ToQt(const LGuiPen& pen) {
  QPen qt(LToQt(pen.colour), pen.width);
  qt.setCapStyle(pen.roundEnds ? Qt::RoundCap : Qt::FlatCap);
  qt.setJoinStyle(pen.roundEnds ? Qt::RoundJoin : Qt::MiterJoin);
  const double unit = pen.width > 0 ? pen.width : 1;  // Qt counts dashes in widths of the pen
  if (pen.IsDashed()) qt.setDashPattern({pen.dashOn / unit, pen.dashOff / unit});
  return qt;
}

QPolygonF ToQt(std::span<const LPointF> points) {
  QPolygonF polygon;
  polygon.reserve(qsizetype(points.size()));
  for (const LPointF& point : points) polygon.append(QPointF(point.x, point.y));
  return polygon;
}

int AlignToQt(unsigned align) {
  int flags = align & ltaCentre ? Qt::AlignHCenter : align & ltaRight ? Qt::AlignRight : Qt::AlignLeft;
  flags |= align & ltaTop ? Qt::AlignTop : align & ltaBottom ? Qt::AlignBottom : Qt::AlignVCenter;
  return flags | (align & ltaWrap ? Qt::TextWordWrap : Qt::TextSingleLine);
}

}  // namespace

QFont LQtFont(const LGuiFont& font) {
  QFont qt = QApplication::font();
  const double points = qt.pointSizeF();
  if (font.fixedPitch) qt.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
  if (points > 0)
    qt.setPointSizeF(points * font.scale);
  else
    qt.setPixelSize(qRound(qt.pixelSize() * font.scale));
  qt.setBold(font.bold);
  return qt;
}

LQtPaintContext::LQtPaintContext(QPainter& painter, const LRect& dirty) : painter_(painter), dirty_(dirty) {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

void LQtPaintContext::FillRect(const LRect& box, LGuiColor colour) { painter_.fillRect(LToQt(box), LToQt(colour)); }

void LQtPaintContext::FillRoundedRect(const LRect& box, double radius, LGuiColor colour) {
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(LToQt(colour));
  painter_.drawRoundedRect(LToQt(box), radius, radius);
}

void LQtPaintContext::DrawRoundedRect(const LRect& box, double radius, const LGuiPen& pen) {
  // The line lies inside the box, on whole pixels for the usual width of 1.
  const double half = pen.width / 2;
  painter_.setPen(ToQt(pen));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRoundedRect(QRectF(LToQt(box)).adjusted(half, half, -half, -half), radius, radius);
}

void LQtPaintContext::FillGradient(const LRect& box, LGuiColor top, LGuiColor bottom) {
  QLinearGradient gradient(0, box.y, 0, box.Bottom());
  gradient.setColorAt(0, LToQt(top));
  gradient.setColorAt(1, LToQt(bottom));
  painter_.fillRect(LToQt(box), gradient);
}

void LQtPaintContext::FillEllipse(const LRect& box, LGuiColor colour) {
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(LToQt(colour));
  painter_.drawEllipse(QRectF(LToQt(box)));
}

void LQtPaintContext::DrawArc(const LRect& box, double startDegrees, double spanDegrees, const LGuiPen& pen) {
  const double half = pen.width / 2;
  painter_.setPen(ToQt(pen));
  painter_.setBrush(Qt::NoBrush);
  // Qt's angles are sixteenths of a degree.
  painter_.drawArc(QRectF(LToQt(box)).adjusted(half, half, -half, -half), int(startDegrees * 16),
                   int(spanDegrees * 16));
}

void LQtPaintContext::DrawLine(LPointF from, LPointF to, const LGuiPen& pen) {
  // Straight lines stay sharp: they are drawn without smoothing, through the middle of their pixels.
  const bool straight = from.x == to.x || from.y == to.y;
  painter_.setRenderHint(QPainter::Antialiasing, !straight);
  painter_.setPen(ToQt(pen));
  painter_.drawLine(QPointF(from.x, from.y), QPointF(to.x, to.y));
  painter_.setRenderHint(QPainter::Antialiasing, true);
}

void LQtPaintContext::DrawPolyline(std::span<const LPointF> points, const LGuiPen& pen) {
  if (points.size() < 2) return;
  painter_.setPen(ToQt(pen));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawPolyline(ToQt(points));
}

void LQtPaintContext::FillPolygon(std::span<const LPointF> points, LGuiColor colour) {
  if (points.size() < 3) return;
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(LToQt(colour));
  painter_.drawPolygon(ToQt(points));
}

void LQtPaintContext::DrawText(const LRect& box, std::string_view text, const LGuiFont& font, LGuiColor colour,
                               unsigned align) {
  if (box.IsEmpty()) return;
  const QFont qt = LQtFont(font);
  QString shown = QString::fromUtf8(text.data(), qsizetype(text.size()));
  if (!(align & ltaWrap)) shown = QFontMetricsF(qt, painter_.device()).elidedText(shown, Qt::ElideRight, box.width);
  painter_.setFont(qt);
  painter_.setPen(LToQt(colour));
  painter_.drawText(LToQt(box), AlignToQt(align), shown);
}

void LQtPaintContext::DrawImage(const LRect& box, const LGuiImage& image) {
  if (image.IsEmpty()) return;
  const auto* bytes = reinterpret_cast<const uchar*>(image.Row(0));
  const QImage qt(bytes, image.Width(), image.Height(), image.Width() * 4, QImage::Format_ARGB32_Premultiplied);
  painter_.drawImage(QRectF(LToQt(box)), qt);
}

void LQtPaintContext::PushClip(const LRect& box) {
  painter_.save();
  painter_.setClipRect(LToQt(box), Qt::IntersectClip);
  ++clips_;
}

void LQtPaintContext::PopClip() {
  if (clips_ == 0) return;
  --clips_;
  painter_.restore();
}
