#include "audiofile/LRawFile.h"

#include "audiofile/SeekCheck.h"

namespace {

class LRawFileTest : public AudioFileTest {};

TEST_F(LRawFileTest, EveryCodecReadsItsBytes) {
  const std::string bytes = "\x12\x80\x34\x56\x3F\x80" + std::string(2, 0);
  Put("a.raw", bytes);
  const struct {
    LRawSettings settings;
    std::vector<int> samples;
    int peak = 0x7fff0;
  } rows[] = {
      {{8000, 1, 1}, {}, 0x7e000},
      {{8000, 1, 2}, {}, 0x7e000},
      {{44100, 1, 3}, {-0x7fee0, 0x56340, -0x7fc10, 0}},  // 0x8012 ...
      {{44100, 2, 4},
       {(0x12 - 128) * 4096, 0, (0x34 - 128) * 4096, (0x56 - 128) * 4096, (0x3F - 128) * 4096, 0, -128 * 4096,
        -128 * 4096}},
      {{44100, 1, 5}, {0x12000, -0x80000, 0x34000, 0x56000, 0x3F000, -0x80000, 0, 0}},
      {{44100, 1, 6}, {0x12800, 0x34560, 0x3F800, 0}},
      {{44100, 1, 7}, {}, 0x1000a8},
      {{44100, 1, 8}, {0, 524272}, 0x1000a8},  // next to nothing, and 1.0
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.settings.codec);
    const LSoundSource source = LRawFile::OpenSource(Path("a.raw"), row.settings);
    ASSERT_TRUE(source.IsOk());
    EXPECT_EQ(source.GetSampleRate(), row.settings.rate);
    EXPECT_EQ(source.GetChannels(), row.settings.channels);
    EXPECT_EQ(source.GetPeak(), row.peak);
    if (!row.samples.empty()) {
      EXPECT_EQ(ReadWhole(source), row.samples);
    }
  }
  for (const auto& [settings, error] : {std::pair<LRawSettings, LSoundError>{{8000, 1, 9}, lseNoSource},
                                        {{8000, 1, -1}, lseNoSource},
                                        {{0, 1, 3}, lseDamaged},
                                        {{8000, 0, 3}, lseDamaged},
                                        {{8000, 256, 0}, lseDamaged}})
    EXPECT_EQ(LRawFile::OpenSource(Path("a.raw"), settings).GetError(), error) << settings.codec;
  EXPECT_EQ(LRawFile::OpenSource(Path("missing"), {}).GetError(), lseCannotOpen);
  EXPECT_EQ(LRawFile::OpenSource(Put("empty.raw", ""), {8000, 1, 0}).GetEndSample(), 0);
  std::filesystem::resize_file(Path("empty.raw"), 0x100000000);  // holds no blocks
  EXPECT_EQ(LRawFile::OpenSource(Path("empty.raw"), {}).GetEndSample(), 0);
}

// The first codes by hand: width 16, the code 7 moves by 15/8 * 16 = 30 and widens by 8 steps to 34; F back by 63.
TEST_F(LRawFileTest, DialogicSamplesAreWorkedOutByTheLaw) {
  const LSoundSource source = LRawFile::OpenSourceADPCM(Put("a.vox", "\x7F"), 6000, 2);
  EXPECT_EQ(source.GetSampleRate(), 6000);
  EXPECT_EQ(source.GetChannels(), 1);
  EXPECT_EQ(source.GetPeak(), 0x200000);
  EXPECT_EQ(ReadWhole(source), (std::vector<int>{30 * 256, (30 - 63) * 256}));
}

TEST_F(LRawFileTest, DialogicIsDecodedAsAnotherProgramDoes) {
  if (!HasTools()) GTEST_SKIP() << "sox is missing";
  ASSERT_TRUE(Run("sox -n -r 8000 -c 1 a.vox synth 8 pinknoise gain -6"));
  std::string noise;  // drives the values against their limits
  for (const int s : Engine::Noise(3, 255, 4000)) noise += char(s);
  Put("b.vox", noise);
  // Where this one holds a value at 12 bits, sox has 15/16 of a step more.
  for (const auto& [name, tolerance] : {std::pair{"a.vox", 0}, {"b.vox", 240}}) {
    ASSERT_TRUE(Run(std::string("sox -D -r 8000 ") + name + " -t s32 sox.raw"));
    const LSoundSource source = LRawFile::OpenSource(Path(name), {8000, 1, 0});
    const std::vector<int> whole = ReadWhole(source);
    EXPECT_EQ(whole.size() * 4, Bytes("sox.raw").size());
    EXPECT_LE(LargestDifference(whole, Samples32("sox.raw")), tolerance);
    CheckSeeks(LRawFile::OpenSource(Path(name), {8000, 1, 0}), whole);  // a fresh one, which has to run ahead first
  }
}

}  // namespace
