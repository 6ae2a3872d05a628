#include "foundation/LSDF.h"

#include <gtest/gtest.h>

namespace {

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes += char(value);
  return bytes;
}

// A file with known ints 1, 2 and 3, each at its order, and what unknown chunks it is given.
std::string FileWith(const LSDFUnknownChunks& unknown) {
  LSDFWriter writer(12, 16, unknown);
  for (int i = 1; i <= 3; ++i) writer.WriteInt(std::uint16_t(i), -i, i);
  return writer.Finish();
}

}  // namespace

TEST(LSDF, WritesItsFormatToTheByte) {
  EXPECT_EQ(LSDFWriter(11, 16).Finish(),
            "lsdf" + Bytes({1, 0, 11, 0, 0, 0, 16, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  LSDFWriter writer(12, 0x1234);
  writer.StartContainer(4096, 1);
  writer.WriteBool(8192, true, 1);
  writer.EndContainer();
  writer.WriteInt(3, -2, 2);
  EXPECT_EQ(writer.Finish(),
            "lsdf" + Bytes({1,  0, 12, 0,  0, 0, 0x34, 0x12, 0, 0, 0, 0, 41, 0, 0, 0,    0,    0,    0,   0, 0,
                            16, 0, 0,  13, 0, 0, 0,    0,    0, 0, 0, 0, 32, 1, 0, 1,    0,    0,    0,   0, 0,
                            0,  0, 1,  3,  0, 2, 0,    4,    0, 0, 0, 0, 0,  0, 0, 0xfe, 0xff, 0xff, 0xff}));
}

TEST(LSDF, PutsUnknownChunksBackWhereTheyStood) {
  const std::string first =
      FileWith({{77, 9, 0, "at the front"}, {78, 0, 2, ""}, {79, 2, 2, "xyz"}, {80, 5, 3, "at the end"}});
  LSDFReader reader;
  ASSERT_EQ(reader.Open(first, 12), LSDFOpen::Good);
  EXPECT_EQ(reader.GetContentVersion(), 16);
  LSDFUnknownChunks unknown;
  int sum = 0;
  for (LSDFReaderChunkIterator chunk(reader); chunk.IsValid(); chunk.Next()) {
    if (chunk->id > 3) {
      chunk.KeepUnknown(unknown);
      continue;
    }
    sum += chunk.Int();
    chunk.CountKnown();
  }
  EXPECT_EQ(sum, -6);
  EXPECT_EQ(FileWith(unknown), first);
}

TEST(LSDF, StaysInsideAFileThatLies) {
  LSDFReader reader;
  EXPECT_EQ(reader.Open("", 12), LSDFOpen::NotThisFormat);
  EXPECT_EQ(reader.Open("RIFF and then some", 12), LSDFOpen::NotThisFormat);
  const std::string good = FileWith({});
  EXPECT_EQ(reader.Open(good, 11), LSDFOpen::OtherKind);
  EXPECT_EQ(reader.Open(good.substr(0, 20), 12), LSDFOpen::NotThisFormat);
  std::string longChunk = good;
  for (int i = 0; i < 8; ++i) longChunk[std::size_t(28 + i)] = char(0xff);  // the first int's length
  ASSERT_EQ(reader.Open(longChunk, 12), LSDFOpen::Good);
  LSDFReaderChunkIterator chunk(reader);
  EXPECT_EQ(chunk->End(), longChunk.size());
  EXPECT_EQ(chunk.Int(), -1);
  EXPECT_FALSE(chunk.Next());
  const std::string cut = good.substr(0, good.size() - 3);  // an int of one byte
  ASSERT_EQ(reader.Open(cut, 12), LSDFOpen::Good);
  LSDFReaderChunkIterator last(reader);
  last.Next();
  EXPECT_TRUE(last.Next());
  EXPECT_EQ(last.Int(), 0xfd);
  std::string deep;  // containers within containers
  LSDFWriter writer(12, 16);
  for (int i = 0; i < 100; ++i) writer.StartContainer(1, 1);
  deep = writer.Finish();
  ASSERT_EQ(reader.Open(deep, 12), LSDFOpen::Good);
  LSDFReaderChunkIterator inside(reader);
  int levels = 0;
  const auto descend = [&](auto& self, const LSDFReaderChunkIterator& level) -> void {
    if (!level.IsValid()) return;
    ++levels;
    self(self, level.Inside());
  };
  descend(descend, inside);
  EXPECT_EQ(levels, LSDFReaderChunkIterator::kDeepest + 1);
}
