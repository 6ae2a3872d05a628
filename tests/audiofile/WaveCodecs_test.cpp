#include "audiofile/WaveCodecs.h"

#include "audiofile/AudioFileTest.h"
#include "audiofile/LWaveFile.h"

namespace {

class WaveCodecsTest : public AudioFileTest {};

TEST_F(WaveCodecsTest, TagsAscendAndHaveNames) {
  for (unsigned i = 1; i < uNumWaveCodecs; ++i) {
    EXPECT_LT(WaveCodecs[i - 1].tag, WaveCodecs[i].tag);
    EXPECT_STRNE(WaveCodecs[i].name, "");
  }
}

TEST_F(WaveCodecsTest, AFileNamesItsCodec) {
  const auto wave = [](unsigned tag, unsigned channels = 1, unsigned rate = 8000) {
    return "RIFF" + Le(0, 4) + "WAVEfmt " + Le(16, 4) + Le(tag, 2) + Le(channels, 2) + Le(rate, 4) + Le(0, 8);
  };
  const struct {
    std::string bytes, name;
  } rows[] = {
      {wave(2), "Microsoft ADPCM Format"},
      {wave(3), "IEEE Float"},
      {wave(0x42), "Microsoft MSG723"},
      {wave(0xF1AC), "FLAC"},
      {wave(0x00EE), "Microsoft Unknown Wave Format"},
      {wave(0), "Microsoft Unknown Wave Format"},
      {wave(2, 0), "Microsoft Unknown Wave Format"},
      {wave(2, 1, 0), "Microsoft Unknown Wave Format"},
      {"RIFF", "Microsoft Unknown Wave Format"},
  };
  for (const auto& row : rows) EXPECT_EQ(LGetWaveFileCodecName(Put("a.wav", row.bytes)), row.name);
  EXPECT_EQ(LGetWaveFileCodecName(Path("missing.wav")), "Microsoft Unknown Wave Format");
}

TEST_F(WaveCodecsTest, TheFormatBlockIsLoadedWhole) {
  LWaveFile::OpenSinkPCM(Path("a.wav"), 48000, 2, 24, 0).Close();
  LWaveFormatEx format;
  ASSERT_TRUE(LWaveFormatEx::Load(Path("a.wav"), format));
  EXPECT_EQ(format.tag, 1);
  EXPECT_EQ(format.channels, 2);
  EXPECT_EQ(format.rate, 48000u);
  EXPECT_EQ(format.bytesPerSecond, 288000u);
  EXPECT_EQ(format.blockAlign, 6);
  EXPECT_EQ(format.bits, 24);
}

}  // namespace
