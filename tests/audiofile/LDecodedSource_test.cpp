#include "audiofile/LDecodedSource.h"

#include "audiofile/AudioFileTest.h"
#include "audiofile/LAuFile.h"
#include "audiofile/LGSMFile.h"
#include "audiofile/LRawFile.h"
#include "audiofile/LVocFile.h"
#include "audiofile/LWaveFile.h"

namespace {

class LDecodedSourceTest : public AudioFileTest {};

LSoundSource OpenVox(const std::string& path) { return LRawFile::OpenSource(path, {8000, 1, 0}); }

// Every cut and many changed bytes of valid files: whatever comes out, it opens or has an error, and it reads.
TEST_F(LDecodedSourceTest, DamagedFilesDoNoHarm) {
  const std::string some(140, '\xD5'), magic = "Creative Voice File\x1A" + Le(26, 2) + Le(0, 4);
  const std::string ima = "RIFF" + Le(0, 4) + "WAVEfmt " + Le(20, 4) + Le(17, 2) + Le(2, 2) + Le(8000, 4) + Le(0, 4) +
                          Le(24, 2) + Le(4, 2) + Le(2, 2) + Le(17, 2) + "fact" + Le(4, 4) + Le(60, 4) + "data" +
                          Le(96, 4) + some.substr(0, 96);
  LWaveFile::OpenSink(Path("gsm.wav"), {49, 1, 8000, 0}).Write(std::vector<int>(400, 999).data(), 400);
  const struct {
    LSoundSource (*open)(const std::string& path);
    std::string good;
  } rows[] = {
      {LAuFile::OpenSource, ".snd" + Be(24, 4) + Be(40, 4) + Be(3, 4) + Be(8000, 4) + Be(2, 4) + some.substr(0, 40)},
      {LVocFile::OpenSource, magic + "\1" + Le(42, 3) + Le(156, 1) + Le(1, 1) + some.substr(0, 40) + "\3" + Le(3, 3) +
                                 Le(20, 2) + Le(1, 1) + "\2" + Le(20, 3) + some.substr(0, 20) + std::string(1, '\0')},
      {LVocFile::OpenSource, magic + "\x9" + Le(52, 3) + Le(8000, 4) + Le(16, 1) + Le(2, 1) + Le(4, 2) + Le(0, 4) +
                                 some.substr(0, 40) + std::string(1, '\0')},
      {LWaveFile::OpenSource, ima},
      {LWaveFile::OpenSource, Bytes("gsm.wav")},
      {LGSMFile::OpenSource, some.substr(0, 99)},
      {OpenVox, some.substr(0, 20)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    ASSERT_TRUE(row.open(Put("x", row.good)).IsOk());
    std::vector<std::string> variants;
    for (std::size_t at = 0; at < row.good.size(); ++at) {
      variants.push_back(row.good.substr(0, at));
      for (const int flip : {0x01, 0x80, 0xFF})
        variants.push_back(std::string(row.good).replace(at, 1, 1, char(row.good[at] ^ flip)));
    }
    for (const std::string& bytes : variants) {
      const LSoundSource source = row.open(Put("x", bytes));
      const int end = source.GetEndSample();
      ASSERT_GE(end, 0);
      ReadFrames(source, 700);
      source.Seek(end - 1);
      ASSERT_EQ(ReadFrames(source, 2)[source.GetChannels()], 0);
    }
  }
}

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

TEST_F(LDecodedSourceTest, ClaimsOfAFileCostNoMemory) {
  const std::string wave = "RIFF" + Le(0, 4) + "WAVEfmt " + Le(16, 4) + Le(17, 2) + Le(255, 2) + Le(8000, 4) +
                           Le(0, 4) + Le(65535, 2) + Le(4, 2) + "data" + Le(0xFFFFFF00, 4) + "1234";
  std::string voc = "Creative Voice File\x1A" + Le(26, 2) + Le(0, 4);
  for (int i = 0; i < 49; ++i) voc += "\1" + Le(0xFFFFFF, 3) + Le(156, 1) + Le(3, 1);
  const struct {
    LSoundSource (*open)(const std::string& path);
    std::string bytes;
  } rows[] = {{LWaveFile::OpenSource, wave},
              {LWaveFile::OpenSource, std::string(wave).replace(20, 3, Le(49, 2) + Le(1, 1))},
              {LAuFile::OpenSource, ".snd" + Be(24, 4) + Be(0xFFFFFF00, 4) + Be(3, 4) + Be(8000, 4) + Be(255, 4)},
              {LVocFile::OpenSource, voc}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const std::string path = Put("x", row.bytes);
    const std::size_t before = ::__sanitizer_get_current_allocated_bytes();
    const LSoundSource source = row.open(path);
    EXPECT_TRUE(source.IsOk());
    EXPECT_LT(::__sanitizer_get_current_allocated_bytes() - before, 80u << 10);  // a buffer has 64 KiB at most
  }
}
#endif

// What vanishes while it plays is silence.
TEST_F(LDecodedSourceTest, AFileThatShrinksIsSilentFromThere) {
  std::string voc = "Creative Voice File\x1A" + Le(26, 2) + Le(0, 4) + "\1" + Le(20002, 3) + Le(156, 1) + Le(1, 1);
  const std::string path = Put("x", voc + std::string(20000, '\x77'));
  for (auto* open : {LVocFile::OpenSource, &OpenVox}) {
    std::filesystem::resize_file(path, 20030);
    const LSoundSource source = open(path);
    const int end = source.GetEndSample();
    ReadFrames(source, 100);
    std::filesystem::resize_file(path, 2000);
    EXPECT_EQ(ReadFrames(source, 9000)[8999], 0);
    source.Seek(end - 50);
    EXPECT_EQ(ReadFrames(source, 50), std::vector<int>(50, 0));
    EXPECT_EQ(source.GetEndSample(), end);
  }
}

}  // namespace
