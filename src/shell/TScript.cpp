#include "shell/TScript.h"

#include <algorithm>

#include "console/DJPitchLaw.h"
#include "console/TDeckLoop.h"
#include "control/TAVIID.h"
#include "control/TKeyTable.h"
#include "effects/TEqualizer.h"
#include "foundation/LText.h"
#include "shell/TCommandTable.h"
#include "shell/TScriptWords.h"

namespace {

using ScriptWords::DeckFrom;
using ScriptWords::TakeLastNumber;
using ScriptWords::TakeNumber;
using ScriptWords::TakeWord;

bool TakeDeck(std::string_view& rest, TScriptEvent& event) { return ScriptWords::TakeDeck(rest, event.deck); }

using Reader = bool (*)(std::string_view rest, TScriptEvent& event);

bool ReadLoad(std::string_view rest, TScriptEvent& event) {
  if (!TakeDeck(rest, event)) return false;
  event.path = rest;
  return !rest.empty();
}

bool ReadCommand(std::string_view rest, TScriptEvent& event) {
  const auto number = LText::ToInt(rest);
  event.target = number ? int(*number) : TKeyTable::FindByName(rest).id;
  return FindCommand(event.target) != nullptr;
}

bool ReadCrossfade(std::string_view rest, TScriptEvent& event) { return TakeLastNumber(rest, 0, 100, event.value); }

bool ReadVolume(std::string_view rest, TScriptEvent& event) {
  const std::string_view whose = TakeWord(rest);
  event.deck = DeckFrom(whose);
  event.target = LText::EqualsNoCase(whose, "phones") ? 1 : 0;
  if (event.deck == kNoDeck && event.target == 0 && !LText::EqualsNoCase(whose, "master")) return false;
  return TakeLastNumber(rest, -127, 127, event.value);
}

bool ReadSeek(std::string_view rest, TScriptEvent& event) {
  return TakeDeck(rest, event) && TakeLastNumber(rest, 0, 1e6, event.value);
}

bool ReadPitch(std::string_view rest, TScriptEvent& event) {
  return TakeDeck(rest, event) && TakeLastNumber(rest, 0, kPitchSliderMax, event.value);
}

bool ReadLoop(std::string_view rest, TScriptEvent& event) {
  return TakeDeck(rest, event) && TakeLastNumber(rest, kWholeTrack, 1e4, event.value) &&
         (event.value >= 0 || event.value == kWholeTrack);
}

bool ReadBpm(std::string_view rest, TScriptEvent& event) {
  double firstBeat = 0;
  if (!TakeDeck(rest, event) || !TakeNumber(rest, 0, 1000, event.value) || !TakeLastNumber(rest, 0, 1e9, firstBeat))
    return false;
  event.target = int(firstBeat);
  return true;
}

bool ReadScratch(std::string_view rest, TScriptEvent& event) {
  if (!TakeDeck(rest, event)) return false;
  event.target = rest == "begin" ? TScriptEvent::ScratchBegin
                 : rest == "end" ? TScriptEvent::ScratchEnd
                                 : TScriptEvent::ScratchMove;
  return event.target != TScriptEvent::ScratchMove || TakeLastNumber(rest, -1e9, 1e9, event.value);
}

bool ReadEffect(std::string_view rest, TScriptEvent& event) { return TEffectAction::Read(rest, event.effect); }

bool ReadEqualizer(std::string_view rest, TScriptEvent& event) {
  return TakeDeck(rest, event) && ScriptWords::TakeCount(rest, event.target) && event.target < TEqualizer::kBands &&
         TakeLastNumber(rest, 0, 100, event.value);
}

bool ReadState(std::string_view rest, TScriptEvent& event) {
  event.path = rest;
  return !rest.empty();
}

struct VerbRow {
  const char* name;
  const char* usage;
  TScriptEvent::Verb verb;
  Reader read;
};
constexpr VerbRow kVerbs[] = {
    {"load", "load A|B PFAD", TScriptEvent::Load, ReadLoad},
    {"command", "command NAME (oder Nummer)", TScriptEvent::Command, ReadCommand},
    {"crossfade", "crossfade 0..100", TScriptEvent::Crossfade, ReadCrossfade},
    {"volume", "volume A|B|master|phones DB", TScriptEvent::Volume, ReadVolume},
    {"seek", "seek A|B SEKUNDEN", TScriptEvent::Seek, ReadSeek},
    {"pitch", "pitch A|B 0..1000", TScriptEvent::Pitch, ReadPitch},
    {"loop", "loop A|B SCHLÄGE (0: aus, -1: ganzer Titel)", TScriptEvent::Loop, ReadLoop},
    {"bpm", "bpm A|B BPM ERSTER_SCHLAG", TScriptEvent::Bpm, ReadBpm},
    {"scratch", "scratch A|B begin|FRAME|end", TScriptEvent::Scratch, ReadScratch},
    {"effect", "effect add|remove|clear|move|set|preset|apply|bypass|save|load [master] ...", TScriptEvent::Effect,
     ReadEffect},
    {"eq", "eq A|B BAND STELLUNG", TScriptEvent::Equalizer, ReadEqualizer},
    {"state", "state DATEI", TScriptEvent::State, ReadState},
    {"quit", "quit", TScriptEvent::Quit, [](std::string_view rest, TScriptEvent&) { return rest.empty(); }},
};

bool ParseLine(std::string_view line, TScriptEvent& event, std::string& error) {
  const auto fail = [&](const std::string& text) {
    error = LText::Format("Skript, Zeile %d: %s", event.line, text.c_str());
    return false;
  };
  const std::string_view time = TakeWord(line);
  const auto seconds = LText::ToDouble(time);
  if (!seconds || *seconds < 0)
    return fail(LText::Format("\"%s\" ist keine Zeit in Sekunden.", std::string(time).c_str()));
  event.seconds = *seconds;
  const std::string_view name = TakeWord(line);
  for (const VerbRow& row : kVerbs) {
    if (name != row.name) continue;
    event.verb = row.verb;
    return row.read(line, event) ||
           fail(LText::Format("\"%s\" ist kein gültiges Argument. Erwartet: %s", std::string(line).c_str(), row.usage));
  }
  return fail(LText::Format("Das Kommando \"%s\" ist nicht bekannt.", std::string(name).c_str()));
}

void SortByTime(std::vector<TScriptEvent>& events) {
  std::stable_sort(events.begin(), events.end(), [](const auto& a, const auto& b) { return a.seconds < b.seconds; });
}

}  // namespace

TScript TScript::Parse(std::string_view text, std::string& error) {
  TScript script;
  error.clear();
  for (int number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size());
    const std::string_view line = LText::Trim(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line[0] == '#') continue;
    TScriptEvent event;
    event.line = number;
    if (!ParseLine(line, event, error)) return {};
    script.events.push_back(event);
  }
  SortByTime(script.events);
  return script;
}

TScript TScript::Demo(const std::string& trackA, const std::string& trackB) {
  constexpr double kFadeStart = 24, kFadeSeconds = 8;
  TScript script;
  const auto add = [&](double seconds, TScriptEvent event) {
    event.seconds = seconds;
    script.events.push_back(std::move(event));
  };
  add(0, {.verb = TScriptEvent::Load, .deck = kDeckA, .path = trackA});
  add(0, {.verb = TScriptEvent::Load, .deck = kDeckB, .path = trackB});
  add(0, {.verb = TScriptEvent::Crossfade, .value = 0});
  add(0, {.verb = TScriptEvent::Command, .target = idPlayPauseA});
  add(20, {.verb = TScriptEvent::Command, .target = idPlayPauseB});
  for (int position = 1; position <= 100; ++position)
    add(kFadeStart + kFadeSeconds * position / 100, {.verb = TScriptEvent::Crossfade, .value = double(position)});
  add(60, {.verb = TScriptEvent::Quit});
  return script;
}
