#include "audiofile/LPCDartDecode.h"

#include "audiofile/AudioFileTest.h"
#include "audiofile/LWaveFile.h"

namespace {

class LPCDartDecodeTest : public AudioFileTest {};

class Stoppable final : public LProcessInterfaceNested {
 public:
  Stoppable(LProcessInterface& outer, int asks) : LProcessInterfaceNested(outer), asks_(asks) {}
  bool IsToStop() override { return asks_-- <= 0; }
  void SetStatus(const char* text, int) override { status_ = text; }
  void SetProgress(double progress) override { progress_.push_back(progress); }

  int asks_;
  std::string status_;
  std::vector<double> progress_;
};

TEST_F(LPCDartDecodeTest, PutsAWaveHeaderBeforeTheStream) {
  std::string stream;
  for (int i = 0; i < 40000; ++i) stream += char(i * 7);
  const std::string source = Put("a.dart", std::string(1024, 'h') + stream);
  LProcessInterfaceVoid nobody;
  Stoppable process(nobody, 100);
  LPCDartDecode job{source, Path("a.wav")};
  EXPECT_EQ(Process(process, job), lprDone);
  const std::string header = "RIFF" + Le(41024, 4) + "WAVEfmt " + Le(50, 4) + Le(34, 2) + Le(1, 2) + Le(8000, 4) +
                             Le(1067, 4) + Le(32, 2) + Le(1, 2) + Le(32, 2) + Le(1, 2) + Le(240, 2) +
                             std::string(28, '\0') + "data" + Le(41024 - 78, 4);
  EXPECT_EQ(Bytes("a.wav"), header + stream);
  EXPECT_EQ(LWaveFile::OpenSource(Path("a.wav")).GetError(), lseLaterStage);
  EXPECT_EQ(process.status_, "Dart-Datei wird geladen");
  ASSERT_EQ(process.progress_.size(), 4u);
  EXPECT_EQ(process.progress_[1], 0.1);
  EXPECT_NEAR(process.progress_[3], 0.1 + 2 * 32768.0 / 41024, 1e-12);

  Stoppable stopped(nobody, 2);
  EXPECT_EQ(Process(stopped, job), lprStopped);
  job.source = Path("missing.dart");
  EXPECT_EQ(Process(process, job), lprFailed);
}

}  // namespace
