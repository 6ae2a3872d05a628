#include "effects/LSPReverb3.h"

#include <gtest/gtest.h>

#include "support/TestSource.h"

TEST(LSPReverb3, SoundsByItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("reverb/reverb/")) {
    LSoundSource input(NewTestSource(*data));
    LSPReverb3 hall;
    hall.SetParameterByIndex(LSPReverb3::Time, data->Int("time"));
    hall.SetParameterByIndex(LSPReverb3::Diffusion, data->Int("diffusion"));
    hall.SetParameterByIndex(LSPReverb3::Wet, data->Int("wet"));
    hall.SetParameterByIndex(LSPReverb3::Dry, data->Int("dry"));
    LSoundSource source = hall.OpenSource(input);
    const std::vector<int> samples = RunSourceScript(*data, source).samples, wanted = data->Out("samples");
    ASSERT_EQ(samples.size(), wanted.size()) << data->id;
    for (std::size_t i = 0; i < wanted.size(); ++i)
      ASSERT_NEAR(samples[i], wanted[i], data->Tolerance("samples").second) << data->id << " at " << i;
  }
}

TEST(LSPReverb3, DelaysScaleWithTheRate) {
  std::vector<int> lengths;
  for (const int rate : {44100, 22050, 48000, 96000, 8000})
    for (const int frames : LSRCReverb3::LineFrames(rate)) lengths.push_back(frames);
  EXPECT_EQ(lengths, Engine::Case("reverb/lengths").Out("lengths"));
}

TEST(LSPReverb3, AMonoSourceGetsTheMeanOfBothSides) {
  const std::vector<int> mono = Engine::Noise(3, kPeak16, 4000);
  std::vector<int> both, one, two;
  for (const int sample : mono) both.insert(both.end(), 2, sample);
  LSoundSource narrow(new TestSource(mono, 44100, 1)), wide(new TestSource(both, 44100, 2));
  LSoundSource narrowHall = LSPReverb3().OpenSource(narrow), wideHall = LSPReverb3().OpenSource(wide);
  ReadInto(one, narrowHall, 4000);
  ReadInto(two, wideHall, 4000);
  for (std::size_t i = 0; i < one.size(); ++i) ASSERT_NEAR(one[i], (double(two[2 * i]) + two[2 * i + 1]) / 2, 1) << i;
}

TEST(LSPReverb3, EveryFormOfTheLoopGivesTheSame) {
  const std::vector<int> noise = Engine::Noise(4, kPeak16, 20000);
  // At 300 Hz the shortest delay is one frame, at 2000 Hz it ends within every few turns of four.
  for (const int rate : {44100, 2000, 300})
    for (const LFilterKernels* form : UsableFilterKernels()) {
      std::vector<std::vector<int>> outs;
      for (const LFilterKernels* kernels : {UsableFilterKernels().front(), form}) {
        LSoundSource source = LSoundSource::Make<LSRCReverb3>(LSoundSource(new TestSource(noise, rate, 2)),
                                                              LReverbSettings{0.98F, 0.4F, 3, 2}, *kernels);
        outs.emplace_back();
        for (const int frames : {1, 2, 3, 5, 7, 510, 511, 513, 1031, 7417}) ReadInto(outs.back(), source, frames);
      }
      EXPECT_EQ(outs[0], outs[1]) << form->name << " at " << rate;
    }
}
