#include "FuzzFile.h"
#include "audiofile/LWaveFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzRead(LWaveFile::OpenSource(FuzzFile(bytes, size)));
  return 0;
}
