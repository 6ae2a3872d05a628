// Helper programs, played by scripts that keep to their protocols.
#include <algorithm>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LExternalDecode.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/TGenSourceLadder.h"
#include "audiofile/TSourceOpen.h"
#include "audiofile/ffmpeg/LFFMPEGSourceManager.h"
#include "audiofile/ffmpeg/LSoundDecoder.h"
#include "foundation/LComponentFinder.h"
#include "support/LTestPlatform.h"

namespace {

class ExternalDecoders : public AudioFileTest, private LComponentFinder {
 protected:
  ExternalDecoders() { platform_.SetComponents(this); }
  std::string Find(const std::string& name) override {
    return LFile::Exists(Path("bin-" + name)) ? Path("bin-" + name) : "";
  }
  // A program of that component's name.
  void Install(const std::string& name, const std::string& body, const std::string& interpreter = "/bin/sh") const {
    Put("bin-" + name, "#!" + interpreter + "\n" + body);
    std::filesystem::permissions(Path("bin-" + name), std::filesystem::perms::owner_all);
  }
  std::string Wave(const std::string& name, int frames) const {
    const std::vector<int> samples(std::size_t(frames), 1600);
    LWaveFile::OpenSinkPCM(Path(name), 22050, 1, 16, 0).Write(samples.data(), frames);
    return Path(name);
  }

  LTestPlatform platform_;
};

// Stops the job at its first wait.
class StopAtOnce final : public LProcessInterfaceVoid {
 public:
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef, unsigned) override { return lpwStopped; }
};

TEST_F(ExternalDecoders, AProgramThatIsInstalledComesBeforeTheLibrary) {
  Wave("decoded.wav", 1000);
  // Writes down what it was called with; its second name is the output.
  const std::string log = "for a in \"$@\"; do echo \"[$a]\"; done >>" + Path("calls") + "\n";
  Install("oggdec2", log + "cp " + Path("decoded.wav") + " \"$2\"\n");
  Install("speexdec", log + "exit 1\n");
  Put("a 'b' $c.ogg", "whatever");
  Put("s.spx", "whatever");
  LSoundSource source;
  EXPECT_EQ(TGenSourceOpen(source, Path("a 'b' $c.ogg")), lprDone);
  EXPECT_EQ(source.GetEndSample(), 1000);
  EXPECT_EQ(source.GetSampleRate(), 22050);
  const std::string temporary = LFile::MakePath(platform_.folders.GetTempFolder(), "Temp1.wav");
  EXPECT_EQ(Bytes("calls"), "[-o]\n[" + temporary + "]\n[" + Path("a 'b' $c.ogg") + "]\n");
  // The wave lives as long as its source, its lock only as long as the opening; the next one takes the same name
  // again, or another while it is there.
  EXPECT_FALSE(LFile::Exists(temporary + ".lock"));
  LLockFile held;
  ASSERT_TRUE(held.Lock(temporary + ".lock"));
  LSoundSource second;
  EXPECT_EQ(TGenSourceOpen(second, Path("a 'b' $c.ogg")), lprDone);
  EXPECT_TRUE(LFile::Exists(LFile::MakePath(platform_.folders.GetTempFolder(), "Temp2.wav")));
  source.Close();
  second.Close();
  EXPECT_EQ(LFile::NamesInFolder(platform_.folders.GetTempFolder()).size(), 1u);  // the lock held here
  EXPECT_EQ(TGenSourceOpen(source, Path("s.spx")), lprFailed);
}

TEST_F(ExternalDecoders, CopiesAndStopsLeaveNothing) {
  Install("aacdec2", "echo \"$4\" >" + Path("name") + "; cp \"$4\" \"$3\"\n");
  const std::string longName = std::string(190, 'n') + ".aac";
  std::filesystem::copy_file(Wave("w.wav", 50), Path(longName));
  LProcessInterfaceVoid process;
  LCmdLineConvertToWav job{Path(longName), Path("out.wav")};
  EXPECT_EQ(Process(process, job), lprDone);
  EXPECT_EQ(LWaveFile::OpenSource(Path("out.wav")).GetEndSample(), 50);
  const std::string copy(LText::Trim(Bytes("name")));
  EXPECT_NE(copy, Path(longName));
  EXPECT_FALSE(LFile::Exists(copy));

  Install("qcpdec", "cp " + Path("w.wav") + " \"${1%.qcp}.wav\"\n");
  Put("speech.qcp", "whatever");
  LSoundSource source;
  EXPECT_EQ(TGenSourceOpen(source, Path("speech.qcp")), lprDone);
  EXPECT_EQ(source.GetEndSample(), 50);
  source.Close();

  Install("amrdec2", "cat " + Path("w.wav") + " >\"$2\"\n");
  Put("a.amr", "#!AMR\n");
  EXPECT_EQ(TGenSourceOpen(source, Path("a.amr")), lprDone);
  EXPECT_EQ(source.GetSampleRate(), 8000);
  EXPECT_EQ(source.GetEndSample(), int(Bytes("w.wav").size() / 2));
  source.Close();

  Install("flaccodec", "sleep 100\n");
  Put("f.flac", "whatever");
  StopAtOnce stop;
  LGenSourceOpenInterfaceProcess interface(stop);
  EXPECT_EQ(ProcessGenSourceOpenSource(source, Path("f.flac"), interface, true, ""), lprStopped);
  EXPECT_TRUE(LFile::NamesInFolder(platform_.folders.GetTempFolder()).empty());
  LCmdLineConvertToWav none{Put("x.mpc", "x"), Path("out.wav")};
  EXPECT_EQ(Process(process, none), lprFailed);
}

constexpr const char* kEcho = R"(
import sys, struct
def need(n):
    data = sys.stdin.buffer.read(n)
    if len(data) < n: sys.exit(0)
    return data
while True:
    packet = need(struct.unpack('>I', need(4))[0])
    out = packet + packet
    sys.stdout.buffer.write(struct.pack('>I', len(out)) + out)
    sys.stdout.buffer.flush()
)";
constexpr const char* kAmr = R"(
import sys
assert sys.argv[1:] == ['-x', '-', '-']
assert sys.stdin.buffer.read(6) == b'#!AMR\n'
sizes = [13, 14, 16, 18, 20, 21, 27, 32, 6] + [1] * 7
while True:
    head = sys.stdin.buffer.read(1)
    if not head: break
    sys.stdin.buffer.read(sizes[head[0] >> 3 & 15] - 1)
    sys.stdout.buffer.write(bytes([head[0], 0]) * 160)
    sys.stdout.buffer.flush()
)";

TEST_F(ExternalDecoders, PipeDecodersKeepToTheirProtocol) {
  const std::string python(LText::Trim(Output("which python3")));
  if (python.empty()) GTEST_SKIP() << "python3 is missing";
  Install("aacdec3", kEcho, python);
  Install("amrdec2", kAmr, python);
  bool failed = true;
  std::vector<short> out(4000);
  LAACDecoder aac(Find("aacdec3"), 48000, 2, failed);
  ASSERT_FALSE(failed);
  for (int round = 0; round < 2; ++round) {
    const unsigned char packet[] = {1, 2, 3, 4};
    ASSERT_TRUE(aac.WriteSoundPacket(packet, 4));
    EXPECT_EQ(aac.ReadSound(out.data(), 4000), 4);
    EXPECT_EQ(out[0], 0x0201);
    EXPECT_EQ(out[3], 0x0403);
    EXPECT_EQ(aac.ReadSound(out.data(), 4000), 0);
    aac.Restart();
  }
  const std::vector<unsigned char> large(3000);
  ASSERT_TRUE(aac.WriteSoundPacket(large.data(), 3000));
  EXPECT_EQ(aac.ReadSound(out.data(), 100), 0);  // more than there is room for: the program is ended
  EXPECT_FALSE(aac.WriteSoundPacket(large.data(), 3000));

  LAMRDecoder amr(Find("amrdec2"), failed);
  ASSERT_FALSE(failed);
  std::string frames(13 + 32, '\0');
  frames[0] = 0 << 3;
  frames[13] = 7 << 3;
  ASSERT_TRUE(amr.WriteSoundPacket(reinterpret_cast<const unsigned char*>(frames.data()), frames.size()));
  EXPECT_EQ(amr.ReadSound(out.data(), 4000), 160);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(amr.ReadSound(out.data(), 4000), 160);
  EXPECT_EQ(out[159], 7 << 3);
  EXPECT_EQ(amr.ReadSound(out.data(), 4000), 0);

  LAC3Decoder missing(Path("nothing"), 48000, 2, failed);
  EXPECT_TRUE(failed);
  Install("a52dec3", "exit 0\n");
  LAC3Decoder gone(Find("a52dec3"), 48000, 2, failed);
  for (int i = 0; i < 1000 && gone.WriteSoundPacket(large.data(), 3000); ++i)
    EXPECT_EQ(gone.ReadSound(out.data(), 1), 0);

  const unsigned char stereo44100[] = {0x12, 0x10}, reserved[] = {0x17, 0x80};
  EXPECT_EQ(LAACDecoder::RateOfExtraData(stereo44100, 2), 44100);
  EXPECT_EQ(LAACDecoder::RateOfExtraData(stereo44100, 1), 0);
  EXPECT_EQ(LAACDecoder::RateOfExtraData(reserved, 2), 0);
}

TEST_F(ExternalDecoders, SoundStandsAtTheTimeItsPacketsSay) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(
      Run("sox -n -r 44100 -b 16 tone.wav synth 1 sine 441 && ffmpeg -v error -f lavfi -i testsrc=d=4:s=64x48 "
          "-itsoffset 2 -i tone.wav -map 0:v -map 1:a -c:v mpeg4 -c:a flac late.mkv"))
      << Bytes("log");
  LSoundSource source;
  ASSERT_EQ(TGenSourceOpen(source, Path("late.mkv")), lprDone);
  EXPECT_NEAR(source.GetEndSample(), 3 * 44100, 100);
  const auto samples = ReadWhole(source);
  const auto first = std::find_if(samples.begin(), samples.end(), [](int s) { return s != 0; }) - samples.begin();
  EXPECT_NEAR(double(first), 2 * 44100, 100);

  const auto manager = std::make_shared<LFFMPEGSourceManager>();
  ASSERT_TRUE(manager->Open(Path("late.mkv")));
  EXPECT_EQ(manager->GetSoundStreamIndex(-1, true), 1);
  EXPECT_EQ(manager->GetSoundStreamIndex(0, true), 1);
  EXPECT_EQ(manager->GetSoundStreamIndex(3, true), 1);
  EXPECT_EQ(manager->GetSoundStreamIndex(3, false), -1);
  LSoundSource direct = LFFMPEGSourceManagerBase::GetSoundSource(manager, -1, true);
  ASSERT_TRUE(direct.IsOk() && manager->Init());
  EXPECT_GT(direct.GetEndSample(), 40000);
  ReadFrames(direct, 500);
  EXPECT_EQ(direct.GetPositionSample(), 500);
  direct.Seek(12345);
  EXPECT_EQ(direct.GetPositionSample(), 0);
}

TEST_F(ExternalDecoders, ABucketOwesWhatWasReadTooEarly) {
  LSoundBucket bucket;
  std::vector<int> out(10, 99);
  const int first[] = {1, 2, 3}, second[] = {4, 5, 6, 7, 8};
  EXPECT_EQ(bucket.Put(first, 3), 3);
  bucket.Read(out.data(), 5);
  EXPECT_EQ(std::vector<int>(out.begin(), out.begin() + 5), (std::vector<int>{1, 2, 3, 0, 0}));
  EXPECT_EQ(bucket.Put(second, 5), 5);  // 4 and 5 were due when there was nothing
  EXPECT_EQ(bucket.Held(), 3);
  bucket.Read(out.data(), 3);
  EXPECT_EQ(std::vector<int>(out.begin(), out.begin() + 3), (std::vector<int>{6, 7, 8}));
  std::vector<int> much(LSoundBucket::kCapacity + 5, 1);
  for (int round = 0; round < 3; ++round) {  // around the ring's end
    EXPECT_EQ(bucket.Put(much.data(), LSoundBucket::kCapacity + 5), LSoundBucket::kCapacity);
    EXPECT_EQ(bucket.Put(nullptr, 1), 0);
    bucket.Read(much.data(), LSoundBucket::kCapacity);
    EXPECT_EQ(std::count(much.begin(), much.end() - 5, 1), LSoundBucket::kCapacity);
    bucket.Put(nullptr, 1000);
    bucket.Read(out.data(), 10);
    EXPECT_EQ(out[9], 0);
    bucket.Read(much.data(), 990);
    std::fill(much.begin(), much.end(), 1);
  }
}

// Files of the library's types with bytes changed: whatever comes out, it ends.
TEST_F(ExternalDecoders, DamagedFilesDoNoHarm) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(Run("sox -n -r 8000 -b 16 in.wav synth 0.5 pinknoise"));
  for (const std::string name : {"a.flac", "a.ogg", "a.m4a", "a.wma", "a.mkv", "a.aac", "a.caf"}) {
    ASSERT_TRUE(Run("ffmpeg -v error -y -i in.wav " + name)) << Bytes("log");
    const std::string good = Bytes(name);
    unsigned random = 1;
    for (int round = 0; round < 25; ++round) {
      std::string bytes = good;
      for (int i = 0; i < 8; ++i) {
        random = random * 1664525U + 1013904223U;
        bytes[(random >> 8) % (round % 2 ? bytes.size() : std::min<std::size_t>(bytes.size(), 300))] = char(random);
      }
      if (round % 5 == 0) bytes.resize(bytes.size() / 2);
      LSoundSource source;
      TGenSourceOpen(source, Put("x" + LFile::ExtensionFromPath(name), bytes));
      ASSERT_LT(source.GetEndSample() / source.GetSampleRate(), 3600) << name << " " << round;
    }
  }
  EXPECT_TRUE(LFile::NamesInFolder(platform_.folders.GetTempFolder()).empty());
}

}  // namespace
