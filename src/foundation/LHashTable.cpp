#include "foundation/LHashTable.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

const char* LHashTable::GetParm(std::string_view name, const char* fallback) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? fallback : found->second.c_str();
}

void LHashTable::SetParmBottom(std::string_view name, std::string_view value) {
  const auto found = fields_.find(name);
  if (found == fields_.end()) {
    fields_.emplace(name, value);
  } else {
    found->second = value;
  }
}

void LHashTable::SetInt(std::string_view name, int value) { SetParmBottom(name, std::to_string(value)); }

void LHashTable::DeleteField(std::string_view name) {
  const auto found = fields_.find(name);
  if (found != fields_.end()) fields_.erase(found);
}

void LHashTable::GetString(std::string_view name, std::string_view fallback, std::string& out) const {
  const auto found = fields_.find(name);
  out = found == fields_.end() ? std::string(fallback) : found->second;
}

bool LHashTable::GetBool(std::string_view name, bool fallback) const {
  const char* text = GetParm(name, "");
  return text[0] == 0 ? fallback : text[0] != '0';
}

int LHashTable::GetInt(std::string_view name, int fallback) const {
  const char* text = GetParm(name, "");
  return text[0] == 0 ? fallback : int(std::clamp<long>(std::strtol(text, nullptr, 10), INT_MIN, INT_MAX));
}
