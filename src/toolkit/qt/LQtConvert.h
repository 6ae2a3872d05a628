// Between the toolkit's plain types and Qt's.
// Threads  [main]
#pragma once
#include <QColor>
#include <QMimeData>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QUrl>
#include <QWidget>
#include <string>
#include <vector>

#include "toolkit/LGuiColor.h"
#include "toolkit/LRect.h"
#include "toolkit/LWindow.h"

inline QString LToQt(const std::string& text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }
inline QString LToQt(const char* text) { return QString::fromUtf8(text); }
inline std::string LFromQt(const QString& text) { return text.toStdString(); }
inline QRect LToQt(const LRect& box) { return {box.x, box.y, box.width, box.height}; }
inline LRect LFromQt(const QRect& box) { return {box.x(), box.y(), box.width(), box.height()}; }
inline LPoint LFromQt(QPoint point) { return {point.x(), point.y()}; }
inline QColor LToQt(LGuiColor c) { return {c.red, c.green, c.blue, c.alpha}; }

// An ampersand of ours is a character, not a mnemonic.
inline QString LToQtLabel(const std::string& text) { return LToQt(text).replace(u'&', QStringLiteral("&&")); }

// Where Qt guesses whether a text is HTML: ours never is.
inline QString LToQtPlain(const std::string& text) {
  QString plain = LToQt(text);
  if (!plain.contains(u'<')) return plain;
  return QStringLiteral("<qt>") + plain.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")) +
         QStringLiteral("</qt>");
}

inline QWidget* LQtParent(LWindow* window) {
  return window ? static_cast<QWidget*>(window->Peer().NativeParent()) : nullptr;
}
inline QWidget* LQtTopLevel(LWindow* window) {
  QWidget* widget = LQtParent(window);
  return widget ? widget->window() : nullptr;
}

inline std::vector<std::string> LQtLocalFiles(const QMimeData* data) {
  std::vector<std::string> paths;
  if (!data) return paths;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) paths.push_back(LFromQt(url.toLocalFile()));
  return paths;
}
