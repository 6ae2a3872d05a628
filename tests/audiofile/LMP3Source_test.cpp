// Files of an encoder from end to end: length, samples, places, damage.
#include "audiofile/mp3/LMP3Source.h"

#include <unistd.h>

#include <random>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LMP3OtherDecoder.h"
#include "audiofile/mp3/LMP3File.h"
#include "support/AllocationGuard.h"

namespace {

class LMP3SourceTest : public AudioFileTest {
 protected:
  bool HasEncoder() const { return Run("lame --version && sox --version"); }
  // Noise with a tone that comes and goes, so that every frame is different.
  std::string Encode(const std::string& name, int rate, int channels, int frames, const std::string& options) const {
    const std::string format = " -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " ";
    EXPECT_TRUE(Run("sox -R" + format + "-n " + "-b 16 in.wav synth " + std::to_string(frames) +
                    "s sine 300-3000 synth pinknoise mix tremolo 3 50 vol 0.6"));
    EXPECT_TRUE(Run("lame --quiet " + options + " in.wav " + name)) << Bytes("log");
    return Path(name);
  }
};

// Any order of seeks and reads gives the samples of one reading from the start.
void CheckPlaces(const LSoundSource& source, const std::vector<int>& whole, int count) {
  const int end = source.GetEndSample(), channels = source.GetChannels();
  std::mt19937 random(7);
  for (int i = 0; i < count; ++i) {
    const int frames = int(random() % 3000);
    int at = int(random() % unsigned(end + 4000)) - 2000;
    if (i % 3 == 0) at = source.GetPositionSample() + int(random() % 4000) - 2000;  // as a hand on the record does
    source.Seek(at);
    ASSERT_EQ(source.GetPositionSample(), at);
    const std::vector<int> samples = ReadFrames(source, frames);
    ASSERT_EQ(source.GetPositionSample(), at + frames);
    for (int k = 0; k < frames * channels; ++k) {
      const int from = at * channels + k;
      const int expected = from >= 0 && from < end * channels ? whole[std::size_t(from)] : 0;
      ASSERT_EQ(samples[std::size_t(k)], expected) << "seek to " << at << ", sample " << k;
    }
  }
}

TEST_F(LMP3SourceTest, GivesBackWhatWentIntoTheEncoderToTheSample) {
  const LMP3OtherDecoder other;
  if (!HasEncoder() || !other.IsThere()) GTEST_SKIP() << "lame, sox or libmpg123 is missing";
  struct Case {
    int rate, channels, frames;
    const char* options;
  };
  constexpr Case kCases[] = {
      {44100, 2, 100000, "-b 128"},
      {44100, 2, 100001, "-b 160 -m s"},
      {44100, 2, 90007, "-V2"},
      {44100, 1, 60000, "-V5"},
      {48000, 2, 48000, "-b 320"},
      {32000, 2, 33333, "--abr 110"},
      {24000, 2, 40000, "-b 64"},
      {22050, 1, 22050, "-b 64"},
      {16000, 2, 20000, "-V4"},
      {12000, 1, 12345, "-b 32"},
      {11025, 2, 30000, "-b 32"},
      {8000, 1, 16001, "-b 24"},
      {8000, 2, 9000, "-V6"},
      {44100, 2, 1, "-b 128"},
      {44100, 2, 1152, "-V0"},
      {44100, 2, 70000, "-b 128 -p"},
      {44100, 2, 70000, "-b 112 --nores"},
  };
  for (const Case& c : kCases) {
    const auto name = ::testing::Message() << c.rate << " Hz, " << c.options;
    const std::string path = Encode("out.mp3", c.rate, c.channels, c.frames, c.options);
    for (const bool fullScan : {false, true}) {
      const LSoundSource source = LMP3File::OpenSource(path, fullScan);
      ASSERT_EQ(source.GetError(), lseNone) << name;
      EXPECT_EQ(source.GetSampleRate(), c.rate) << name;
      EXPECT_EQ(source.GetChannels(), c.channels) << name;
      EXPECT_EQ(source.GetPeak(), kPeakHeadroom);
      EXPECT_EQ(source.GetPositionSample(), 0);
      ASSERT_EQ(source.GetEndSample(), c.frames) << name;
      const std::vector<int> samples = ReadWhole(source);
      EXPECT_EQ(ReadFrames(source, 500), std::vector<int>(std::size_t(500 * c.channels), 0)) << "past the end";
      EXPECT_EQ(source.GetEndSample(), c.frames) << name;

      const std::vector<float> reference = other.Decode(path, true);
      ASSERT_GE(reference.size() + std::size_t(529 * c.channels), samples.size()) << name;
      double largest = 0;
      for (std::size_t i = 0; i < std::min(samples.size(), reference.size()); ++i)
        largest = std::max(largest, std::fabs(samples[i] / double(kFullScale) - double(reference[i])));
      EXPECT_LT(largest, 5e-6) << name;
    }
  }
}

TEST_F(LMP3SourceTest, GivesTheSameSamplesFromAnyPlace) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  for (const char* const options : {"-b 128", "-V2 -t", "-V2", "--abr 100", "-b 160 -t", "-b 64 --resample 24",
                                    "-b 24 --resample 12 -t", "-b 16 --resample 8 -m m", "-V9 --resample 11.025 -t"}) {
    const std::string path = Encode("out.mp3", 44100, 2, 400000, options);
    LSoundSource source = LMP3File::OpenSource(path, false);
    // Far ahead first, where nothing is known of the file.
    source.Seek(source.GetEndSample() / 2);
    const int middle = source.GetPositionSample();
    const std::vector<int> ahead = ReadFrames(source, 1000);
    source.Seek(0);
    std::vector<int> whole;
    while (source.GetPositionSample() < source.GetEndSample()) {
      const std::vector<int> block = ReadFrames(source, 777);
      whole.insert(whole.end(), block.begin(), block.end());
    }
    const auto from = whole.begin() + std::ptrdiff_t(middle) * source.GetChannels();
    EXPECT_TRUE(std::equal(ahead.begin(), ahead.end(), from)) << options;
    SCOPED_TRACE(options);
    CheckPlaces(source, whole, 150);
    CheckPlaces(LMP3File::OpenSource(path, true), whole, 150);
  }
}

TEST_F(LMP3SourceTest, LearnsTheLengthOfAVariableFileWithoutATag) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  // A start of silence looks like a constant rate, and like a very long file.
  ASSERT_TRUE(Run(
      "sox -R -r 44100 -c 2 -n -b 16 in.wav synth 20 pinknoise vol 0.6 pad 8 0 && lame --quiet -V2 -t in.wav out.mp3"));
  const int frames = 28 * 44100;
  const int exact = (frames + 1105 + 1151) / 1152 * 1152;  // what was put in, with the delays, in whole frames at least
  LSoundSource source = LMP3File::OpenSource(Path("out.mp3"), false);
  const int estimate = source.GetEndSample();
  EXPECT_NE(estimate, exact);
  EXPECT_NEAR(estimate, exact, exact / 3.0);
  int changes = 0;
  for (int last = estimate; source.GetPositionSample() < source.GetEndSample(); last = source.GetEndSample()) {
    ReadFrames(source, 2000);
    changes += source.GetEndSample() != last;
  }
  EXPECT_GT(changes, 10);
  const LSoundSource scanned = LMP3File::OpenSource(Path("out.mp3"), true);
  EXPECT_EQ(source.GetEndSample(), scanned.GetEndSample());
  EXPECT_GE(scanned.GetEndSample(), exact);
  EXPECT_LE(scanned.GetEndSample(), exact + 2 * 1152);
}

TEST_F(LMP3SourceTest, FindsTheSoundAmongOtherBytes) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  std::mt19937 random(3);
  std::string rubbish(1000, ' ');
  for (char& c : rubbish) c = char(random() % 256);
  const std::string tag = "ID3" + std::string("\x04\x00\x00\x00\x00\x07\x68", 7) + std::string(1000, '\xff');
  const std::string overlong = "ID3" + std::string("\x04\x00\x00\x7f\x7f\x7f\x7f", 7) + std::string(50, 'x');
  const std::string riff = "RIFF" + Le(5000000, 4) + "WAVEfmt " + Le(30, 4) + Le(0x55, 2) + Le(2, 2) +
                           std::string(26, '\1') + "data" + Le(4900000, 4);
  const std::string old = "TAG" + std::string(125, ' ');
  const std::string ape = "APETAGEX" + Le(2000, 4) + Le(32, 4) + std::string(12, '\0');
  for (const char* const options : {"-b 128", "-V2", "-b 128 -t", "-V2 -t"}) {
    Encode("out.mp3", 44100, 2, 60000, options);
    const std::string plain = Bytes("out.mp3");
    const LSoundSource reference = LMP3File::OpenSource(Path("out.mp3"), true);
    const std::vector<int> whole = ReadWhole(reference);
    for (const std::string& front :
         {rubbish, tag, tag + tag, tag + rubbish, overlong, riff, std::string(70000, '\xff')})
      for (const std::string& back : {std::string(), old, ape + old}) {
        std::string all = front;
        all.append(plain).append(back);
        const LSoundSource source = LMP3File::OpenSource(Put("more.mp3", all), true);
        ASSERT_EQ(source.GetEndSample(), reference.GetEndSample()) << options << ' ' << front.size();
        EXPECT_TRUE(ReadWhole(source) == whole) << options << ' ' << front.size();
      }
  }
}

TEST_F(LMP3SourceTest, KeepsTimeOverDamage) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  for (const char* const options : {"-b 128 --nores", "-V2 --nores"}) {
    const bool isConstant = options[1] == 'b';
    Encode("out.mp3", 44100, 2, 300000, options);
    const std::string plain = Bytes("out.mp3");
    const std::vector<int> whole = ReadWhole(LMP3File::OpenSource(Path("out.mp3"), true));

    std::string holed = plain;
    holed.replace(plain.size() / 2, 4000, 4000, '\0');
    LSoundSource source = LMP3File::OpenSource(Put("hole.mp3", holed), false);
    EXPECT_EQ(source.GetEndSample(), 300000);
    std::vector<int> damaged = ReadWhole(source);
    const std::size_t quarter = whole.size() / 4;
    EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + std::ptrdiff_t(quarter), damaged.begin())) << options;
    // Frames that are not there count where their number is known.
    if (isConstant) {
      const auto last = std::ptrdiff_t(quarter);
      EXPECT_TRUE(std::equal(whole.end() - last, whole.end(), damaged.end() - last));
    }
    damaged.resize(std::size_t(source.GetEndSample()) * 2);
    CheckPlaces(source, damaged, 60);

    // Cut anywhere, it plays to there.
    for (std::size_t bytes = 0; bytes < plain.size(); bytes += 1 + plain.size() / 40) {
      source = LMP3File::OpenSource(Put("cut.mp3", plain.substr(0, bytes)), bytes % 2 == 0);
      const std::vector<int> cut = ReadFrames(source, 300000);
      EXPECT_LE(source.GetEndSample(), 300000) << bytes;
      if (!source.IsOk()) continue;
      const std::size_t sure = std::size_t(std::max(0, source.GetEndSample() - 2 * 1152 - 529)) * 2;
      EXPECT_TRUE(std::equal(cut.begin(), cut.begin() + std::ptrdiff_t(sure), whole.begin()))
          << options << ' ' << bytes;
    }
    for (int round = 0; round < 30; ++round) {
      std::string spoiled = plain;
      std::mt19937 random{unsigned(round)};
      for (int i = 0; i < 300; ++i) spoiled[random() % spoiled.size()] = char(random() % 256);
      source = LMP3File::OpenSource(Put("spoiled.mp3", spoiled), false);
      ReadFrames(source, 300000);
      source.Seek(source.GetEndSample() / 2);
      ReadFrames(source, 5000);
    }
  }
}

TEST_F(LMP3SourceTest, PlaysFramesOfOneChannelInBoth) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  constexpr int kFrame = 1152, kParts = 40;
  const auto encode = [&](const char* name, int channels) {
    Encode(name, 44100, channels, kFrame * kParts, "-b 128 -t");
    return Bytes(name);
  };
  const std::string stereo = encode("two.mp3", 2), mono = encode("one.mp3", 1);
  const std::vector<int> one = ReadWhole(LMP3File::OpenSource(Path("one.mp3"), true));
  const LSoundSource source = LMP3File::OpenSource(Put("both.mp3", stereo + mono), true);
  ASSERT_EQ(source.GetChannels(), 2);
  source.Seek(LMP3File::OpenSource(Path("two.mp3"), true).GetEndSample() + 3 * kFrame);
  const std::vector<int> both = ReadFrames(source, 20 * kFrame);
  for (std::size_t i = 0; i < both.size(); ++i) ASSERT_EQ(both[i], one[std::size_t(3 * kFrame) + i / 2]) << i;

  const LSoundSource other = LMP3File::OpenSource(Put("other.mp3", mono + stereo), true);
  ASSERT_EQ(other.GetChannels(), 1);
  EXPECT_EQ(other.GetEndSample(), source.GetEndSample());
  EXPECT_TRUE(std::equal(one.begin(), one.end() - 3 * kFrame, ReadWhole(other).begin()));
}

TEST_F(LMP3SourceTest, ReadsWithoutAllocationWhileTheFileShrinks) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  for (const char* const options : {"-b 128", "-V2 -t"}) {
    const std::string path = Encode("out.mp3", 44100, 2, 600000, options);
    LSoundSource source = LMP3File::OpenSource(path, false);
    std::vector<int> block(2 * 4096, 1);
    const AllocationGuard guard;
    for (const int at : {-1000, 500000, 20000, 300000, 10000}) {
      source.Seek(at);
      for (int i = 0; i < 20; ++i) source.Read(block.data(), 4096);
    }
    ASSERT_EQ(::truncate(path.c_str(), 150000), 0);
    source.Seek(400000);
    for (int i = 0; i < 100; ++i) source.Read(block.data(), 4096);
    EXPECT_EQ(guard.Count(), 0);
    EXPECT_EQ(block, std::vector<int>(block.size(), 0));
    EXPECT_EQ(source.GetPositionSample(), 400000 + 100 * 4096);
    source.Seek(kEndless);
    source.Read(block.data(), 4096);
    EXPECT_EQ(source.GetPositionSample(), kEndless);
  }
}

TEST_F(LMP3SourceTest, BelievesATagOnlyWhereItFits) {
  if (!HasEncoder()) GTEST_SKIP() << "lame or sox is missing";
  struct Case {
    const char *options, *id;
    unsigned frames;
    bool isBelieved;
  };
  // 87 frames of 1152 hold 100000 frames of sound with delay and padding.
  constexpr Case kCases[] = {{"-b 128", "Info", 85, true},   {"-b 128", "Info", 70, false},
                             {"-b 128", "Info", 100, false}, {"-V2", "Xing", 80, true},
                             {"-V2", "Xing", 1, false},      {"-V2", "Xing", 0x7fffffff, false}};
  for (const Case& c : kCases) {
    Encode("out.mp3", 44100, 2, 100000, c.options);
    std::string bytes = Bytes("out.mp3");
    const std::size_t tag = bytes.find(c.id);
    ASSERT_NE(tag, std::string::npos);
    ASSERT_EQ(bytes.substr(tag + 8, 4), Be(88, 4));
    bytes.replace(tag + 8, 4, Be(c.frames, 4));
    const LSoundSource source = LMP3File::OpenSource(Put("tag.mp3", bytes), false);
    const int padding = 88 * 1152 - 576 - 100000;
    if (c.isBelieved)
      EXPECT_EQ(source.GetEndSample(), int(c.frames) * 1152 - 576 - padding);
    else
      EXPECT_NEAR(source.GetEndSample(), 100000, 12000) << c.id << ' ' << c.frames;
  }
}

TEST_F(LMP3SourceTest, RefusesWhatIsNoLayerThree) {
  std::mt19937 random(5);
  std::string noise(1 << 20, ' ');
  for (char& c : noise) c = char(random() % 256);
  const auto frames = [](const std::string& header, int bytes, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += header + std::string(std::size_t(bytes) - 4, '\0');
    return all;
  };
  const std::string layerThree = "\xff\xfb\x90\x04", layerTwo = "\xff\xfd\x80\x04", freeFormat("\xff\xfb\x00\x04", 4);
  for (const std::string& bytes :
       {std::string(), std::string("\xff"), std::string(100000, '\xff'), noise, layerThree, frames(layerTwo, 417, 30),
        frames(freeFormat, 500, 30), frames(layerThree, 300, 30)}) {
    const LSoundSource source = LMP3File::OpenSource(Put("no.mp3", bytes), true);
    EXPECT_EQ(source.GetError(), lseDamaged) << bytes.size();
    EXPECT_EQ(source.GetEndSample(), 0);
    EXPECT_EQ(ReadFrames(source, 10), std::vector<int>(std::size_t(10 * source.GetChannels()), 0));
  }
  EXPECT_EQ(LMP3File::OpenSource(Put("yes.mp3", frames(layerThree, 417, 3)), true).GetEndSample(), 3 * 1152);
  EXPECT_EQ(LMP3File::OpenSource(Path("none.mp3"), false).GetError(), lseCannotOpen);
}

}  // namespace
