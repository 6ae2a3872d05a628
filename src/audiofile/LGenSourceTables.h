// Which file types are offered, and which helper program serves which of them.
// Units    extensions with their dot; case does not matter
// Threads  [any]
// Failure  an unknown extension gives false, an empty name, a null row.
#pragma once
#include <string>
#include <string_view>
#include <vector>

bool LGenSourceIsSupported(std::string_view extension);
// Types that need an encoder program are offered only where it is installed.
bool LGenSinkIsSupported(std::string_view extension);
const std::vector<const char*>& LGenSourceExtensions();  // each once, in the order of the table

const char* LGenSourceGetComponentName(std::string_view extension);
const char* LGenSinkGetComponentName(std::string_view extension);

// How a decoder program is called: arguments behind its path, "<" standing for the input and ">" for the output.
struct LCommandLineDecode {
  const char* extension;
  const char* arguments[6];  // null: none
};
const LCommandLineDecode* LGetCommandLineDecode(std::string_view extension);
