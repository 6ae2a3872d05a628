// The bytes of an MPEG file between the tags in front and behind, read ahead in large blocks.
// Units    bytes; offsets from the start of the file
// Threads  one thread at a time; after construction no allocation, one system call a block
// Failure  a file that ends earlier than it did when it was opened, or cannot be read, ends there; sizes in tags that
//          reach over its end are not believed
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "foundation/LFile.h"

class LMP3ReadFile {
 public:
  static constexpr int kBlockBytes = 65536;
  static constexpr int kMaxPeekBytes = 4096;

  explicit LMP3ReadFile(const std::string& path);

  bool IsOpen() const { return file_.IsOpen(); }
  std::int64_t AudioStart() const { return audioStart_; }
  std::int64_t AudioEnd() const { return audioEnd_; }
  std::int64_t Position() const { return position_; }
  void Seek(std::int64_t offset) { position_ = offset; }

  // The bytes at an offset, null where not all of `count` are there; valid until the next call. count <= kMaxPeekBytes.
  const unsigned char* PeekAt(std::int64_t offset, int count);
  // How many bytes lie ready at the position, more being read if there are none; 0 at the end.
  int Peek(const unsigned char*& bytes);

 private:
  void SkipTagsInFront();
  void SkipTagsBehind();
  bool Fill(std::int64_t offset);

  LFileHandle file_;
  std::unique_ptr<unsigned char[]> block_;
  std::int64_t blockStart_ = 0;  // offset in the file
  int blockBytes_ = 0;           // valid
  std::int64_t audioStart_ = 0, audioEnd_ = 0, position_ = 0;
};

// The bytes of an ID3v2 tag that begins here, 0 if none does. `bytes` has kId3HeaderBytes.
inline constexpr int kId3HeaderBytes = 10;
std::int64_t LId3TagBytes(const unsigned char* bytes);
