#include "TagsFuzz.h"
#include "audiofile/tags/LOggTags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzTags(bytes, size, ReadTagsOGG);
  return 0;
}
