#include "TagsFuzz.h"
#include "audiofile/tags/LMP4Tags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzTags(bytes, size, ReadTagsM4A);
  return 0;
}
