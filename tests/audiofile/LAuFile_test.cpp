#include "audiofile/LAuFile.h"

#include "audiofile/SeekCheck.h"

namespace {

class LAuFileTest : public AudioFileTest {};

std::string Header(unsigned offset, unsigned length, unsigned encoding, unsigned rate, unsigned channels) {
  return ".snd" + Be(offset, 4) + Be(length, 4) + Be(encoding, 4) + Be(rate, 4) + Be(channels, 4);
}

TEST_F(LAuFileTest, HeadersOpenOrAreRefusedWithTheirReason) {
  const std::string samples = Be(0x1234, 2) + Be(0x8000, 2);
  const struct {
    std::string bytes;
    LSoundError error;
    std::vector<int> samples;
    int peak = 0x7fff0;
  } rows[] = {
      {Header(24, 4, 3, 44100, 1) + samples, lseNone, {0x12340, -0x80000}},
      {Header(24, 4, 3, 8000, 2) + samples, lseNone, {0x12340, -0x80000}},
      {Header(28, 4, 3, 44100, 1) + "note" + samples, lseNone, {0x6e6f0, 0x74650}},  // the note is heard
      {Header(24, 0xFFFFFFFF, 3, 44100, 1) + samples + "x", lseNone, {0x12340, -0x80000}},
      {Header(24, 8, 3, 44100, 1) + samples, lseNone, {0x12340, -0x80000, 0, 0}},  // cut off
      {Header(24, 2, 2, 8000, 1) + "\x40\xC0", lseNone, {0x40000, -0x40000}},
      {Header(24, 2, 1, 8000, 1) + "\x80" + std::string(1, 0), lseNone, {0x7d7c0, -0x7d7c0}, 0x7e000},  // +-32124
      {Header(24, 2, 27, 8000, 1) + "\xD5\x55", lseNone, {128, -128}, 0x7e000},
      {Header(24, 4, 4, 44100, 1) + samples, lseCodecMissing, {}},
      {Header(24, 4, 3, 0, 1) + samples, lseDamaged, {}},
      {Header(24, 4, 3, 196001, 1) + samples, lseDamaged, {}},
      {Header(24, 4, 3, 44100, 256) + samples, lseDamaged, {}},
      {Header(24, 4, 3, 44100, 1).substr(0, 23), lseDamaged, {}},
      {"dns." + Header(24, 4, 3, 44100, 1).substr(4) + samples, lseDamaged, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const LSoundSource source = LAuFile::OpenSource(Put("a.au", row.bytes));
    ASSERT_EQ(source.GetError(), row.error);
    if (row.error != lseNone) continue;
    EXPECT_EQ(ReadWhole(source), row.samples);
    EXPECT_EQ(source.GetPeak(), row.peak);
    EXPECT_FALSE(source.IsStreaming());
  }
  EXPECT_EQ(LAuFile::OpenSource(Path("missing.au")).GetError(), lseCannotOpen);
}

TEST_F(LAuFileTest, ReadsWhatOtherProgramsWrite) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  Run("sox -n -r 44100 -c 2 -b 32 -D in.wav synth 0.3 pinknoise");
  for (const std::string codec : {"pcm_mulaw", "pcm_s8", "pcm_s16be", "pcm_alaw"}) {
    SCOPED_TRACE(codec);
    ASSERT_TRUE(
        Run("ffmpeg -y -v error -i in.wav -c:a " + codec + " a.au && ffmpeg -y -v error -i a.au -f s32le b.raw"));
    std::string bytes = Bytes("a.au");  // without the annotation, which would be heard
    const auto offset = std::size_t(static_cast<unsigned char>(bytes[7]));
    bytes.erase(24, offset - 24);
    const LSoundSource source = LAuFile::OpenSource(Put("b.au", bytes));
    const std::vector<int> whole = ReadWhole(source);
    EXPECT_EQ(whole.size(), 13230u * 2);
    EXPECT_EQ(whole, Samples32("b.raw"));
    CheckSeeks(source, whole);
  }
}

}  // namespace
