#include "audiofile/LRecordingRepair.h"

#include <sys/wait.h>
#include <unistd.h>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LAifFile.h"
#include "audiofile/LWaveFile.h"

namespace {

class LRecordingRepairTest : public AudioFileTest {
 protected:
  // Writes two blocks of 300 frames in another process, which dies without a chance to tidy up.
  void Kill(LSoundSink (*open)(const std::string& path), const std::string& name) const {
    const pid_t child = ::fork();
    if (child == 0) {
      static int samples[600];
      for (int& s : samples) s = 0x4000;
      const LSoundSink sink = open(Path(name));
      sink.Write(samples, 300);
      sink.Write(samples, 300);
      ::kill(::getpid(), SIGKILL);
    }
    ::waitpid(child, nullptr, 0);
  }
};

LSoundSink Wave16(const std::string& p) { return LWaveFile::OpenSinkPCM(p, 44100, 2, 16, 0); }
LSoundSink WaveMuLaw(const std::string& p) { return LWaveFile::OpenSinkG711(p, 44100, 2, 7, 0); }
LSoundSink Aiff24(const std::string& p) { return LAifFile::OpenAIFFSink(p, 44100, 2, 24, afftPcm); }
LSoundSink AifcSowt(const std::string& p) { return LAifFile::OpenAIFFSink(p, 44100, 2, 16, afftSowt); }

TEST_F(LRecordingRepairTest, AKilledRecordingPlaysToItsLastBlock) {
  for (auto* open : {Wave16, WaveMuLaw, Aiff24, AifcSowt}) {
    Kill(open, "x");
    const bool wave = Bytes("x")[0] == 'R';
    const LSoundSource source = wave ? LWaveFile::OpenSource(Path("x")) : LAifFile::OpenSource(Path("x"));
    ASSERT_TRUE(source.IsOk());
    ASSERT_EQ(source.GetEndSample(), 600);
    EXPECT_FALSE(source.IsStreaming());
    EXPECT_NEAR(ReadWhole(source).back(), 0x4000, 0x200);
    LFile::Remove(Path("x"));
  }
}

TEST_F(LRecordingRepairTest, FinishesOurDeadRecordingsAndTouchesNothingElse) {
  Kill(Wave16, "2026-11-21 20-15-00.wav");
  Kill(Aiff24, "2026-11-21 20-15-00-1.aiff");
  Kill(Wave16, "2026-11-21 20-15-00 b.wav");  // not a name of ours
  Kill(Wave16, "Song.wav");
  Put("2026-11-21 20-15-01.wav", Bytes("Song.wav").replace(34, 2, Le(12, 2)));    // bits we never write
  Put("2026-11-21 20-15-02.wav", Bytes("Song.wav").replace(4, 4, Le(12345, 4)));  // another program's
  Put("2026-11-21 20-15-03.aif", "FORM");
  const LSoundSink growing = Wave16(Path("2026-11-21 20-15-04.wav"));
  Wave16(Path("2026-11-21 20-15-05.wav")).Close();
  const auto before = LFile::NamesInFolder(folder_);
  std::vector<std::string> contents;
  contents.reserve(before.size());
  for (const std::string& name : before) contents.push_back(Bytes(name));

  const std::vector<std::string> finished = RepairUnfinishedRecordings(folder_);
  EXPECT_EQ(finished, (std::vector<std::string>{"2026-11-21 20-15-00-1.aiff", "2026-11-21 20-15-00.wav"}));
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool ours = std::count(finished.begin(), finished.end(), before[i]) > 0;
    EXPECT_EQ(Bytes(before[i]) != contents[i], ours) << before[i];
  }
  EXPECT_EQ(Bytes(finished[1]).substr(0, 46),
            Bytes("2026-11-21 20-15-05.wav").replace(4, 4, Le(2400 + 38, 4)).replace(42, 4, Le(2400, 4)));
  if (HasTools()) {
    EXPECT_EQ(Output("soxi -s '" + finished[0] + "'"), "600");
    EXPECT_EQ(Output("soxi -s '" + finished[1] + "'"), "600");
  }
  EXPECT_TRUE(RepairUnfinishedRecordings(folder_).empty());
  EXPECT_TRUE(RepairUnfinishedRecordings(Path("missing")).empty());
}

}  // namespace
