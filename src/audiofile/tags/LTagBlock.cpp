#include "audiofile/tags/LTagBlock.h"

#include <algorithm>
#include <cstring>

LTagBlock::LTagBlock(LFileHandle& file) : file_(&file), size_(std::max<std::int64_t>(file.Size(), 0)) {}

LTagBlock LTagBlock::Part(std::int64_t at, std::int64_t size) const {
  LTagBlock part = *this;
  at = std::clamp<std::int64_t>(at, 0, size_);
  part.start_ += at;
  part.size_ = std::clamp<std::int64_t>(size, 0, size_ - at);
  return part;
}

bool LTagBlock::Get(void* out, std::size_t count, std::int64_t at) const {
  if (!Has(at, std::int64_t(count))) return false;
  if (file_) return file_->ReadAt(out, count, start_ + at) == std::int64_t(count);
  if (count > 0) std::memcpy(out, bytes_ + start_ + at, count);
  return true;
}

std::string LTagBlock::Read(std::int64_t maxBytes) const {
  std::string bytes(std::size_t(std::clamp<std::int64_t>(maxBytes, 0, size_)), '\0');
  if (file_) {
    const std::int64_t got = file_->ReadAt(bytes.data(), bytes.size(), start_);
    bytes.resize(std::size_t(std::max<std::int64_t>(got, 0)));
  } else if (!bytes.empty()) {
    std::memcpy(bytes.data(), bytes_ + start_, bytes.size());
  }
  return bytes;
}
