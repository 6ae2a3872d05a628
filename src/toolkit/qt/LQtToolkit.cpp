#include "toolkit/qt/LQtToolkit.h"

#include <QAccessible>
#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFileInfo>
#include <QFontInfo>
#include <QFontMetrics>
#include <QLocale>
#include <QUrl>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "toolkit/LPropertySheet.h"
#include "toolkit/qt/LQtDialog.h"
#include "toolkit/qt/LQtListView.h"
#include "toolkit/qt/LQtLoop.h"
#include "toolkit/qt/LQtMainWindow.h"
#include "toolkit/qt/LQtPaintContext.h"
#include "toolkit/qt/LQtPaintControl.h"
#include "toolkit/qt/LQtProgress.h"
#include "toolkit/qt/LQtQuestions.h"
#include "toolkit/qt/LQtTabBar.h"
#include "toolkit/qt/LQtTheme.h"

bool LQtToolkit::HasDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value && value[0] != '\0') return true;
  }
  return false;
}

LQtToolkit::LQtToolkit(int argumentCount, char** arguments)
    : argumentCount_(argumentCount > 0 ? 1 : 0), arguments_{argumentCount > 0 ? arguments[0] : nullptr, nullptr} {
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
  std::setlocale(LC_NUMERIC, "C");  // Qt has just taken the user's; numbers in files do not follow it
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QCoreApplication::setApplicationName(QStringLiteral("Tavi"));
  QCoreApplication::setApplicationVersion(QStringLiteral(TAVI_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("tavi"));
  QGuiApplication::setQuitOnLastWindowClosed(false);
  LQtApplyTheme(*application_);
  LQtApplyGermanTexts(*application_);
  LQtInstallAccessibility();
  if (QFontInfo(QApplication::font()).family().isEmpty())
    std::fprintf(stderr, "Keine Schriftart gefunden: Texte bleiben unsichtbar.\n");
  loop_ = std::make_unique<LQtLoop>();
}

LQtToolkit::~LQtToolkit() = default;

std::unique_ptr<LMainWindowPeer> LQtToolkit::NewMainWindow(LMainWindow& window) {
  return std::make_unique<LQtMainWindow>(window);
}

std::unique_ptr<LPaintControlPeer> LQtToolkit::NewPaintControl(LPaintControl& control) {
  return std::make_unique<LQtPaintControl>(control);
}

std::unique_ptr<LListViewPeer> LQtToolkit::NewListView(LListView& list) { return std::make_unique<LQtListView>(list); }

std::unique_ptr<LTabBarPeer> LQtToolkit::NewTabBar(LTabBar& bar) { return std::make_unique<LQtTabBar>(bar); }

std::unique_ptr<LDialogPeer> LQtToolkit::NewDialog(LDialog& dialog) { return std::make_unique<LQtDialog>(dialog); }

std::unique_ptr<LProgressDialogPeer> LQtToolkit::NewProgressDialog(LProgressDialog& dialog, LWindow* parent) {
  return std::make_unique<LQtProgress>(dialog, LQtTopLevel(parent));
}

std::unique_ptr<LBubbleTipPeer> LQtToolkit::NewBubbleTip(LBubbleTip& tip, LWindow& window, const LRect& area) {
  return std::make_unique<LQtBubbleTip>(tip, *LQtParent(&window), area);
}

int LQtToolkit::RunAlert(LAlert& alert, LWindow* parent) { return LQtRunAlert(*loop_, alert, LQtTopLevel(parent)); }

bool LQtToolkit::RunFileDialog(LFileDialog& dialog, LWindow* parent) {
  return LQtRunFileDialog(*loop_, dialog, LQtTopLevel(parent));
}

unsigned LQtToolkit::RunPopupMenu(LMenu& menu, LWindow& window, LPoint where) {
  return LQtRunPopup(*loop_, menu, *LQtParent(&window), where);
}

void LQtToolkit::RunDialog(LDialog& dialog, LWindow* parent) { LQtRunDialog(*loop_, dialog, LQtTopLevel(parent)); }

void LQtToolkit::RunPropertySheet(LPropertySheet& sheet, LWindow* parent) {
  LQtRunPropertySheet(*loop_, sheet, LQtTopLevel(parent));
}

void LQtToolkit::Run() {
  QAccessible::setRootObject(qApp);
  QEventLoop events;
  loop_->Exec(events);
}

bool LQtToolkit::RunUntil(LSignalObjectGroup& group, unsigned ms) { return loop_->RunUntil(group, ms); }

void LQtToolkit::ClearEventQueue() {
  const LQtInputBlock block(nullptr);
  loop_->ProcessWindowEvents();
}

LTextSize LQtToolkit::MeasureText(const LGuiFont& font, std::string_view text) {
  const QFontMetrics metrics(LQtFont(font));
  return {metrics.horizontalAdvance(QString::fromUtf8(text.data(), qsizetype(text.size()))), metrics.height()};
}

bool LQtToolkit::RevealFile(const std::string& path) {
  const QFileInfo file(LToQt(path));
  const QString folder = file.isDir() ? file.filePath() : file.path();
  return QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}
