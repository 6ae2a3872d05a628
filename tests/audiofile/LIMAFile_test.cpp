#include "audiofile/LIMAFile.h"

#include "audiofile/LWaveFile.h"
#include "audiofile/SeekCheck.h"

namespace {

class LIMAFileTest : public AudioFileTest {};

std::string Wave(int channels, int blockAlign, const std::string& data, const std::string& fact = "",
                 unsigned length = 0) {
  const std::string format = Le(17, 2) + Le(unsigned(channels), 2) + Le(8000, 4) + Le(0, 4) +
                             Le(unsigned(blockAlign), 2) + Le(4, 2) + Le(2, 2) + Le(1, 2);
  return "RIFF" + Le(0, 4) + "WAVEfmt " + Le(format.size(), 4) + format + fact + "data" +
         Le(length ? length : data.size(), 4) + data;
}

// Two frames of a channel at the smallest width 7: the codes 7 and F move by 7/8 + 7 + 7/2 + 7/4, each cut, so 0 + 7 + 3
// + 1 = 11; the second at the width of step 8, 16, by 2 + 16 + 8 + 4 = 30 back.
const std::string kStart = Le(100, 2) + Le(0, 2);
const std::string kGroup = "\xF7" + std::string("\x08\x08\x08", 3);

TEST_F(LIMAFileTest, SamplesAreWorkedOutByTheLaw) {
  const LSoundSource source = LWaveFile::OpenSource(Put("a.wav", Wave(1, 8, kStart + kGroup)));
  ASSERT_EQ(source.GetEndSample(), 9);
  const std::vector<int> samples = ReadWhole(source);
  EXPECT_EQ(samples[0], 100 * 16);
  EXPECT_EQ(samples[1], 111 * 16);
  EXPECT_EQ(samples[2], 81 * 16);
}

TEST_F(LIMAFileTest, LengthsComeFromTheBlocksAndTheFact) {
  const std::string block = kStart + kGroup;
  const auto fact = [](unsigned frames) { return "fact" + Le(4, 4) + Le(frames, 4); };
  const struct {
    std::string bytes;
    LSoundError error;
    int frames;
  } rows[] = {
      {Wave(1, 8, block + block), lseNone, 18},
      {Wave(1, 8, block + block, fact(12)), lseNone, 12},
      {Wave(1, 8, block + block, fact(1000000)), lseNone, 18},
      {Wave(1, 8, block + kStart), lseNone, 10},          // a last block with nothing but its start
      {Wave(1, 8, block + "abc"), lseNone, 9},            // and one that has not even that
      {Wave(1, 11, block + "xyz" + block), lseNone, 18},  // bytes that make no group
      {Wave(2, 8, block), lseNone, 1},
      {Wave(2, 7, block), lseDamaged, 0},
      {Wave(1, 0, block), lseDamaged, 0},
      {Wave(1, 65535, block), lseNone, 9},
      {Wave(1, 8, block, "", 8000), lseNone, 9000},  // cut off: silence
      {Wave(1, 8, block, "", 0xFFFFFFFF), lseNone, 9},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const LSoundSource source = LWaveFile::OpenSource(Put("a.wav", row.bytes));
    ASSERT_EQ(source.GetError(), row.error);
    EXPECT_EQ(source.GetEndSample(), row.frames);
    if (row.frames > 0) {
      EXPECT_EQ(ReadWhole(source)[0], 1600);
    }
  }
}

// ffmpeg multiplies where the law cuts bit by bit; an error goes on from sample to sample, and ends with its block.
TEST_F(LIMAFileTest, DecodesAsOtherProgramsDo) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(Run("sox -n -r 22050 -c 2 -b 16 in.wav synth 1 pinknoise gain 3")) << Bytes("log");
  for (const std::string command : {"sox in.wav -r 8000 -c 1 -e ima-adpcm a.wav", "sox in.wav -e ima-adpcm a.wav",
                                    "ffmpeg -y -v error -i in.wav -c:a adpcm_ima_wav a.wav"}) {
    SCOPED_TRACE(command);
    ASSERT_TRUE(Run(command + " && sox -D a.wav -t s32 sox.raw && ffmpeg -y -v error -i a.wav -f s32le ffmpeg.raw"));
    const LSoundSource source = LWaveFile::OpenSource(Path("a.wav"));
    const std::vector<int> whole = ReadWhole(source);
    std::vector<int> sox = Samples32("sox.raw"), ffmpeg = Samples32("ffmpeg.raw");
    ASSERT_GE(sox.size(), whole.size());  // it fills the last block
    sox.resize(whole.size());
    ffmpeg.resize(whole.size());
    EXPECT_GE(source.GetEndSample(), source.GetSampleRate());
    EXPECT_EQ(LargestDifference(whole, sox), 0);
    EXPECT_LE(LargestDifference(whole, ffmpeg), 64 * 16);
    CheckSeeks(source, whole);
  }
}

}  // namespace
