#include "effects/LSPHighPass.h"

#include <gtest/gtest.h>

#include "effects/LEffectTypes.h"
#include "effects/LOnePole.h"
#include "effects/LSPLowPass.h"
#include "effects/LSPWahwah.h"
#include "support/AllocationGuard.h"
#include "support/TestSource.h"

TEST(LSPLowPass, FollowsItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("filters/lowpass/")) {
    LSoundSource input(NewTestSource(*data));
    LSPLowPass filter;
    filter.SetParameterByIndex(LSPLowPass::Frequency, data->Int("frequency"));
    LSoundSource source = filter.OpenSource(input);
    EXPECT_EQ(RunSourceScript(*data, source).samples, data->Out("samples")) << data->id;
    EXPECT_EQ((std::vector{LOnePole::Step8(data->Int("frequency"), 44100), source.GetPeak()}), data->Out("values"));
  }
}

TEST(LSPHighPass, FollowsItsLawAndSettlesOnTheFramesBeforeASeek) {
  for (const EngineCase* data : Engine::CasesBelow("filters/highpass/")) {
    LSoundSource input(NewTestSource(*data));
    LSPHighPass filter;
    filter.SetParameterByIndex(LSPHighPass::Frequency, data->Int("frequency"));
    filter.SetParameterByIndex(LSPHighPass::Share, data->Int("percent"));
    LSoundSource source = filter.OpenSource(input);
    const ScriptResult result = RunSourceScript(*data, source);
    EXPECT_EQ(result.samples, data->Out("samples")) << data->id;
    EXPECT_EQ(result.ints, data->HasOut("ints") ? data->Out("ints") : std::vector<int>()) << data->id;
  }
}

TEST(LSPWahwah, FiltersByItsLaw) {
  const EngineCase& data = Engine::Case("filters/wah_core/fixed");
  const LSoundSource input(NewTestSource(data));
  LSoundSource source = LSoundSource::Make<LSRCWahwah>(
      input, LWahSweep{data.Decimal("low"), data.Decimal("high"), data.Decimal("period"), data.Decimal("q")});
  const std::vector<int> samples = RunSourceScript(data, source).samples, expected = data.Out("samples");
  ASSERT_EQ(samples.size(), expected.size());
  for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_NEAR(samples[i], expected[i], 2) << i;
}

TEST(LSPWahwah, SweepsAroundItsCentreAndStaysStable) {
  LSPWahwah wah;
  LWahSweep sweep = wah.Sweep(44100);  // 5 Hz, 100 %, 500 Hz, 75 %
  EXPECT_EQ((std::vector{sweep.lowHz, sweep.highHz, sweep.periodFrames, sweep.damping}),
            (std::vector{20.0, 1000.0, 4410.0, 0.5}));
  wah.SetParameterByIndex(LSPWahwah::Depth, 0);
  sweep = wah.Sweep(44100);
  EXPECT_EQ(sweep.lowHz, sweep.highHz);

  // The widest and highest sweep, at every resonance and at a low rate, over full-scale noise.
  wah.SetParameterByIndex(LSPWahwah::Depth, 100);
  wah.SetParameterByIndex(LSPWahwah::Centre, 4000);
  for (const int rate : {8000, 44100})
    for (const int resonance : {0, 50, 99}) {
      wah.SetParameterByIndex(LSPWahwah::Resonance, resonance);
      EXPECT_LT(wah.Sweep(rate).highHz, rate / 6.0 + 0.01);
      LSoundSource input(new TestSource(Engine::Noise(8, kPeak16, 40000), rate, 1));
      LSoundSource source = wah.OpenSource(input);
      std::vector<int> samples;
      ReadInto(samples, source, 40000);
      for (const int sample : samples) ASSERT_LT(std::abs((long long)sample), 50LL * kPeak16) << resonance;
    }
}

// What holds for every filter: any rate, channels and length, the greatest samples, blocks of any size.
TEST(Filters, GiveTheSameHoweverTheyAreRead) {
  for (const int type : {LSPHighPass::kType, 10, 11, 12, LSPLowPass::kType, 16, LSPWahwah::kType})
    for (const auto& [rate, channels] : {std::pair(44100, 2), {44100, 1}, {48000, 6}, {8000, 2}}) {
      const std::unique_ptr<LEffect> effect = FindEffectType(type).create();
      for (int i = 0; i < effect->GetNumParameters(); ++i) effect->LoadValue(i, type == 16 ? 12 : INT32_MAX);
      std::vector<int> noise = Engine::Noise(6, kPeak16, std::size_t(3000) * std::size_t(channels));
      std::fill_n(noise.begin(), 600, INT32_MIN);
      std::fill_n(noise.begin() + 600, 600, INT32_MAX);
      LSoundSource input(new TestSource(noise, rate, static_cast<unsigned char>(channels)));
      LSoundSource source = effect->OpenSource(input);

      std::vector<int> whole(noise.size()), cut(noise.size());
      source.Read(whole.data(), 0);
      source.Read(whole.data(), 3000);
      EXPECT_EQ(source.GetPositionSample(), 3000);
      EXPECT_EQ(source.GetEndSample(), 3000);
      source = effect->OpenSource(input);
      source.Seek(0);
      const AllocationGuard guard;
      for (int at = 0, part = 1; at < 3000; at += part, part = std::min(part * 10, 3000 - at))
        source.Read(&cut[std::size_t(at * channels)], part);
      EXPECT_EQ(guard.Count(), 0) << type;
      EXPECT_EQ(cut, whole) << type << " at " << rate;
    }
}
