// The store of user settings: strings addressed by "section/key". Readers take their stated default for what is not
// stored. A section may bring the slash. An integer is decimal text; a boolean tests the first character; "" counts as
// the default of both.
// Threads  [any]
#pragma once
#include <map>
#include <optional>
#include <string>

#include "foundation/LMutex.h"

class LPreferences {
 public:
  virtual ~LPreferences() = default;
  virtual std::optional<std::string> Get(const std::string& name) = 0;
  virtual void Set(const std::string& name, const std::string& value) = 0;  // durable before it returns
  virtual void Delete(const std::string& name) = 0;
  virtual void DeleteSection(const std::string& prefix) = 0;  // "section/", in whatever case
  // Into the store of another of our programs.
  virtual void SetForApplication(const std::string& application, const std::string& name, const std::string& value) = 0;
};

// Forgets everything at the program's end: tests, and a run whose store cannot be opened.
class LMemoryPreferences final : public LPreferences {
 public:
  std::optional<std::string> Get(const std::string& name) override;
  void Set(const std::string& name, const std::string& value) override;
  void Delete(const std::string& name) override;
  void DeleteSection(const std::string& prefix) override;
  void SetForApplication(const std::string& application, const std::string& name, const std::string& value) override;

 private:
  LMutex mutex_;
  std::map<std::string, std::string> values_;
  std::map<std::string, std::map<std::string, std::string>> ofOthers_;
};

std::string LUserSettingGetString(const char* section, const char* key, const char* fallback = "");
int LUserSettingGetInt(const char* section, const char* key, int fallback);
bool LUserSettingGetBool(const char* section, const char* key, bool fallback);
void LUserSettingSetString(const char* section, const char* key, const std::string& value);
void LUserSettingDeleteItem(const char* section, const char* key);
void LUserSettingDeleteSection(const char* section);
void LSettingForApplicationSetBool(const char* application, const char* section, const char* key, bool value);
