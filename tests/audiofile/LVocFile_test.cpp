#include "audiofile/LVocFile.h"

#include "audiofile/SeekCheck.h"

namespace {

class LVocFileTest : public AudioFileTest {};

std::string Block(int type, const std::string& content) { return char(type) + Le(content.size(), 3) + content; }
std::string Sound(int timeConstant, int compression, const std::string& samples) {
  return Block(1, Le(unsigned(timeConstant), 1) + Le(unsigned(compression), 1) + samples);
}
std::string Voc(const std::string& blocks, unsigned headerBytes = 26) {
  return "Creative Voice File\x1A" + Le(headerBytes, 2) + Le(0x10A, 2) + Le(0x1129, 2) + blocks + std::string(1, 0);
}
std::string Sound9(unsigned rate, int bits, int channels, int compression, const std::string& samples) {
  return Block(9, Le(rate, 4) + Le(unsigned(bits), 1) + Le(unsigned(channels), 1) + Le(unsigned(compression), 2) +
                      Le(0, 4) + samples);
}
std::string Silence(unsigned value, int timeConstant) { return Block(3, Le(value, 2) + Le(unsigned(timeConstant), 1)); }

constexpr int kUnit8 = 4096;  // of a sample of 8 bits

TEST_F(LVocFileTest, BlocksGiveRateLengthAndSamples) {
  const std::string two = "\x81\x7F";
  const std::vector<int> twoSamples{kUnit8, -kUnit8};
  const auto many = [](const std::string& block, int count) {
    std::string blocks;
    for (int i = 0; i < count; ++i) blocks += block;
    return blocks;
  };
  const struct {
    std::string bytes;
    LSoundError error;
    int rate, channels, frames;
    std::vector<int> first;
  } rows[] = {
      {Voc(Sound(156, 0, two)), lseNone, 10000, 1, 2, twoSamples},
      {Voc("1234" + Sound(156, 0, two), 30), lseNone, 10000, 1, 2, twoSamples},
      {Voc(Sound(156, 0, two)).replace(8, 1, "_").replace(14, 1, "_"), lseNone, 10000, 1, 2, twoSamples},
      {Voc(Sound(156, 0, two) + Block(2, two) + Sound(0, 4, two)),
       lseNone,
       10000,
       1,
       6,
       {kUnit8, -kUnit8, kUnit8, -kUnit8, kUnit8, -kUnit8}},
      {Voc(Silence(2, 156) + Block(4, "mm") + Block(5, "text") + Sound(0, 0, two)),
       lseNone,
       10000,
       1,
       5,
       {0, 0, 0, kUnit8, -kUnit8}},
      {Voc(Block(6, Le(3, 2)) + Sound(156, 0, two) + Block(7, "")), lseNone, 10000, 1, 2, twoSamples},
      // Stereo: 256000000 / ((65536 - 54336) * 2)
      {Voc(Block(8, Le(54336, 2) + Le(0, 1) + Le(1, 1)) + Sound(1, 4, two)), lseNone, 11428, 2, 1, twoSamples},
      {Voc(Sound9(44100, 16, 2, 4, Le(0x1234, 2) + Le(0x8000, 2))), lseNone, 44100, 2, 1, {0x12340, -0x80000}},
      {Voc(Sound9(8000, 8, 1, 6, "\xD5\x55")), lseNone, 8000, 1, 2, {128, -128}},
      {Voc(Sound9(8000, 8, 1, 7, "\x80")), lseNone, 8000, 1, 1, {0x7d7c0}},
      {Voc(many(Sound(156, 0, two), 60)), lseNone, 10000, 1, 98, twoSamples},
      {Voc(many(Silence(65535, 156), 60)), lseNone, 10000, 1, 49 * 65536, {0}},
      {Voc(Sound(156, 0, two)).substr(0, 26 + 7), lseNone, 10000, 1, 2, {kUnit8, 0}},  // cut off
      {Voc(Sound(156, 8192 & 255, two)), lseNone, 10000, 1, 2, twoSamples},            // 8 bits hold no such number
      {Voc(Sound9(8000, 8, 1, 8192, two)), lseCodecMissing, 0, 0, 0, {}},
      {Voc(Sound(156, 5, two)), lseCodecMissing, 0, 0, 0, {}},
      {Voc(Sound9(8000, 4, 3, 1, "abcdef")), lseCodecMissing, 0, 0, 0, {}},
      {Voc(Sound9(0, 8, 1, 0, two)), lseDamaged, 0, 0, 0, {}},
      {Voc(Sound9(8000, 8, 0, 0, two)), lseDamaged, 0, 0, 0, {}},
      {Voc(Sound(255, 0, two)), lseDamaged, 0, 0, 0, {}},  // a million Hz
      {Voc(""), lseDamaged, 0, 0, 0, {}},
      {Voc(Block(2, two)), lseDamaged, 0, 0, 0, {}},
      {"Creative Voice File", lseDamaged, 0, 0, 0, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const LSoundSource source = LVocFile::OpenSource(Put("a.voc", row.bytes));
    ASSERT_EQ(source.GetError(), row.error);
    if (row.error != lseNone) continue;
    EXPECT_EQ(source.GetSampleRate(), row.rate);
    EXPECT_EQ(source.GetChannels(), row.channels);
    EXPECT_EQ(source.GetEndSample(), row.frames);
    std::vector<int> samples = ReadWhole(source);
    samples.resize(std::min(samples.size(), row.first.size()));
    EXPECT_EQ(samples, row.first);
  }
  EXPECT_EQ(LVocFile::OpenSource(Path("missing.voc")).GetError(), lseCannotOpen);
}

// 4 bits: from 128 the code 7 moves by 7 and widens, so the next 1 moves by 2; 0 narrows, F is back by 7 again.
TEST_F(LVocFileTest, AdpcmSamplesAreWorkedOutByTheLaw) {
  const auto read = [this](int compression, const std::string& bytes) {
    std::vector<int> samples = ReadWhole(LVocFile::OpenSource(Put("a.voc", Voc(Sound(156, compression, bytes)))));
    for (int& s : samples) s /= kUnit8;
    return samples;
  };
  EXPECT_EQ(read(1, "\x80\x71\x0F"), (std::vector<int>{0, 7, 9, 9, 2}));
  // 2 bits: 1 moves by 4, then by 8, 16, 32, and narrows with 0.
  EXPECT_EQ(read(3, "\x80\x55\x33"), (std::vector<int>{0, 4, 12, 28, 60, 60, 44, 44, 28}));
  // 2.6 bits, 3 + 3 + 2: 3 moves by 3 and widens; 1 by 2, 3 back by 2; held at -128. Counted as 2 samples a byte.
  EXPECT_EQ(read(2, "\x80\x67" + std::string("\xFF\xFF\xFF\xFF\xFF\xFF", 6)),
            (std::vector<int>{0, 3, 5, 3, -9, -33, -41, -65, -89, -97, -121, -128, -128, -128, -128}));
}

TEST_F(LVocFileTest, DecodesAsOtherProgramsDo) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  // Begins at the middle: ffmpeg does not go on from the plain bytes.
  std::string noise = "\x80\x80";
  for (const int s : Engine::Noise(3, 255, 5000)) noise += char(s);
  const struct {
    std::string bytes;
    int factor;  // what other programs give for full scale is a half in ADPCM
  } rows[] = {
      {Voc(Sound(156, 0, noise)), 1},
      {Voc(Sound(156, 1, noise)), 2},
      {Voc(Sound(156, 2, noise)), 2},
      {Voc(Sound(156, 3, noise)), 2},
      {Voc(Sound9(44100, 16, 2, 4, noise)), 1},
      {Voc(Sound9(8000, 8, 2, 6, noise)), 1},
      {Voc(Block(8, Le(54336, 2) + Le(1, 1) + Le(1, 1)) + Sound(156, 1, noise)), 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    ASSERT_TRUE(Run("rm -f out.raw; ffmpeg -y -v error -i " + Put("a.voc", row.bytes) + " -f s32le out.raw"))
        << Bytes("log");
    const LSoundSource source = LVocFile::OpenSource(Path("a.voc"));
    const std::vector<int> whole = ReadWhole(source);
    std::vector<int> ffmpeg = Samples32("out.raw");
    for (int& s : ffmpeg) s *= row.factor;
    EXPECT_GE(ffmpeg.size() + 1, whole.size());
    ffmpeg.resize(whole.size());
    EXPECT_EQ(LargestDifference(whole, ffmpeg), 0);
    CheckSeeks(source, whole);
  }
  for (const std::string options :
       {"-b 8 -e unsigned -c 1 -r 11025", "-b 16 -c 2 -r 44100", "-e u-law -b 8 -c 1 -r 8000"}) {
    SCOPED_TRACE(options);
    ASSERT_TRUE(Run("sox -n " + options + " a.voc synth 1 pinknoise && sox -D a.voc -t s32 out.raw")) << Bytes("log");
    const LSoundSource source = LVocFile::OpenSource(Path("a.voc"));
    EXPECT_EQ(std::to_string(source.GetSampleRate()), Output("soxi -r a.voc"));
    EXPECT_EQ(LargestDifference(ReadWhole(source), Samples32("out.raw")), 0);
  }
}

}  // namespace
