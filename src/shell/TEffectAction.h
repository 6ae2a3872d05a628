// What a script does to the effects: "add NAME", "remove N", "clear", "move N M", "set N VALUE_NUMBER VALUE",
// "preset N PRESET", "apply N A|B|both on|off", "bypass N on|off", "save PATH", "load PATH". The word "master" behind the
// action means the effects behind the mix, else those of the decks.
// Units    effects, values and presets count from 1; values as panels show them: decimals with their point.
// Threads  [any]
#pragma once
#include <string>
#include <string_view>

struct TEffectAction {
  enum Kind { Add, Remove, Clear, Move, Set, Preset, Apply, Bypass, Save, Load };
  Kind kind = Add;
  bool master = false;
  int type = 0;   // Add: the effect's number
  int index = 0;  // from 0
  int second =
      0;  // Move: the new place; Set: the value's number; Preset: its number; all from 0. Apply: the deck, 7 both
  double value = 0;  // Set
  bool on = false;   // Apply, Bypass
  std::string path = {};

  static bool Read(std::string_view words, TEffectAction& action);  // false: not one of the above
};
