#include "sound/LCrossFadeSource.h"

#include <gtest/gtest.h>

#include "support/TestSource.h"

TEST(LCrossFadeSource, FadesFromWhatWasPlayedToWhatIsPlayedNow) {
  for (const EngineCase* data : Engine::CasesBelow("mixer/crossfade/")) {
    LCrossFadeSource fade;
    TestSource* behind = NewTestSource(*data);
    LSoundSource input(behind);
    LSoundSource source = fade.OpenSource(input);
    ScriptResult result;
    for (const EngineStep& step : data->Steps()) {
      if (step.word == "request")
        fade.RequestFade();
      else if (step.word == "swap")
        behind->negated = true;
      else
        ASSERT_TRUE(RunSourceStep(step, source, result)) << step.word;
    }
    EXPECT_EQ(result.samples, data->Out("samples")) << data->id;
    EXPECT_EQ(result.ints, data->Out("ints")) << data->id;
  }
}

TEST(LCrossFadeSource, OneFrameOfFadeIsTheHistoryAlone) {
  LCrossFadeSource fade;
  auto* behind = new TestSource({100, 200, 300}, 44100, 1);
  LSoundSource input(behind);
  LSoundSource source = fade.OpenSource(input);
  std::vector<int> samples;
  ReadInto(samples, source, 2);
  source.Seek(0);
  behind->negated = true;
  fade.RequestFade();
  ReadInto(samples, source, 1);
  ReadInto(samples, source, 1);
  EXPECT_EQ(samples, (std::vector<int>{100, 200, 100, -200}));
}
