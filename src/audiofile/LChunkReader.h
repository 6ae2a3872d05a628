// Walks the chunks of a RIFF or IFF file: four letters, a length, the content, padded to even.
// Units    bytes from the file's start, in 64 bits, so that no length of a damaged file can turn around
// Threads  [any]
// Failure  the end of the file, a chunk to pass over of 2 GiB or more, or too many of them end the walk.
#pragma once
#include <cstdint>
#include <optional>

#include "foundation/LFile.h"

struct LChunk {
  std::int64_t start;    // of the content
  std::uint32_t length;  // as the file says
};

class LChunkReader {
 public:
  enum Order { Little, Big };
  static constexpr int kMaxPassedOver = 16384;  // files in use have a few dozen

  LChunkReader(LFileHandle& file, Order order, std::int64_t at) : file_(file), order_(order), at_(at) {}
  std::optional<LChunk> Find(const char* id);  // the next one of this name, behind the last one found

 private:
  LFileHandle& file_;  // outlives this
  Order order_;
  std::int64_t at_;  // the next chunk's header
};
