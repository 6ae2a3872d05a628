#include "FuzzFile.h"
#include "audiofile/mp3/LMP3File.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string path = FuzzFile(bytes, size);
  for (const bool fullScan : {false, true}) FuzzRead(LMP3File::OpenSource(path, fullScan));
  return 0;
}
