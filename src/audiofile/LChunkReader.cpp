#include "audiofile/LChunkReader.h"

#include "audiofile/LHeaderBytes.h"

std::optional<LChunk> LChunkReader::Find(const char* id) {
  for (int passed = 0; passed < kMaxPassedOver; ++passed) {
    unsigned char header[8];
    if (file_.ReadAt(header, sizeof header, at_) != sizeof header) break;
    const std::uint32_t length = order_ == Little ? GetLe32(header + 4) : GetBe32(header + 4);
    const LChunk chunk{at_ + 8, length};
    at_ = chunk.start + std::int64_t{length} + (length & 1);
    if (IsId(header, id)) return chunk;
    if (length > 0x7fffffff) break;
  }
  return std::nullopt;
}
