#include "audiofile/encode/LMp3Sink.h"

#include <sys/resource.h>

#include <cmath>
#include <csignal>

#include "audiofile/AudioFileTest.h"
#include "audiofile/encode/LMp3Encoder.h"
#include "foundation/LComponentFinder.h"
#include "foundation/LPlatform.h"
#include "foundation/TSettings.h"
#include "support/AllocationGuard.h"
#include "support/LTestPlatform.h"

namespace {

LMp3EncodeSettings Constant(int bitRate) {
  LMp3EncodeSettings settings;
  settings.cbrBitRate = std::uint16_t(bitRate);
  return settings;
}
LMp3EncodeSettings Variable(int least, int most) {
  LMp3EncodeSettings settings;
  settings.constantBitRate = false;
  settings.vbrMinBitRate = std::uint16_t(least);
  settings.vbrMaxBitRate = std::uint16_t(most);
  return settings;
}

class Mp3Sink : public AudioFileTest {
 protected:
  // A sine of 1/8 of the rate at half of full scale, in blocks of uneven length.
  static void WriteSine(const LSoundSink& sink, int frames) {
    const int channels = sink.GetChannels();
    std::vector<int> block;
    for (int at = 0, count = 1; at < frames; at += count, count = std::min(count * 5 % 20000 + 1, frames - at)) {
      block.clear();
      for (int i = at; i < at + count; ++i) block.insert(block.end(), std::size_t(channels), Sample(i));
      sink.Write(block.data(), count);
    }
  }
  static int Sample(int frame) { return int(std::lround(262144 * std::sin(M_PI / 4 * frame))); }

  LTestPlatform platform_;
};

TEST_F(Mp3Sink, SettingsComeFromTheStoreForMp3PathsAlone) {
  TSettings::kMp3ConstantBitRate.Set(false);
  TSettings::kMp3CbrBitRate.Set(99999);
  TSettings::kMp3VbrMinBitRate.Set(16);
  TSettings::kMp3VbrMaxBitRate.Set(161);
  TSettings::kMp3ChannelMode.Set(4);
  const LMp3EncodeSettings stored("/a/b.MP3"), other("/a/b.wav");
  EXPECT_FALSE(stored.constantBitRate);
  EXPECT_EQ(stored.cbrBitRate, 320);
  EXPECT_EQ(stored.vbrMinBitRate, 32);  // 16 and 161 have no rate in common
  EXPECT_EQ(stored.GetMode(), LMp3EncodeSettings::Stereo);
  EXPECT_TRUE(other.constantBitRate);
  EXPECT_EQ(other.vbrMinBitRate, 32);
  TSettings::kMp3VbrMaxBitRate.Set(160);
  EXPECT_EQ(LMp3EncodeSettings("x.mp3").vbrMinBitRate, 16);
}

TEST_F(Mp3Sink, TheRateFitsTheBitRate) {
  const struct {
    LMp3EncodeSettings settings;
    int asked, rate;
  } rows[] = {
      {Constant(160), 96000, 44100},   {Constant(160), 48001, 44100},     {Constant(160), 48000, 48000},
      {Constant(160), 47999, 44100},   {Constant(160), 44100, 44100},     {Constant(160), 44099, 44100},
      {Constant(160), 32001, 44100},   {Constant(160), 32000, 32000},     {Constant(160), 24001, 32000},
      {Constant(160), 24000, 24000},   {Constant(160), 23999, 22050},     {Constant(160), 8000, 22050},
      {Constant(128), 11025, 22050},   {Constant(127), 16000, 16000},     {Constant(127), 22049, 22050},
      {Constant(127), 16001, 22050},   {Constant(127), 15999, 11025},     {Constant(127), 11026, 11025},
      {Constant(127), 11024, 11025},   {Constant(127), 8001, 11025},      {Constant(127), 7999, 8000},
      {Constant(127), 1, 8000},        {Constant(192), 8000, 44100},      {Constant(161), 31999, 44100},
      {Constant(161), 32000, 32000},   {Constant(31), 44100, 22050},      {Constant(31), 16000, 16000},
      {Constant(32), 44100, 44100},    {Variable(16, 160), 48000, 22050}, {Variable(32, 320), 8000, 44100},
      {Variable(32, 160), 8000, 8000},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Mp3SampleRate(row.settings, row.asked), row.rate) << row.settings.cbrBitRate << " " << row.asked;
  // Whatever is asked for is one of the nine rates of the format.
  const std::vector<int> nine{8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000};
  for (int bitRate = 8; bitRate <= 320; bitRate += 3)
    for (int asked = 1; asked < 200000; asked += 97)
      for (const auto& settings : {Constant(bitRate), Variable(bitRate / 2, bitRate)})
        ASSERT_EQ(std::count(nine.begin(), nine.end(), Mp3SampleRate(settings, asked)), 1) << bitRate << " " << asked;
  EXPECT_EQ(Mp3Channels(Constant(16), 2), 1);
  EXPECT_EQ(Mp3Channels(Constant(24), 6), 2);
  EXPECT_EQ(Mp3Channels(Constant(320), 1), 1);
}

struct FileRow {
  const char* what;
  LMp3EncodeSettings settings;
  int asked, channels;
  int rate, sinkChannels;
};

TEST_F(Mp3Sink, OtherProgramsReadBackExactlyTheFramesWritten) {
  if (!HasTools() || !Run("lame --version")) GTEST_SKIP() << "sox, ffmpeg or lame is missing";
  auto protectedJoint = Constant(192), downmixed = Constant(96), forced = Constant(256), fast = Variable(64, 192);
  protectedJoint.errorProtection = true;
  protectedJoint.channelMode = LMp3EncodeSettings::JointStereo;
  downmixed.channelMode = LMp3EncodeSettings::Mono;
  forced.channelMode = LMp3EncodeSettings::ForcedJointStereo;
  fast.highQuality = false;
  const FileRow rows[] = {
      {"as it is", LMp3EncodeSettings(), 44100, 2, 44100, 2},
      {"192 joint", protectedJoint, 96000, 2, 44100, 2},
      {"256 forced", forced, 48000, 2, 48000, 2},
      {"downmixed", downmixed, 44100, 2, 44100, 2},
      {"VBR", Variable(32, 320), 44100, 2, 44100, 2},
      {"VBR fast", fast, 32000, 1, 32000, 1},
      {"16 mono", Constant(16), 44100, 2, 22050, 1},
      {"64", Constant(64), 16000, 2, 16000, 2},
  };
  for (const FileRow& row : rows) {
    SCOPED_TRACE(row.what);
    const int frames = 100003;
    {
      const LSoundSink sink = OpenMp3Sink(Path("a.mp3"), row.settings, row.asked, row.channels);
      ASSERT_EQ(sink.GetSampleRate(), row.rate);
      ASSERT_EQ(sink.GetChannels(), row.sinkChannels);
      WriteSine(sink, frames);
      EXPECT_EQ(sink.GetPositionSample(), frames);
      sink.Seek(0);
      EXPECT_EQ(sink.GetPositionSample(), frames);
      EXPECT_FALSE(sink.HasError());
    }
    EXPECT_EQ(Output("ffprobe -v error -show_entries stream=codec_name,sample_rate -of csv=p=0 a.mp3"),
              LText::Format("mp3,%d", row.rate));
    if (row.settings.constantBitRate) {
      EXPECT_NEAR(double(*LFile::Size(Path("a.mp3"))), row.settings.cbrBitRate * 125.0 * frames / row.rate, 4000);
    }
    ASSERT_TRUE(Run("lame --quiet --decode a.mp3 l.wav && sox a.mp3 s.wav")) << Bytes("log");
    ASSERT_TRUE(Run("ffmpeg -v error -xerror -y -i a.mp3 -f s32le out.raw")) << Bytes("log");
    const auto samples = Samples32("out.raw");
    const bool mono = row.sinkChannels == 1 || row.settings.channelMode == LMp3EncodeSettings::Mono;
    const std::size_t step = mono ? 1 : 2;
    if (row.settings.GetMaxBitRate() < 32) {  // its frames are too small for the tag
      EXPECT_NEAR(double(samples.size()), frames, 3 * 1152);
      continue;
    }
    ASSERT_EQ(samples.size(), std::size_t(frames) * step);
    EXPECT_EQ(Output("soxi -s l.wav"), std::to_string(frames));
    // In phase, hardly any noise, and as loud as it was; up to a twentieth less at constant rates below 256.
    double product = 0, power = 0, all = 0;
    for (int i = 4096; i < frames - 4096; ++i) {
      const double is = samples[std::size_t(i) * step], was = Sample(i);
      product += is * was, power += was * was, all += is * is;
    }
    EXPECT_GT(product / power, 0.94);
    EXPECT_LT(product / power, 1.01);
    EXPECT_LT(all - product * product / power, power * (row.settings.constantBitRate ? 1e-4 : 1e-2));
  }
}

TEST_F(Mp3Sink, AFileWhoseWriterDiedPlaysToItsLastBlock) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  const LSoundSink sink = OpenMp3Sink(Path("a.mp3"), {}, 44100, 2);
  std::vector<int> block(2 * 8192, 1000);
  for (int i = 0; i < 20; ++i) sink.Write(block.data(), 8192);
  ASSERT_TRUE(Run("ffmpeg -v error -xerror -y -i a.mp3 -f s32le out.raw")) << Bytes("log");
  EXPECT_GT(Samples32("out.raw").size(), 2u * (20 * 8192 - 4 * 1152));
}

TEST_F(Mp3Sink, WriteAllocatesNothingAfterItsFirstBlock) {
  const LSoundSink sink = OpenMp3Sink(Path("a.mp3"), {}, 44100, 2);
  std::vector<int> block(2 * 8192, 1000);
  sink.Write(block.data(), 8192);
  const AllocationGuard guard;
  for (int i = 0; i < 10; ++i) sink.Write(block.data(), 8192 - i * 700);
  EXPECT_EQ(guard.Count(), 0);
}

TEST_F(Mp3Sink, AFullDiskSetsTheErrorAndKeepsWhatWasWritten) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit before, full;
  ::getrlimit(RLIMIT_FSIZE, &before);
  full = before;
  full.rlim_cur = 50000;
  {
    const LSoundSink sink = OpenMp3Sink(Path("a.mp3"), {}, 44100, 2);
    ::setrlimit(RLIMIT_FSIZE, &full);
    WriteSine(sink, 300000);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(sink.HasError());
    EXPECT_EQ(sink.GetPositionSample(), 300000);
  }
  EXPECT_GT(*LFile::Size(Path("a.mp3")), 40000u);
  EXPECT_LT(*LFile::Size(Path("a.mp3")), 50000u);  // without the half of a block that still fitted
  EXPECT_TRUE(Run("ffmpeg -v error -xerror -y -i a.mp3 -f s32le out.raw")) << Bytes("log");
}

TEST_F(Mp3Sink, APlaceThatCannotBeWrittenGivesAnErrorSink) {
  Put("file", "");
  std::filesystem::create_directory(Path("folder.mp3"));
  for (const std::string& path :
       {Path("none/a.mp3"), Path("file/a.mp3"), std::string("/proc/a.mp3"), Path("folder.mp3")})
    EXPECT_TRUE(OpenMp3Sink(path, {}, 44100, 2).HasError()) << path;
  EXPECT_FALSE(OpenMp3Sink(Path("a.mp3"), {}, 44100, 2).HasError());
  EXPECT_EQ(LFile::NamesInFolder(folder_), (std::vector<std::string>{"a.mp3", "file"}));
}

// The program that a build without the library uses: a script here.
class Mp3Program : public Mp3Sink {
 protected:
  struct Finder final : LComponentFinder {
    std::string path;
    std::string Find(const std::string& name) override { return name == "mp3el2" ? path : ""; }
  };
  Mp3Program() {
    finder_.path = Put("tool", "#!/bin/sh\nfor a in \"$@\"; do out=\"$a\"; done\nexec cat >\"$out\"\n");
    std::filesystem::permissions(finder_.path, std::filesystem::perms::owner_all);
    LPlatformServices services;
    services.components = &finder_;
    LPlatform::Fill(services);
  }
  std::string Command(const LMp3EncodeSettings& settings, int rate, int channels) const {
    std::string line;
    for (const std::string& word : LMp3Encoder("a b.mp3", settings).CreateCommand(rate, channels)) line += word + " ";
    return line.empty() ? "" : line.substr(finder_.path.size() + 1);
  }
  Finder finder_;
};

TEST_F(Mp3Program, IsCalledWithTheSettingsAsItsArguments) {
  auto joint = Constant(128), mono = Constant(128), odd = Variable(40, 200);
  joint.channelMode = LMp3EncodeSettings::JointStereo;
  joint.highQuality = false;
  joint.errorProtection = true;
  mono.channelMode = LMp3EncodeSettings::Mono;
  odd.channelMode = 7;
  EXPECT_EQ(Command({}, 44100, 2), "-m s -b 160 -h -r -x -s 44.100 -S - a b.mp3 ");
  EXPECT_EQ(Command(joint, 22050, 2), "-m j -p -b 128 -r -x -s 22.050 -S - a b.mp3 ");
  EXPECT_EQ(Command(mono, 8000, 2), "-a -m m -b 128 -h -r -x -s 8.000 -S - a b.mp3 ");
  EXPECT_EQ(Command(mono, 8000, 1), "-m m -b 128 -h -r -x -s 8.000 -S - a b.mp3 ");
  EXPECT_EQ(Command(Constant(16), 11025, 2), "-a -m m -b 16 -h -r -x -s 11.025 -S - a b.mp3 ");
  EXPECT_EQ(Command(odd, 48000, 2), "-m s -v -b 40 -B 200 -V 4 -r -x -s 48.000 -S - a b.mp3 ");
  finder_.path.clear();
  EXPECT_EQ(Command({}, 44100, 2), "");
  EXPECT_TRUE(LMp3EncodeSinkPipe(Path("a.mp3"), {}, 44100, 2).HasError());
}

TEST_F(Mp3Program, GetsEverySampleAndIsWaitedFor) {
  const std::string path = Path("it's \"$HOME\" `x`.mp3");
  {
    LMp3EncodeSinkPipe sink(path, {}, 44100, 2);
    std::vector<int> samples;
    for (int i = 0; i < 20000; ++i) samples.insert(samples.end(), {i * 16, -i * 16});
    sink.Write(samples.data(), 20000);
    EXPECT_EQ(sink.GetPositionSample(), 20000);
    EXPECT_FALSE(sink.HasError());
  }
  std::string expected;
  for (unsigned i = 0; i < 20000; ++i) expected += Le(i, 2) + Le(0u - i, 2);
  EXPECT_EQ(LFile::ReadAll(path), expected);
}

TEST_F(Mp3Program, ThatDiesSetsTheError) {
  std::signal(SIGPIPE, SIG_IGN);
  Put("tool", "#!/bin/sh\nexit 3\n");
  LMp3EncodeSinkPipe sink(Path("a.mp3"), {}, 44100, 2);
  const std::vector<int> block(2 * 8192);
  for (int i = 0; i < 100 && !sink.HasError(); ++i) sink.Write(block.data(), 8192);
  EXPECT_TRUE(sink.HasError());
}

}  // namespace
