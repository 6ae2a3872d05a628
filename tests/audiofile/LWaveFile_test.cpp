#include "audiofile/LWaveFile.h"

#include <sys/resource.h>

#include <csignal>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LAifFile.h"
#include "support/AllocationGuard.h"

namespace {

class LWaveFileTest : public AudioFileTest {};

std::string Chunk(const std::string& id, const std::string& content) {
  return id + Le(content.size(), 4) + content + std::string(content.size() & 1, '\0');
}
std::string Fmt(int tag, int channels, int rate, int bits, const std::string& more = "") {
  return Chunk("fmt ", Le(unsigned(tag), 2) + Le(unsigned(channels), 2) + Le(unsigned(rate), 4) + "junk??" +
                           Le(unsigned(bits), 2) + more);
}
std::string Riff(const std::string& chunks) { return "RIFF" + Le(4 + chunks.size(), 4) + "WAVE" + chunks; }
std::string Extra(int bytes) { return std::string(std::size_t(bytes), '\0'); }
std::string Guid(int tag) {
  return Le(22, 2) + Extra(6) + Le(unsigned(tag), 2) + std::string("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
}

const std::string kData = Chunk("data", Le(0x1234, 2) + Le(0x8000, 2));  // 4660, -32768
const std::string kFmt16 = Fmt(1, 1, 44100, 16);

struct HeaderRow {
  std::string bytes;
  LSoundError error;
  int frames = 2, first = 0x12340;
};

TEST_F(LWaveFileTest, HeadersOpenOrAreRefusedWithTheirReason) {
  const std::string alaw = Chunk("data", "\x55\xD5");  // the two values next to zero
  std::string chunks64;
  for (int i = 0; i < 64; ++i) chunks64 += Chunk("JUNK", "12345");
  const HeaderRow rows[] = {
      {Riff(kFmt16 + kData), lseNone},
      {Riff(Chunk("JUNK", "odd") + kFmt16 + Chunk("LIST", "x") + kData), lseNone},
      {Chunk("ID3x", "before the form") + Riff(kFmt16 + kData), lseNone},
      {Chunk("ID3x", "") + Riff(kFmt16 + kData), lseDamaged},
      {chunks64 + Riff(kFmt16 + kData), lseNone},
      {chunks64 + Chunk("JUNK", "12345") + Riff(kFmt16 + kData), lseDamaged},
      {Riff(Fmt(1, 1, 44100, 16, Extra(1)) + kData), lseNone},
      {Riff(Fmt(1, 1, 44100, 16, Extra(8192 - 16)) + kData), lseNone},
      {Riff(Fmt(1, 1, 44100, 16, Extra(8193 - 16)) + kData), lseDamaged},
      {Riff(Chunk("fmt ", Extra(15)) + kData), lseDamaged},
      {Riff(Fmt(1, 1, 196000, 16) + kData), lseNone},
      {Riff(Fmt(1, 1, 196001, 16) + kData), lseDamaged},
      {Riff(Fmt(1, 1, 0, 16) + kData), lseDamaged},
      {Riff(Fmt(1, 255, 44100, 16) + kData), lseNone, 0},
      {Riff(Fmt(1, 256, 44100, 16) + kData), lseDamaged},
      {Riff(Fmt(1, 0, 44100, 16) + kData), lseDamaged},
      {Riff(Fmt(0xFFFE, 1, 44100, 16, Guid(1)) + kData), lseNone},
      {Riff(Fmt(0xFFFE, 1, 44100, 8, Guid(6)) + alaw), lseNone, 2, -128},
      {Riff(Fmt(0xFFFE, 1, 44100, 16, Guid(9)) + kData), lseCodecMissing},
      {Riff(Fmt(0xFFFE, 1, 44100, 16) + kData), lseCodecMissing},
      {Riff(Fmt(1, 1, 44100, 0) + kData), lseNone, 4, (0x34 - 128) * 4096},
      {Riff(Fmt(3, 1, 44100, 16) + kData), lseDamaged},
      {Riff(Fmt(2, 1, 44100, 4) + kData), lseCodecMissing},
      {Riff(Fmt(34, 1, 8000, 1) + kData), lseLaterStage},
      {Riff(Fmt(69, 1, 8000, 4) + kData), lseLaterStage},
      {Riff(Fmt(85, 1, 44100, 0) + kData), lseDamaged},                 // no frame of MPEG is in it
      {Riff(kFmt16 + "junk" + Le(0xFFFFFFFF, 4) + kData), lseDamaged},  // rounded up it would be 0
      {Riff(kFmt16), lseDamaged},
      {Riff(kData + kFmt16), lseDamaged},
      {"", lseDamaged},
      {"no sound at all, but some text", lseDamaged},
      {Riff(kFmt16 + "data" + Le(0xFFFFFFD9, 4) + Le(0x1234, 2) + Le(5, 2)), lseNone},  // its writer died
      {Riff(kFmt16 + "data" + Le(1000, 4) + Le(0x1234, 2) + Le(5, 2)), lseNone, 500},   // cut off
  };
  for (const HeaderRow& row : rows) {
    SCOPED_TRACE(&row - rows);
    const LSoundSource source = LWaveFile::OpenSource(Put("a.wav", row.bytes));
    ASSERT_EQ(source.GetError(), row.error);
    if (row.error != lseNone) continue;
    EXPECT_EQ(source.GetEndSample(), row.frames);
    EXPECT_FALSE(source.IsStreaming());
    if (row.frames == 0) continue;
    EXPECT_EQ(ReadFrames(source, 1)[0], row.first);
  }
}

TEST_F(LWaveFileTest, DoublesLie16BytesApart) {
  std::string data;
  for (const double value : {0.5, 9.0, -0.25, 9.0, 2.0, 9.0}) {
    unsigned long long bits;
    std::memcpy(&bits, &value, 8);
    data += Le(bits, 8);
  }
  const LSoundSource source = LWaveFile::OpenSource(Put("a.wav", Riff(Fmt(3, 1, 44100, 64) + Chunk("data", data))));
  EXPECT_EQ(ReadWhole(source), (std::vector<int>{262136, -131068, 1048544}));  // times 524272
}

TEST_F(LWaveFileTest, ReadsSilenceAroundTheDataAndCountsOn) {
  std::string data;
  for (int i = 1; i <= 20000; ++i) data += Le(unsigned(i), 2);
  const std::string path = Put("a.wav", Riff(kFmt16 + Chunk("data", data)));
  LSoundSource source = LWaveFile::OpenSource(path);
  EXPECT_EQ(source.GetPeak(), 0x7fff0);
  source.Seek(-2);
  EXPECT_EQ(source.GetPositionSample(), -2);
  AllocationGuard guard;
  int samples[20010];
  source.Read(samples, 20005);  // more than two blocks at once
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(samples[1], 0);
  EXPECT_EQ(samples[2], 16);
  EXPECT_EQ(samples[20001], 320000);
  EXPECT_EQ(samples[20002], 0);
  EXPECT_EQ(source.GetPositionSample(), 20003);
  source.Seek(kEndless - 1);
  source.Read(samples, 10);
  EXPECT_EQ(source.GetPositionSample(), kEndless);

  source.Seek(100);
  std::filesystem::resize_file(path, std::filesystem::file_size(path) - 2 * 19899);  // 101 frames are left
  EXPECT_EQ(ReadFrames(source, 3), (std::vector<int>{101 * 16, 0, 0}));
  EXPECT_EQ(source.GetPositionSample(), 103);
  EXPECT_EQ(source.GetEndSample(), 20000);
}

TEST_F(LWaveFileTest, AGrowingFileIsFollowedToItsEnd) {
  const std::vector<int> block(200, 16);
  LSoundSink sink = LWaveFile::OpenSinkPCM(Path("a.wav"), 44100, 2, 16, 0);
  sink.Write(block.data(), 100);
  const LSoundSource source = LWaveFile::OpenSource(Path("a.wav"));
  EXPECT_TRUE(source.IsStreaming());
  EXPECT_EQ(source.GetEndSample(), 100);
  auto samples = ReadFrames(source, 150);
  EXPECT_EQ(samples[199], 16);
  EXPECT_EQ(samples[299], 0);
  EXPECT_EQ(source.GetPositionSample(), 100);
  sink.Write(block.data(), 50);
  EXPECT_EQ(source.GetEndSample(), 150);
  EXPECT_EQ(ReadFrames(source, 50)[99], 16);
  sink.Close();
  EXPECT_EQ(source.GetEndSample(), 150);
  EXPECT_FALSE(source.IsStreaming());
  source.Read(samples.data(), 10);
  EXPECT_EQ(source.GetPositionSample(), 160);
}

TEST_F(LWaveFileTest, ASinkIsARewindableTape) {
  const std::vector<int> ones(40, 16), twos(40, 32);
  {
    const LSoundSink sink = LWaveFile::OpenSinkPCM(Path("a.wav"), 8000, 1, 16, 0);
    sink.Write(ones.data(), 10);
    sink.Seek(11);
    EXPECT_EQ(sink.GetPositionSample(), 10);
    sink.Seek(4);
    EXPECT_EQ(LFile::Size(Path("a.wav")), 46u + 8u);
  }
  EXPECT_EQ(Bytes("a.wav").substr(40), "ta" + Le(8, 4) + Le(1, 2) + Le(1, 2) + Le(1, 2) + Le(1, 2));
  LWaveFile::OpenSinkPCM(Path("a.wav"), 8000, 1, 16, 3).Write(twos.data(), 2);
  EXPECT_EQ(ReadWhole(LWaveFile::OpenSource(Path("a.wav"))), (std::vector<int>{16, 16, 16, 32, 32}));
  LWaveFile::OpenSinkPCM(Path("a.wav"), 8000, 1, 16, 1000).Write(ones.data(), 1);  // behind the last one
  EXPECT_EQ(ReadWhole(LWaveFile::OpenSource(Path("a.wav"))), (std::vector<int>{16, 16, 16, 32, 32, 16}));
  LWaveFile::OpenSinkPCM(Path("a.wav"), 8000, 1, 16, -5).Close();
  EXPECT_EQ(LFile::Size(Path("a.wav")), 46u);
}

// Byte by byte: two frames of stereo are written, the file is looked at before and after the sink is closed.
TEST_F(LWaveFileTest, HeadersAreExact) {
  const int samples[] = {16, 32, 48, -16};
  const std::string pcm = "fmt " + Le(18, 4) + Le(1, 2) + Le(2, 2) + Le(44100, 4) + Le(176400, 4) + Le(4, 2) +
                          Le(16, 2) + Le(0, 2) + "data";
  const std::string data16 = Le(1, 2) + Le(2, 2) + Le(3, 2) + Le(0xFFFF, 2);
  const std::string g711 = "RIFF" + Le(4 + 50, 4) + "WAVEfmt " + Le(18, 4) + Le(7, 2) + Le(2, 2) + Le(8000, 4) +
                           Le(8000, 4) + Le(8, 2) + Le(8, 2) + Le(0, 2) + "fact" + Le(4, 4) + Le(2, 4) + "data" +
                           Le(4, 4);
  const std::string aiff = "COMM" + Be(18, 4) + Be(2, 2);
  const std::string rate = Be(0x400E, 2) + Be(0xAC44, 2) + Be(0, 6);  // 44100 = 0xAC44
  const std::string aifc = "FORM" + Be(22 + 10 + 12 + 36, 4) + "AIFCFVER" + Be(4, 4) + Be(0xA2805140, 4) + "COMM" +
                           Be(32, 4) + Be(2, 2) + Be(2, 4) + Be(16, 2) + rate +
                           "alaw\x08"
                           "ALaw 2:1" +
                           Be(0, 1) + "SSND" + Be(12, 4) + Be(0, 8);
  struct {
    LSoundSink sink;
    std::string open, closed;
    std::size_t dataBytes;
  } rows[] = {
      {LWaveFile::OpenSinkPCM(Path("0"), 44100, 2, 16, 0),
       "RIFF" + Le(0xFFFFFFFF, 4) + "WAVE" + pcm + Le(0xFFFFFFD9, 4), "RIFF" + Le(8 + 38, 4) + "WAVE" + pcm + Le(8, 4),
       8},
      {LWaveFile::OpenSinkG711(Path("1"), 8000, 2, 7, 0), g711, g711, 4},
      {LAifFile::OpenAIFFSink(Path("2"), 44100, 2, 16, afftPcm),
       "FORM" + Be(46, 4) + "AIFF" + aiff + Be(0, 4) + Be(16, 2) + rate + "SSND" + Be(0xFFFFFFFF, 4) + Be(0, 8),
       "FORM" + Be(8 + 46, 4) + "AIFF" + aiff + Be(2, 4) + Be(16, 2) + rate + "SSND" + Be(16, 4) + Be(0, 8), 8},
      {LAifFile::OpenAIFFSink(Path("3"), 44100, 2, 8, afftALaw), aifc, aifc, 4},
  };
  for (auto& row : rows) {
    const std::string name = std::to_string(&row - rows);
    SCOPED_TRACE(name);
    row.sink.Write(samples, 2);
    EXPECT_EQ(Bytes(name).substr(0, row.open.size()), row.open);
    row.sink.Close();
    EXPECT_EQ(Bytes(name).substr(0, row.closed.size()), row.closed);
    EXPECT_EQ(Bytes(name).size(), row.closed.size() + row.dataBytes);
  }
  EXPECT_EQ(Bytes("0").substr(46), data16);
}

TEST_F(LWaveFileTest, RatesOfAiffFilesAreExtendedNumbers) {
  const struct {
    unsigned exponent, mantissa;
    int rate;                                                                                      // 0: refused
  } rows[] = {{0x400E, 0xAC440000, 44100}, {0x400E, 0xAC438000, 44100},                            // 44099.5
              {0x400B, 0xFA000000, 8000},  {0x4010, 0xBF680000, 196000}, {0x4010, 0xBF690000, 0},  // 196002
              {0x3FFF, 0x80000000, 1},     {0x3FFE, 0xFFFFFFFF, 0},                                // a shift of 32
              {0x40FF, 0xFFFFFFFF, 2},                                                             // of 31
              {0x401F, 0x80000000, 0}};
  for (const auto& row : rows) {
    const std::string common = Be(1, 2) + Be(2, 4) + Be(16, 2) + Be(row.exponent, 2) + Be(row.mantissa, 4) + Be(0, 4);
    const std::string form = "AIFFCOMM" + Be(18, 4) + common + "SSND" + Be(12, 4) + Be(0, 8) + Be(0x12345678, 4);
    const LSoundSource source = LAifFile::OpenSource(Put("a.aif", "FORM" + Be(form.size(), 4) + form));
    EXPECT_EQ(source.IsOk() ? source.GetSampleRate() : 0, row.rate) << std::hex << row.exponent << row.mantissa;
  }
}

TEST_F(LWaveFileTest, AFileThatShrinksOrGoesWhileItPlaysIsSilent) {
  const std::vector<int> samples(40000, 1600);
  LWaveFile::OpenSinkPCM(Path("a.wav"), 44100, 2, 16, 0).Write(samples.data(), 20000);
  const LSoundSource source = LWaveFile::OpenSource(Path("a.wav"));
  EXPECT_EQ(ReadFrames(source, 100)[199], 1600);
  std::filesystem::resize_file(Path("a.wav"), 46 + 4 * 150);
  const auto shrunk = ReadFrames(source, 100);
  EXPECT_EQ(shrunk[99], 1600);
  EXPECT_EQ(shrunk[100], 0);
  std::filesystem::resize_file(Path("a.wav"), 0);
  std::filesystem::remove(Path("a.wav"));
  EXPECT_EQ(ReadFrames(source, 100), std::vector<int>(200));
  EXPECT_EQ(source.GetPositionSample(), 300);
  EXPECT_EQ(source.GetEndSample(), 20000);
}

TEST_F(LWaveFileTest, AFullDiskSetsTheErrorBitAndTheFilePlaysAsFarAsItGot) {
  const std::vector<int> block(8192 * 2, 1600);
  ::signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  ::getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small{100001, old.rlim_max};  // in the middle of a frame of the fourth block
  LSoundSink wave = LWaveFile::OpenSinkPCM(Path("a.wav"), 44100, 2, 16, 0);
  LSoundSink aiff = LAifFile::OpenAIFFSink(Path("a.aiff"), 44100, 2, 16, afftPcm);
  ::setrlimit(RLIMIT_FSIZE, &small);
  for (const LSoundSink& sink : {wave, aiff}) {
    for (int i = 0; i < 3; ++i) sink.Write(block.data(), 8192);
    EXPECT_FALSE(sink.HasError());
    sink.Write(block.data(), 8192);
    EXPECT_TRUE(sink.HasError());
  }
  wave.Close();
  aiff.Close();
  ::setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(LFile::Size(Path("a.wav")), 46u + 4 * 24988u);  // no piece of a frame is left
  for (const LSoundSource& source : {LWaveFile::OpenSource(Path("a.wav")), LAifFile::OpenSource(Path("a.aiff"))}) {
    EXPECT_NEAR(source.GetEndSample(), 25000, 16);  // 100001 / 4, but for the header
    EXPECT_EQ(ReadWhole(source).back(), 1600);
  }
  std::filesystem::create_symlink("/dev/full", Path("full.wav"));
  EXPECT_TRUE(LWaveFile::OpenSinkPCM(Path("full.wav"), 44100, 2, 16, 0).HasError());
  EXPECT_TRUE(LWaveFile::OpenSinkPCM(Path("no/such.wav"), 44100, 2, 16, 0).HasError());
}

TEST_F(LWaveFileTest, WritingStopsBeforeLengthsReachTheMarkOfAGrowingFile) {
  const int limit = int(0xFFFFF000 / 4);
  Put("a.wav", "");
  std::filesystem::resize_file(Path("a.wav"), 46 + 4 * (std::uintmax_t(limit) - 5));  // holds no blocks
  const std::vector<int> samples(16, 16);
  {
    const LSoundSink sink = LWaveFile::OpenSinkPCM(Path("a.wav"), 44100, 2, 16, limit);
    sink.Write(samples.data(), 5);
    EXPECT_FALSE(sink.HasError());
    sink.Write(samples.data(), 1);
    EXPECT_TRUE(sink.HasError());
    EXPECT_EQ(sink.GetPositionSample(), limit);
  }
  const LSoundSource source = LWaveFile::OpenSource(Path("a.wav"));
  EXPECT_EQ(source.GetEndSample(), limit);
  source.Seek(limit - 1);
  EXPECT_EQ(ReadFrames(source, 2), (std::vector<int>{16, 16, 0, 0}));
}

TEST_F(LWaveFileTest, ATemporaryFileGoesWithItsLastHandle) {
  const std::string path = Put("a.wav", Riff(kFmt16 + kData));
  LSoundSource source = LWaveFile::OpenSourceDeletingFileWhenClosed(path), other = source;
  EXPECT_EQ(ReadFrames(source, 1)[0], 0x12340);
  source.Close();
  EXPECT_TRUE(LFile::Exists(path));
  other.Close();
  EXPECT_FALSE(LFile::Exists(path));
  EXPECT_EQ(LWaveFile::OpenSourceDeletingFileWhenClosed(Put("b.wav", "x")).GetError(), lseDamaged);
  EXPECT_FALSE(LFile::Exists(Path("b.wav")));
}

}  // namespace
