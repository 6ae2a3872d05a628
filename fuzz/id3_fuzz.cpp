#include "TagsFuzz.h"
#include "audiofile/tags/LID3Tags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzTags(bytes, size, ReadTagsMP3);
  return 0;
}
