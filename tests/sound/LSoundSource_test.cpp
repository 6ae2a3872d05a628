#include "sound/LSoundSource.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/TestSource.h"

TEST(LSoundSource, AnEmptyHandleIsAnErrorSourceThatReadsSilence) {
  LSoundSource handle = LSoundSource::Make<LSilenceSourceBase>(48000, static_cast<unsigned char>(2), 10);
  LSoundSource copy = handle;
  handle.Close();
  EXPECT_EQ(handle.GetError(), lseNoSource);
  EXPECT_EQ(handle.GetSampleRate(), 11025);
  EXPECT_EQ(handle.GetChannels(), 1);
  int frames[] = {1, 2, 3};
  handle.Read(frames, 3);
  EXPECT_EQ(frames[0] | frames[1] | frames[2], 0);
  EXPECT_TRUE(copy.IsOk());
  EXPECT_EQ(copy.GetEndSample(), 10);
}

TEST(LSoundSource, BadFormatsAreRepairedAndReported) {
  const LSilenceSourceBase noRate(0, 2, 1), noChannels(44100, 0, 1);
  EXPECT_EQ(noRate.GetSampleRate(), 44100);
  EXPECT_EQ(noRate.GetError(), lseDamaged);
  EXPECT_EQ(noChannels.GetChannels(), 1);
  EXPECT_EQ(noChannels.GetError(), lseDamaged);
}

TEST(LSoundSource, FindFirstSound) {
  for (const EngineCase* data : Engine::CasesBelow("samples/first_sound/")) {
    LSoundSource source(NewTestSource(*data));
    source.Seek(data->Int("position"));
    const int found = FindFirstSound(source);
    EXPECT_EQ((std::vector<int>{found, source.GetPositionSample()}), data->Out("values")) << data->id;
  }
}

TEST(LSoundTime, FramesAndTexts) {
  const EngineCase& frames = Engine::Case("samples/sound_time");
  const std::vector<int> pairs = frames.In("pairs");
  std::vector<int> times;
  for (std::size_t i = 0; i < pairs.size(); i += 2) times.push_back(LSoundTimeFromFrames(pairs[i], pairs[i + 1]));
  EXPECT_EQ(times, frames.Out("ms"));

  const EngineCase& texts = Engine::Case("samples/time_text");
  const auto bytes = texts.Out<unsigned char>("text");
  std::stringstream expected(std::string(bytes.begin(), bytes.end()));
  for (const int time : texts.In("ms")) {
    std::string line;
    std::getline(expected, line);
    EXPECT_EQ(LSoundTimeText::GetTextHMMSS(time) + "|" + LSoundTimeText::GetTextHMMSSF(time) + "|" +
                  LSoundTimeText::GetTextHMMSSFF(time),
              line);
  }
}
