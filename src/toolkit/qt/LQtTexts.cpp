// The texts of Qt's own parts in German: this distribution's translations may not be installed.
#include <QApplication>
#include <QTranslator>
#include <memory>

#include "toolkit/qt/LQtTheme.h"

namespace {

struct TextRow {
  const char* english;
  const char* german;
};
constexpr TextRow kTexts[] = {
    {"OK", "OK"},
    {"&OK", "OK"},
    {"Cancel", "Abbrechen"},
    {"&Cancel", "Abbrechen"},
    {"Open", "Öffnen"},
    {"&Open", "Öffnen"},
    {"Save", "Sichern"},
    {"&Save", "Sichern"},
    {"Close", "Schließen"},
    {"&Close", "Schließen"},
    {"&Yes", "Ja"},
    {"&No", "Nein"},
    {"&Choose", "Auswählen"},
    {"Look in:", "Suchen in:"},
    {"File &name:", "Datei&name:"},
    {"Files of type:", "Dateityp:"},
    {"Directory:", "Ordner:"},
    {"Directories", "Ordner"},
    {"All Files (*)", "Alle Dateien (*)"},
    {"Computer", "Computer"},
    {"My Computer", "Computer"},
    {"Name", "Name"},
    {"Size", "Größe"},
    {"Type", "Art"},
    {"Kind", "Art"},
    {"Date Modified", "Geändert am"},
    {"Folder", "Ordner"},
    {"File Folder", "Ordner"},
    {"Back", "Zurück"},
    {"Forward", "Vor"},
    {"Parent Directory", "Übergeordneter Ordner"},
    {"Create New Folder", "Neuer Ordner"},
    {"&New Folder", "&Neuer Ordner"},
    {"New Folder", "Neuer Ordner"},
    {"List View", "Liste"},
    {"Detail View", "Einzelheiten"},
    {"&Delete", "&Löschen"},
    {"&Rename", "&Umbenennen"},
    {"Show &hidden files", "&Versteckte Dateien zeigen"},
    {"Remove", "Entfernen"},
    {"%1 already exists.\nDo you want to replace it?", "%1 ist schon vorhanden.\nSoll die Datei ersetzt werden?"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.", "%1\nDie Datei wurde nicht gefunden."},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\nDer Ordner wurde nicht gefunden."},
    {"&Undo", "&Rückgängig"},
    {"&Redo", "&Wiederholen"},
    {"Cu&t", "&Ausschneiden"},
    {"&Copy", "&Kopieren"},
    {"&Paste", "&Einfügen"},
    {"Delete", "Löschen"},
    {"Select All", "Alles auswählen"},
    {"&Step up", "Größer"},
    {"Step &down", "Kleiner"},
    {"Scroll Left", "Nach links"},
    {"Scroll Right", "Nach rechts"},
};

class GermanTexts final : public QTranslator {
 public:
  using QTranslator::QTranslator;
  bool isEmpty() const override { return false; }
  QString translate(const char*, const char* text, const char*, int) const override {
    for (const TextRow& row : kTexts)
      if (qstrcmp(row.english, text) == 0) return QString::fromUtf8(row.german);
    return {};  // Qt's own
  }
};

}  // namespace

void LQtApplyGermanTexts(QApplication& application) {
  auto texts = std::make_unique<GermanTexts>();
  texts->setParent(&application);  // which deletes it
  QCoreApplication::installTranslator(texts.release());
}
