#include "TagsFuzz.h"
#include "audiofile/tags/LRiffTags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  for (const auto read : {ReadTagsCART, ReadTagsBWF, ReadTagsWAV}) FuzzTags(bytes, size, read);
  return 0;
}
