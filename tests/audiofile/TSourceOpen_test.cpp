#include "audiofile/TSourceOpen.h"

#include <sys/stat.h>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LAifFile.h"
#include "audiofile/LGenSourceErrors.h"
#include "audiofile/LWaveFile.h"
#include "support/LTestPlatform.h"

namespace {

class TSourceOpenTest : public AudioFileTest {
 protected:
  LTestPlatform platform_;
};

TEST_F(TSourceOpenTest, WhatCannotBeOpenedSaysWhy) {
  ::mkfifo(Path("pipe.wav").c_str(), 0600);
  std::filesystem::create_directory(Path("folder.wav"));
  const std::string damaged = "Die Datei \"%s\" kann nicht geöffnet werden, da sie beschädigt ist.";
  const std::string cannot =
      "Die Datei \"%s\" kann nicht geöffnet werden. Überprüfen Sie, ob diese existiert und Sie Lesezugriff haben.";
  const std::string other =
      "Datei \"%s\" kann nicht geöffnet werden. Es ist möglich, dass das Dateiformat nicht von diesem Programm "
      "unterstützt wird. Näheres im Handbuch unter \"Dateiformate\".";
  const struct {
    std::string path;
    LSoundError error;
    std::string text;
  } rows[] = {
      {"", lseNoSource, other},
      {Path("missing.wav"), lseCannotOpen, cannot},
      {Path("folder.wav"), lseCannotOpen, cannot},
      {Path("pipe.wav"), lseCannotOpen, cannot},  // without waiting for somebody to write into it
      {Put("empty.aiff", ""), lseDamaged, damaged},
      {Put("text.WAV", "100 %s of this is text"), lseDamaged, damaged},
      {Put("a%s.txt", "text"), lseLaterStage, other},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    LSoundSource source;
    EXPECT_EQ(TGenSourceOpen(source, row.path), lprFailed);
    EXPECT_FALSE(TSourceOpenWithConvert(source, row.path));
    EXPECT_EQ(source.GetError(), row.error);
    const auto place = row.text.find("%s");
    EXPECT_EQ(GenSourceErrorText(source.GetError(), row.path),
              row.text.substr(0, place) + row.path + row.text.substr(place + 2));
  }
}

TEST_F(TSourceOpenTest, DecksGetStereoAt44100) {
  const std::vector<int> samples(48000, 16);
  LAifFile::OpenAIFFSink(Path("a.AIF"), 48000, 1, 16, afftPcm).Write(samples.data(), 48000);
  LSoundSource source;
  ASSERT_TRUE(TSourceOpenWithConvert(source, Path("a.AIF")));
  EXPECT_EQ(source.GetSampleRate(), 44100);
  EXPECT_EQ(source.GetChannels(), 2);
  EXPECT_NEAR(source.GetEndSample(), 44100, 1);
}

// Every cut and every changed byte of valid files: whatever comes out, it opens or has an error, and it reads.
TEST_F(TSourceOpenTest, DamagedFilesDoNoHarm) {
  const std::vector<int> samples(16, 16);
  LWaveFile::OpenSinkPCM(Path("0.wav"), 44100, 2, 24, 0).Write(samples.data(), 8);
  LWaveFile::OpenSinkG711(Path("1.wav"), 44100, 2, 7, 0).Write(samples.data(), 8);
  LAifFile::OpenAIFFSink(Path("2.aif"), 44100, 2, 32, afftPcm).Write(samples.data(), 8);
  LAifFile::OpenAIFFSink(Path("3.aifc"), 44100, 2, 8, afftMuLaw).Write(samples.data(), 8);
  for (const std::string name : {"0.wav", "1.wav", "2.aif", "3.aifc"}) {
    const std::string good = Bytes(name);
    ASSERT_GT(good.size(), 70u);
    std::vector<std::string> variants;
    for (std::size_t at = 0; at < good.size(); ++at) {
      variants.push_back(good.substr(0, at));
      for (const int flip : {0x01, 0x80, 0xFF})
        variants.push_back(std::string(good).replace(at, 1, 1, char(good[at] ^ flip)));
    }
    for (const std::string& bytes : variants) {
      LSoundSource source =
          name[2] == 'w' ? LWaveFile::OpenSource(Put("x.wav", bytes)) : LAifFile::OpenSource(Put("x.aif", bytes));
      const int end = source.GetEndSample();
      ASSERT_GE(end, 0);
      ReadFrames(source, 20);
      source.Seek(end - 1);
      const auto last = ReadFrames(source, 2);
      ASSERT_EQ(last[source.GetChannels()], 0);
    }
  }
}

}  // namespace
