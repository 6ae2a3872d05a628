#include <cstdint>

#include "shell/TScript.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::string error;
  TScript::Parse({reinterpret_cast<const char*>(bytes), size}, error);
  return 0;
}
