#include "audiofile/mp3/LMP3ReadFile.h"

#include <algorithm>
#include <cstring>

#include "audiofile/LHeaderBytes.h"

std::int64_t LId3TagBytes(const unsigned char* bytes) {
  if (std::memcmp(bytes, "ID3", 3) != 0 || bytes[3] == 255 || bytes[4] == 255) return 0;
  constexpr int kHasFooter = 0x10;
  std::int64_t size = 0;
  for (int i = 6; i < kId3HeaderBytes; ++i) {
    if (bytes[i] >= 128) return 0;
    size = size << 7 | bytes[i];
  }
  return size + kId3HeaderBytes + ((bytes[5] & kHasFooter) != 0 ? kId3HeaderBytes : 0);
}

LMP3ReadFile::LMP3ReadFile(const std::string& path) : file_(LFileHandle::OpenRead(path)) {
  if (!file_.IsOpen()) return;
  block_ = std::make_unique<unsigned char[]>(kBlockBytes);
  audioEnd_ = std::max<std::int64_t>(0, file_.Size());
  SkipTagsInFront();
  SkipTagsBehind();
  position_ = audioStart_;
}

void LMP3ReadFile::SkipTagsInFront() {
  while (const unsigned char* const bytes = PeekAt(audioStart_, kId3HeaderBytes)) {
    const std::int64_t size = LId3TagBytes(bytes);
    if (size == 0 || size > audioEnd_ - audioStart_) return;
    audioStart_ += size;
  }
}

void LMP3ReadFile::SkipTagsBehind() {
  constexpr int kTagBytes = 128;
  if (audioEnd_ - audioStart_ >= kTagBytes) {
    const unsigned char* const bytes = PeekAt(audioEnd_ - kTagBytes, kTagBytes);
    if (bytes && std::memcmp(bytes, "TAG", 3) == 0) audioEnd_ -= kTagBytes;
  }
  // An APE tag ends in a footer that tells its size, a header in front of it not counted.
  constexpr int kFooterBytes = 32, kSizeAt = 12, kFlagsAt = 20;
  constexpr std::uint32_t kHasHeader = 0x80000000;
  if (audioEnd_ - audioStart_ < kFooterBytes) return;
  const unsigned char* const footer = PeekAt(audioEnd_ - kFooterBytes, kFooterBytes);
  if (!footer || std::memcmp(footer, "APETAGEX", 8) != 0) return;
  const std::int64_t size =
      std::int64_t{GetLe32(footer + kSizeAt)} + ((GetLe32(footer + kFlagsAt) & kHasHeader) != 0 ? kFooterBytes : 0);
  if (size >= kFooterBytes && size <= audioEnd_ - audioStart_) audioEnd_ -= size;
}

const unsigned char* LMP3ReadFile::PeekAt(std::int64_t offset, int count) {
  if (offset < 0 || offset + count > audioEnd_) return nullptr;
  if (offset < blockStart_ || offset + count > blockStart_ + blockBytes_) {
    // A look ahead keeps what lies between it and the position.
    const bool isNear = offset >= position_ && offset + count - position_ <= kBlockBytes;
    if (!Fill(isNear ? position_ : offset) || offset + count > blockStart_ + blockBytes_) return nullptr;
  }
  return block_.get() + (offset - blockStart_);
}

int LMP3ReadFile::Peek(const unsigned char*& bytes) {
  if (position_ < audioStart_ || position_ >= audioEnd_) return 0;
  if (position_ < blockStart_ || position_ >= blockStart_ + blockBytes_)
    if (!Fill(position_)) return 0;
  bytes = block_.get() + (position_ - blockStart_);
  return int(std::min<std::int64_t>(blockStart_ + blockBytes_, audioEnd_) - position_);
}

bool LMP3ReadFile::Fill(std::int64_t offset) {
  const std::int64_t read = file_.ReadAt(block_.get(), kBlockBytes, offset);
  blockStart_ = offset;
  blockBytes_ = int(std::max<std::int64_t>(0, read));
  return blockBytes_ > 0;
}
