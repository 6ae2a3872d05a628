#include "FuzzFile.h"
#include "audiofile/LAifFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzRead(LAifFile::OpenSource(FuzzFile(bytes, size)));
  return 0;
}
