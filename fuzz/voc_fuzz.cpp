#include "FuzzFile.h"
#include "audiofile/LVocFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzRead(LVocFile::OpenSource(FuzzFile(bytes, size)));
  return 0;
}
