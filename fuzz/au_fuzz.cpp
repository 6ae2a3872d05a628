#include "FuzzFile.h"
#include "audiofile/LAuFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzRead(LAuFile::OpenSource(FuzzFile(bytes, size)));
  return 0;
}
