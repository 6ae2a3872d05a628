#include "sound/LSPGain.h"

#include <gtest/gtest.h>

#include <memory>

#include "sound/LSPCrossMix.h"
#include "support/TestSource.h"

TEST(LSPGain, StoresPercentAndGainsTheSamples) {
  for (const EngineCase* data : Engine::CasesBelow("mixer/gain/")) {
    LSPGain gain;
    gain.SetParameterByIndex(0, data->Int("percent"));
    LSoundProcessParameter parameter;
    ASSERT_TRUE(gain.GetParameterByIndex(0, &parameter));
    LSoundSource input(NewTestSource(*data));
    LSoundSource source = gain.OpenSource(input);
    EXPECT_EQ((std::vector<int>{gain.GetGain24(), parameter.value, source.GetPeak()}), data->Out("values")) << data->id;
    EXPECT_EQ(RunSourceScript(*data, source).samples, data->Out("samples")) << data->id;
  }
}

TEST(LSPGain, PresetsAreFoundAgain) {
  LSPGain gain;
  EXPECT_EQ(gain.GetIndexInPreset(), -1);
  for (int preset = 0; preset < gain.GetNumPresets(); ++preset) {
    gain.SetPreset(preset);
    EXPECT_EQ(gain.GetIndexInPreset(), preset);
  }
  gain.SetPreset(4);
  EXPECT_EQ(gain.GetIndexInPreset(), 3);
  EXPECT_EQ(gain.GetPresetsName(3), "Dreifache Lautstärke");
  EXPECT_EQ(std::unique_ptr<LSoundProcess>(gain.GetNewCopy())->GetIndexInPreset(), 3);
}

TEST(LSPCrossMix, FadesInPlaysAloneAndFadesOut) {
  // 12 frames of 1000 against 0, 100, 200 ...; N = 4: ramps 0, 1/4, 2/4, 3/4. The body seeks the second to 8 - 4 = 4.
  LSoundSource first(new TestSource(std::vector<int>(12, 1000), 44100, 1));
  std::vector<int> steps(20);
  for (std::size_t i = 0; i < steps.size(); ++i) steps[i] = int(i) * 100;
  const LSoundSource second(new TestSource(steps, 44100, 1));
  LSoundSource mix = LSPCrossMix(4, second).OpenSource(first);
  std::vector<int> samples;
  ReadInto(samples, mix, 14);
  EXPECT_EQ(samples, (std::vector<int>{0, 325, 600, 825, 1000, 1000, 1000, 1000,  //
                                       1000, 875, 800, 775, 0, 0}));
  EXPECT_EQ(LSPCrossMix::FadeFrames(1000, 44100), 100);
  EXPECT_EQ(LSPCrossMix::FadeFrames(1000000, 44100), 4410);
  EXPECT_EQ(LSPCrossMix::FadeFrames(1000, 19), 1);
}
