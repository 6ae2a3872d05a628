#include "TagsFuzz.h"
#include "audiofile/tags/LFlacTags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzTags(bytes, size, ReadTagsFLAC);
  return 0;
}
