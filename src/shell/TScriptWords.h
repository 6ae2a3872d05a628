// The words of a script's line, taken off its front one by one.
// Threads  [any]
#pragma once
#include <string_view>

#include "console/DJDeckPosition.h"

namespace ScriptWords {
std::string_view TakeWord(std::string_view& rest);
DJDeckPosition DeckFrom(std::string_view word);  // "A", "B"; kNoDeck: neither
bool TakeDeck(std::string_view& rest, DJDeckPosition& deck);
bool TakeNumber(std::string_view& rest, double low, double high, double& value);
bool TakeLastNumber(std::string_view& rest, double low, double high, double& value);
bool TakeCount(std::string_view& rest, int& index);  // a whole number from 1, as an index from 0
}  // namespace ScriptWords
