#include "foundation/LPreferences.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <mutex>

#include "foundation/LPlatform.h"
#include "foundation/LText.h"

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

void LMemoryPreferences::DeleteSection(const std::string& prefix) {
  std::lock_guard lock(mutex_);
  std::erase_if(values_, [&](const auto& item) {
    return LText::EqualsNoCase(std::string_view(item.first).substr(0, prefix.size()), prefix);
  });
}

void LMemoryPreferences::SetForApplication(const std::string& application, const std::string& name,
                                           const std::string& value) {
  std::lock_guard lock(mutex_);
  ofOthers_[application][name] = value;
}

std::string LUserSettingGetString(const char* section, const char* key, const char* fallback) {
  return LPlatform::Preferences().Get(JoinedName(section, key)).value_or(fallback);
}

int LUserSettingGetInt(const char* section, const char* key, int fallback) {
  const std::string text = LUserSettingGetString(section, key);
  return text.empty() ? fallback : int(std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), INT_MIN, INT_MAX));
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

void LUserSettingDeleteSection(const char* section) { LPlatform::Preferences().DeleteSection(JoinedName(section, "")); }

void LSettingForApplicationSetBool(const char* application, const char* section, const char* key, bool value) {
  LPlatform::Preferences().SetForApplication(application, JoinedName(section, key), value ? "1" : "0");
}
