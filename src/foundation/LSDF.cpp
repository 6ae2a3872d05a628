#include "foundation/LSDF.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::string_view kMagic = "lsdf";
constexpr std::uint16_t kFormatVersion = 1;
constexpr std::size_t kFileHeader = 12, kChunkHeader = 12;
constexpr int kLast = std::numeric_limits<int>::max();

std::uint64_t ReadNumber(std::string_view bytes, std::size_t at, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value |= std::uint64_t(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  return value;
}

}  // namespace

// Writing

LSDFWriter::LSDFWriter(std::uint32_t kind, std::uint16_t contentVersion, const LSDFUnknownChunks& unknown) {
  bytes_ = kMagic;
  Append(kFormatVersion);
  Append(kind);
  Append(contentVersion);
  StartContainer(0, kAnyOrder, unknown);
}

template <class Number>
void LSDFWriter::Put(Number value, std::size_t at) {
  for (std::size_t i = 0; i < sizeof value; ++i) bytes_[at + i] = char(std::uint64_t(value) >> (8 * i));
}

template <class Number>
void LSDFWriter::Append(Number value) {
  bytes_.resize(bytes_.size() + sizeof value);
  Put(value, bytes_.size() - sizeof value);
}

void LSDFWriter::Push(std::uint16_t id, std::uint16_t type) {
  Append(id);
  Append(type);
  Append(std::uint64_t{0});
  open_.push_back({bytes_.size()});
}

void LSDFWriter::WriteUnknownBefore(int order) {
  if (open_.empty()) return;
  for (;;) {
    Level& level = open_.back();
    if (level.nextUnknown >= level.unknown.size() || level.unknown[level.nextUnknown].order >= order) return;
    const LSDFUnknownChunk& chunk = level.unknown[level.nextUnknown++];
    const std::string payload = chunk.bytes;
    Push(chunk.id, chunk.type);
    bytes_ += payload;
    EndChunk();
  }
}

void LSDFWriter::StartChunk(std::uint16_t id, std::uint16_t type, int order) {
  if (order != kAnyOrder) WriteUnknownBefore(order);
  Push(id, type);
}

void LSDFWriter::EndChunk() {
  const std::size_t start = open_.back().start;
  Put(std::uint64_t(bytes_.size() - start), start - sizeof(std::uint64_t));
  open_.pop_back();
}

void LSDFWriter::StartContainer(std::uint16_t id, int order, const LSDFUnknownChunks& unknown) {
  StartChunk(id, lsdfContainer, order);
  open_.back().unknown = unknown;
}

void LSDFWriter::EndContainer() {
  WriteUnknownBefore(kLast);
  EndChunk();
}

void LSDFWriter::WriteBool(std::uint16_t id, bool value, int order) {
  StartChunk(id, lsdfBool, order);
  Append(std::uint8_t(value));
  EndChunk();
}

void LSDFWriter::WriteInt(std::uint16_t id, int value, int order) {
  StartChunk(id, lsdfInt, order);
  Append(value);
  EndChunk();
}

std::string LSDFWriter::Finish() {
  while (!open_.empty()) EndContainer();
  return std::move(bytes_);
}

// Reading

LSDFOpen LSDFReader::Open(std::string_view bytes, std::uint32_t kind) {
  bytes_ = bytes;
  if (bytes.size() < kFileHeader || bytes.substr(0, kMagic.size()) != kMagic ||
      ReadNumber(bytes, 4, 2) != kFormatVersion)
    return LSDFOpen::NotThisFormat;
  if (ReadNumber(bytes, 6, 4) != kind) return LSDFOpen::OtherKind;
  contentVersion_ = std::uint16_t(ReadNumber(bytes, 10, 2));
  const bool whole = ReadHeader(kFileHeader, bytes.size(), root_);
  return whole && root_.id == 0 && root_.type == lsdfContainer ? LSDFOpen::Good : LSDFOpen::NotThisFormat;
}

bool LSDFReader::ReadHeader(std::size_t at, std::size_t end, LSDFChunkInfo& chunk) const {
  if (at > end || end - at < kChunkHeader) return false;
  chunk.id = std::uint16_t(ReadNumber(bytes_, at, 2));
  chunk.type = std::uint16_t(ReadNumber(bytes_, at + 2, 2));
  chunk.start = at + kChunkHeader;
  chunk.length = std::size_t(std::min<std::uint64_t>(ReadNumber(bytes_, at + 4, 8), end - chunk.start));
  return true;
}

int LSDFReader::ReadInt(const LSDFChunkInfo& chunk) const {
  return int(std::uint32_t(ReadNumber(bytes_, chunk.start, std::min<std::size_t>(chunk.length, sizeof(int)))));
}

LSDFReaderChunkIterator::LSDFReaderChunkIterator(const LSDFReader& reader, const LSDFChunkInfo& container, int depth)
    : reader_(reader), end_(container.End()), depth_(depth) {
  if (container.type != lsdfContainer || depth > kDeepest) return;
  valid_ = reader.ReadHeader(container.start, end_, chunk_);
}

bool LSDFReaderChunkIterator::Next() {
  if (valid_) valid_ = reader_.ReadHeader(chunk_.End(), end_, chunk_);
  return valid_;
}

void LSDFReaderChunkIterator::KeepUnknown(LSDFUnknownChunks& unknown) const {
  unknown.push_back({chunk_.id, chunk_.type, known_, std::string(reader_.Payload(chunk_))});
}
