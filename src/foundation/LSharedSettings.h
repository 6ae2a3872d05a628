// Settings in XML files: one element a section, in it one element a key with its value as the attribute "value". The
// shared store serves all copies of an installation; the hidden one outlives the program's own folders.
// Threads  [any]. A set is one step against other threads and other processes.
// Failure  a get that finds nothing, or no file that can be read, gives the default; a set that cannot write is silent.
//          A set replaces a damaged file, which stays as ".bak".
#pragma once
#include <string>

#include "foundation/LXMLElement.h"

void LXMLSettingGetString(const std::string& file, const char* section, const char* key, const char* fallback,
                          std::string& out);
bool LXMLSettingSetString(const std::string& file, const char* section, const char* key, const std::string& value);

std::string LSharedSettingsPath();
bool LSharedSettingsLoad(LXMLDocument& document);  // false: the document is empty
bool LSharedSettingsSave(const LXMLDocument& document);
void LSharedSettingGetString(const char* section, const char* key, const char* fallback, std::string& out);
bool LSharedSettingSetString(const char* section, const char* key, const std::string& value);

void LUserHiddenSettingGetString(const char* section, const char* key, const char* fallback, std::string& out);
bool LUserHiddenSettingSetString(const char* section, const char* key, const std::string& value);
