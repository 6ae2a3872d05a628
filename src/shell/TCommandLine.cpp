#include "shell/TCommandLine.h"

#include <algorithm>

#include "console/TRecordingFile.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

constexpr std::size_t kMaxTracks = 2;

struct OptionRow {
  const char* name;
  const char* argument;  // null: takes none
  const char* text;
  bool (*apply)(TStartOptions& options, const std::string& value, std::string& error);
};

bool Flag(bool& flag) { return flag = true; }
bool Text(std::string& target, const std::string& value) {
  target = value;
  return true;
}

bool ApplyRecord(TStartOptions& options, const std::string& value, std::string& error) {
  if (!TRecordingFile::IsKnownExtension(LFile::ExtensionFromPath(value))) {
    error = LText::Format("Die Endung von \"%s\" ist kein Aufnahmeformat. Möglich sind %s.", value.c_str(),
                          TRecordingFile::KnownExtensions().c_str());
    return false;
  }
  return Text(options.recordPath, value);
}

bool ApplyDuration(TStartOptions& options, const std::string& value, std::string& error) {
  options.durationSeconds = LText::ToDouble(value);
  if (options.durationSeconds && *options.durationSeconds >= 0) return true;
  error = LText::Format("--duration erwartet eine Zahl von Sekunden und nicht \"%s\".", value.c_str());
  return false;
}

constexpr OptionRow kOptions[] = {
    {"--help", nullptr, "diese Hilfe zeigen",
     [](TStartOptions& o, const std::string&, std::string&) { return Flag(o.help); }},
    {"--version", nullptr, "die Version zeigen",
     [](TStartOptions& o, const std::string&, std::string&) { return Flag(o.version); }},
    {"--demo", nullptr, "die beiden Demo-Titel mischen; ohne Bildschirm offline in die Datei mix.wav",
     [](TStartOptions& o, const std::string&, std::string&) { return Flag(o.demo); }},
    {"--headless", nullptr, "ohne Fenster, in Echtzeit",
     [](TStartOptions& o, const std::string&, std::string&) { return Flag(o.headless); }},
    {"--offline", nullptr, "ohne Fenster, so schnell der Rechner kann",
     [](TStartOptions& o, const std::string&, std::string&) { return o.headless = Flag(o.offline); }},
    {"--data", "ORDNER", "Einstellungen und Daten in diesem Ordner halten",
     [](TStartOptions& o, const std::string& v, std::string&) { return Text(o.dataFolder, v); }},
    {"--device", "NAME", "Wiedergabegerät; \"null\" gibt es immer, \"jack:NAME\" wählt JACK",
     [](TStartOptions& o, const std::string& v, std::string&) { return Text(o.device, v); }},
    {"--list-devices", nullptr, "die Wiedergabegeräte nennen",
     [](TStartOptions& o, const std::string&, std::string&) { return Flag(o.listDevices); }},
    {"--record", "DATEI", "den Mix von Anfang an aufnehmen", ApplyRecord},
    {"--script", "DATEI", "ein Skript ausführen; \"-\" liest die Standardeingabe",
     [](TStartOptions& o, const std::string& v, std::string&) { return Text(o.scriptPath, v); }},
    {"--duration", "SEKUNDEN", "danach enden", ApplyDuration},
    {"--state", "DATEI", "am Ende den Zustand als JSON schreiben",
     [](TStartOptions& o, const std::string& v, std::string&) { return Text(o.statePath, v); }},
    {"--screenshot", "DATEI", "am Ende des Skripts, sonst nach 2 s, das Hauptfenster als PNG speichern",
     [](TStartOptions& o, const std::string& v, std::string&) { return Text(o.screenshotPath, v); }},
};

const OptionRow* Find(const std::string& name) {
  const auto* row =
      std::find_if(std::begin(kOptions), std::end(kOptions), [&](const auto& r) { return name == r.name; });
  return row == std::end(kOptions) ? nullptr : row;
}

bool CheckTogether(const TStartOptions& options, std::string& error) {
  if (options.demo && (!options.scriptPath.empty() || !options.tracks.empty()))
    error = "--demo lädt seine eigenen Titel und verträgt sich nicht mit --script oder Titeln.";
  else if (options.headless && !options.screenshotPath.empty())
    error = "--screenshot braucht ein Fenster und verträgt sich nicht mit --headless oder --offline.";
  else if (options.offline && options.scriptPath.empty() && !options.durationSeconds && !options.demo)
    error = "--offline endet nur mit --script, --duration oder --demo.";
  return error.empty();
}

}  // namespace

TStartOptions TCommandLine::Parse(const std::vector<std::string>& arguments, std::string& error) {
  TStartOptions options;
  error.clear();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (!argument.starts_with('-') || argument == "-") {
      options.tracks.push_back(argument);
      continue;
    }
    if (LText::EqualsNoCase(argument, "-CD")) continue;  // read by the main window
    const OptionRow* row = Find(argument);
    if (!row) {
      error = LText::Format("Die Option \"%s\" ist nicht bekannt.", argument.c_str());
      return options;
    }
    std::string value;
    if (row->argument) {
      if (i + 1 >= arguments.size()) {
        error = LText::Format("Nach %s fehlt %s.", row->name, row->argument);
        return options;
      }
      value = arguments[++i];
    }
    if (!row->apply(options, value, error)) return options;
  }
  if (options.tracks.size() > kMaxTracks) error = "Es gibt zwei Decks: höchstens zwei Titel lassen sich angeben.";
  if (error.empty()) CheckTogether(options, error);
  return options;
}

std::string TCommandLine::HelpText() {
  std::string text = "Tavi mischt zwei Titel.\n\nAufruf: tavi [Optionen] [TITEL für Deck A] [TITEL für Deck B]\n\n";
  for (const OptionRow& row : kOptions) {
    const std::string name = row.argument ? LText::Format("%s %s", row.name, row.argument) : row.name;
    text += LText::Format("  %-22s %s\n", name.c_str(), row.text);
  }
  return text;
}

std::string TCommandLine::VersionText() { return "Tavi " TAVI_VERSION "\n"; }
