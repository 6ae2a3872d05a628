#include "shell/TScriptWords.h"

#include <algorithm>

#include "foundation/LText.h"

std::string_view ScriptWords::TakeWord(std::string_view& rest) {
  rest = LText::Trim(rest);
  const auto end = std::min(rest.find_first_of(" \t"), rest.size());
  const std::string_view word = rest.substr(0, end);
  rest = LText::Trim(rest.substr(end));
  return word;
}

DJDeckPosition ScriptWords::DeckFrom(std::string_view word) {
  if (LText::EqualsNoCase(word, "A")) return kDeckA;
  if (LText::EqualsNoCase(word, "B")) return kDeckB;
  return kNoDeck;
}

bool ScriptWords::TakeDeck(std::string_view& rest, DJDeckPosition& deck) {
  deck = DeckFrom(TakeWord(rest));
  return deck != kNoDeck;
}

bool ScriptWords::TakeNumber(std::string_view& rest, double low, double high, double& value) {
  const auto number = LText::ToDouble(TakeWord(rest));
  if (!number || !(*number >= low && *number <= high)) return false;
  value = *number;
  return true;
}

bool ScriptWords::TakeLastNumber(std::string_view& rest, double low, double high, double& value) {
  return TakeNumber(rest, low, high, value) && rest.empty();
}

bool ScriptWords::TakeCount(std::string_view& rest, int& index) {
  constexpr int kMost = 10000;
  const auto number = LText::ToInt(TakeWord(rest));
  if (!number || *number < 1 || *number > kMost) return false;
  index = int(*number) - 1;
  return true;
}
