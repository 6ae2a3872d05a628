#include "toolkit/qt/LQtTheme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>

namespace {

// Alt keys are commands of the program: Alt alone must not go to the menu bar.
class Style final : public QProxyStyle {
 public:
  Style() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_MenuBar_AltKeyNavigation) return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }
};

struct PaletteRow {
  QPalette::ColorRole role;
  QRgb colour, disabled;
};
constexpr PaletteRow kPalette[] = {
    {QPalette::Window, 0xFF26282B, 0xFF26282B},
    {QPalette::WindowText, 0xFFE6E6E6, 0xFF808285},
    {QPalette::Base, 0xFF1B1C1F, 0xFF212225},
    {QPalette::AlternateBase, 0xFF202225, 0xFF212225},
    {QPalette::Text, 0xFFE6E6E6, 0xFF808285},
    {QPalette::Button, 0xFF34373B, 0xFF2B2D30},
    {QPalette::ButtonText, 0xFFE6E6E6, 0xFF808285},
    {QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::Highlight, 0xFF2F6FB5, 0xFF3A3D42},
    {QPalette::HighlightedText, 0xFFFFFFFF, 0xFFB0B0B0},
    {QPalette::ToolTipBase, 0xFF3A3D42, 0xFF3A3D42},
    {QPalette::ToolTipText, 0xFFF0F0F0, 0xFFF0F0F0},
    {QPalette::PlaceholderText, 0xFF8C9094, 0xFF606468},
    {QPalette::Link, 0xFF6FB1F0, 0xFF6FB1F0},
};

}  // namespace

void LQtApplyTheme(QApplication& application) {
  application.setStyle(new Style);
  QPalette palette;
  for (const PaletteRow& row : kPalette) {
    palette.setColor(row.role, QColor(row.colour));
    palette.setColor(QPalette::Disabled, row.role, QColor(row.disabled));
  }
  application.setPalette(palette);
}
