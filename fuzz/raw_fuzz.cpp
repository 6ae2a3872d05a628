// The first byte chooses the codec, the second the channels; bare GSM frames come here too.
#include "FuzzFile.h"
#include "audiofile/LGSMFile.h"
#include "audiofile/LRawFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 2) return 0;
  const int codec = bytes[0] % 10;
  const std::string path = FuzzFile(bytes + 2, size - 2);
  FuzzRead(codec == 9 ? LGSMFile::OpenSource(path) : LRawFile::OpenSource(path, {8000, bytes[1], codec}));
  return 0;
}
