// SDF: a tagged tree of chunks in a file, in which a reader keeps what it does not know and a writer puts it back.
// Format   little-endian. File: "lsdf", format version 1 (2 bytes), kind (4), content version (2), then one container
//          with id 0. Chunk: id (2), type (2), length of what follows (8), payload; no padding.
//          container: chunks; bool: 1 byte; int: 4 bytes; others: free bytes.
// Units    lengths and positions in bytes
// Threads  one thread at a time; both ends work in memory, so that a file is read and replaced as a whole.
// Failure  a reader is never led outside its bytes: lengths are cut at the container's end. A writer cannot fail.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum LSDFType : std::uint16_t { lsdfContainer = 0, lsdfBool = 1, lsdfInt = 2 };
inline constexpr int kAnyOrder = -1;

struct LSDFChunkInfo {
  std::uint16_t id = 0, type = 0;
  std::size_t start = 0, length = 0;  // of the payload
  std::size_t End() const { return start + length; }
};

// A chunk that its reader did not know. `order` is the number of known chunks that stood before it.
struct LSDFUnknownChunk {
  std::uint16_t id = 0, type = 0;
  int order = 0;
  std::string bytes;
};
using LSDFUnknownChunks = std::vector<LSDFUnknownChunk>;

class LSDFWriter {
 public:
  LSDFWriter(std::uint32_t kind, std::uint16_t contentVersion, const LSDFUnknownChunks& unknown = {});

  // Unknown chunks of the level whose order is below the given one are written first, in their order. Known chunks
  // count from 1.
  void StartChunk(std::uint16_t id, std::uint16_t type, int order);
  void EndChunk();
  void StartContainer(std::uint16_t id, int order, const LSDFUnknownChunks& unknown = {});
  void EndContainer();  // with the unknown chunks that are left
  void WriteBool(std::uint16_t id, bool value, int order);
  void WriteInt(std::uint16_t id, int value, int order);
  std::string Finish();  // ends the root; the whole file

 private:
  struct Level {
    std::size_t start = 0;
    LSDFUnknownChunks unknown = {};
    std::size_t nextUnknown = 0;
  };
  template <class Number>
  void Put(Number value, std::size_t at);
  template <class Number>
  void Append(Number value);
  void Push(std::uint16_t id, std::uint16_t type);
  void WriteUnknownBefore(int order);

  std::string bytes_;
  std::vector<Level> open_;
};

enum class LSDFOpen { Good, NotThisFormat, OtherKind };

class LSDFReader {
 public:
  LSDFOpen Open(std::string_view bytes, std::uint32_t kind);  // the bytes outlive the reader
  std::uint16_t GetContentVersion() const { return contentVersion_; }
  const LSDFChunkInfo& Root() const { return root_; }
  std::string_view Payload(const LSDFChunkInfo& chunk) const { return bytes_.substr(chunk.start, chunk.length); }
  bool ReadHeader(std::size_t at, std::size_t end,
                  LSDFChunkInfo& chunk) const;    // false: no whole header before the end
  int ReadInt(const LSDFChunkInfo& chunk) const;  // bytes that are missing count as 0
  bool ReadBool(const LSDFChunkInfo& chunk) const { return chunk.length > 0 && bytes_[chunk.start] != 0; }

 private:
  std::string_view bytes_;
  std::uint16_t contentVersion_ = 0;
  LSDFChunkInfo root_;
};

// Walks the chunks of a container. What it steps over without a word from its user is no longer there.
class LSDFReaderChunkIterator {
 public:
  static constexpr int kDeepest = 32;  // levels; what lies deeper is not entered

  explicit LSDFReaderChunkIterator(const LSDFReader& reader) : LSDFReaderChunkIterator(reader, reader.Root(), 0) {}
  LSDFReaderChunkIterator Inside() const { return {reader_, chunk_, depth_ + 1}; }  // of the present chunk

  bool IsValid() const { return valid_; }
  bool Next();
  const LSDFChunkInfo* operator->() const { return &chunk_; }
  int Int() const { return reader_.ReadInt(chunk_); }
  bool Bool() const { return reader_.ReadBool(chunk_); }

  void CountKnown() { ++known_; }
  void KeepUnknown(LSDFUnknownChunks& unknown) const;

 private:
  LSDFReaderChunkIterator(const LSDFReader& reader, const LSDFChunkInfo& container, int depth);

  const LSDFReader& reader_;
  LSDFChunkInfo chunk_;
  std::size_t end_;
  int depth_;
  int known_ = 0;
  bool valid_ = false;
};
