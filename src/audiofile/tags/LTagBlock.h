// A stretch of a file, or bytes in memory, that cannot be left: whatever a tag says of lengths, a part of it is never
// larger than it, and a read gives what there is.
// Units    bytes; positions count from the block's start, in 64 bits
// Threads  [any]; observes the file or the bytes, which outlive it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/LFile.h"

class LTagBlock {
 public:
  static constexpr int kMaxPieces = 16384;                // frames, chunks, atoms, comments: files in use have dozens
  static constexpr std::int64_t kMaxTextBytes = 1 << 20;  // of one field
  static constexpr std::int64_t kMaxPictureBytes = 16 << 20;

  LTagBlock() = default;
  explicit LTagBlock(LFileHandle& file);  // all of it
  explicit LTagBlock(std::string_view bytes) : bytes_(bytes.data()), size_(std::int64_t(bytes.size())) {}

  std::int64_t GetSize() const { return size_; }
  LTagBlock Part(std::int64_t at, std::int64_t size = INT64_MAX) const;
  bool Has(std::int64_t at, std::int64_t size) const {
    return at >= 0 && at <= size_ && size >= 0 && size <= size_ - at;
  }

  bool Get(void* out, std::size_t count, std::int64_t at) const;  // false: not all of it is there
  std::string Read(std::int64_t maxBytes = kMaxTextBytes) const;  // from the start

 private:
  LFileHandle* file_ = nullptr;  // null: in memory
  const char* bytes_ = nullptr;
  std::int64_t start_ = 0;
  std::int64_t size_ = 0;
};
