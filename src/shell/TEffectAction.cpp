#include "shell/TEffectAction.h"

#include "console/DJDeckPosition.h"
#include "effects/LEffectList.h"
#include "effects/LEffectTypes.h"
#include "foundation/LText.h"
#include "shell/TScriptWords.h"

namespace {

using ScriptWords::TakeCount;
using ScriptWords::TakeLastNumber;
using ScriptWords::TakeWord;

bool ReadAdd(std::string_view rest, TEffectAction& action) {
  const auto number = LText::ToInt(rest);
  const LEffectType* named = FindEffectTypeByName(rest);
  action.type = number ? int(*number) : named ? named->number : 0;
  return CreateSoundProcessByType(action.type) != nullptr;
}

bool ReadIndex(std::string_view rest, TEffectAction& action) { return TakeCount(rest, action.index) && rest.empty(); }

bool ReadTwo(std::string_view rest, TEffectAction& action) {
  return TakeCount(rest, action.index) && TakeCount(rest, action.second) && rest.empty();
}

bool ReadSet(std::string_view rest, TEffectAction& action) {
  return TakeCount(rest, action.index) && TakeCount(rest, action.second) &&
         TakeLastNumber(rest, -1e9, 1e9, action.value);
}

bool ReadSwitch(std::string_view rest, TEffectAction& action) {
  action.on = rest == "on";
  return rest == "on" || rest == "off";
}

bool ReadBypass(std::string_view rest, TEffectAction& action) {
  return TakeCount(rest, action.index) && ReadSwitch(rest, action);
}

bool ReadApply(std::string_view rest, TEffectAction& action) {
  if (action.master || !TakeCount(rest, action.index)) return false;
  const std::string_view deck = TakeWord(rest);
  action.second = LText::EqualsNoCase(deck, "both") ? int(TSoundProcessChain::kBothDecks) : ScriptWords::DeckFrom(deck);
  return action.second != kNoDeck && ReadSwitch(rest, action);
}

bool ReadPath(std::string_view rest, TEffectAction& action) {
  action.path = rest;
  return !rest.empty();
}

struct ActionRow {
  const char* name;
  TEffectAction::Kind kind;
  bool (*read)(std::string_view rest, TEffectAction& action);
};
constexpr ActionRow kActions[] = {
    {"add", TEffectAction::Add, ReadAdd},
    {"remove", TEffectAction::Remove, ReadIndex},
    {"clear", TEffectAction::Clear, [](std::string_view rest, TEffectAction&) { return rest.empty(); }},
    {"move", TEffectAction::Move, ReadTwo},
    {"set", TEffectAction::Set, ReadSet},
    {"preset", TEffectAction::Preset, ReadTwo},
    {"apply", TEffectAction::Apply, ReadApply},
    {"bypass", TEffectAction::Bypass, ReadBypass},
    {"save", TEffectAction::Save, ReadPath},
    {"load", TEffectAction::Load, ReadPath},
};

}  // namespace

bool TEffectAction::Read(std::string_view words, TEffectAction& action) {
  const std::string_view name = TakeWord(words);
  std::string_view behind = words;
  action.master = TakeWord(behind) == "master";
  if (action.master) words = behind;
  for (const ActionRow& row : kActions) {
    if (name != row.name) continue;
    action.kind = row.kind;
    return row.read(words, action);
  }
  return false;
}
