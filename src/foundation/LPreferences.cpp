#include "foundation/LPreferences.h"

#include <cstdlib>
#include <mutex>

#include "foundation/LPlatform.h"

namespace {

// A section that ends in a slash brings its own.
std::string JoinedName(const std::string& section, const char* key) {
  return !section.empty() && section.back() == '/' ? section + key : section + "/" + key;
}

}  // namespace

std::optional<std::string> LMemoryPreferences::Get(const std::string& name) {
  std::lock_guard lock(mutex_);
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void LMemoryPreferences::Set(const std::string& name, const std::string& value) {
  std::lock_guard lock(mutex_);
  values_[name] = value;
}

void LMemoryPreferences::Delete(const std::string& name) {
  std::lock_guard lock(mutex_);
  values_.erase(name);
}

std::string LUserSettingGetString(const char* section, const char* key, const char* fallback) {
  return LPlatform::Preferences().Get(JoinedName(section, key)).value_or(fallback);
}

int LUserSettingGetInt(const char* section, const char* key, int fallback) {
  const std::string text = LUserSettingGetString(section, key);
  return text.empty() ? fallback : int(std::strtol(text.c_str(), nullptr, 10));
}

bool LUserSettingGetBool(const char* section, const char* key, bool fallback) {
  const std::string text = LUserSettingGetString(section, key);
  if (fallback) return text.empty() || text[0] != '0';
  return !text.empty() && text[0] != '0';
}

void LUserSettingSetString(const char* section, const char* key, const std::string& value) {
  LPlatform::Preferences().Set(JoinedName(section, key), value);
}

void LUserSettingDeleteItem(const char* section, const char* key) {
  LPlatform::Preferences().Delete(JoinedName(section, key));
}
