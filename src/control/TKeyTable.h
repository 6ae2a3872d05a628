// The key commands: English name (identity in stores and scripts), id, deck, default key, German text. The order
// matters: a key is looked up from the front.
// Threads  [main]
// Failure  a failed lookup gives InvalidKeyCommand, never null.
#pragma once
#include <cstdint>
#include <span>
#include <string_view>

struct TKeyCommand {
  const char* name;
  short id;
  int deck;           // 0 deck A, 1 deck B, 9 general
  std::uint32_t key;  // LKey value, 0: none
  const char* text;
};

extern const TKeyCommand InvalidKeyCommand;
inline bool IsValid(const TKeyCommand& command) { return &command != &InvalidKeyCommand; }

namespace TKeyTable {
std::span<const TKeyCommand> Rows();
const TKeyCommand& FindByName(std::string_view name);  // the English name of a key or a controller command
const TKeyCommand& FindByCommand(int id);
const TKeyCommand& FindByKey(std::uint32_t key);
}  // namespace TKeyTable
