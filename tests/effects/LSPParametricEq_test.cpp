#include "effects/LSPParametricEq.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "effects/DJEqualizerLaw.h"
#include "effects/TEqualizer.h"
#include "sound/LWrap.h"
#include "support/TestSource.h"

namespace {

void ExpectWithin(const EngineCase& data, const std::vector<int>& samples) {
  const std::vector<int> expected = data.Out("samples");
  ASSERT_EQ(samples.size(), expected.size()) << data.id;
  for (std::size_t i = 0; i < samples.size(); ++i)
    ASSERT_NEAR(samples[i], expected[i], data.Tolerance("samples").second) << data.id << " at " << i;
}

// One channel through one section, written as the law reads.
class PlainSection {
 public:
  explicit PlainSection(const LBiquadSection& section) : c_(section) {}
  double Next(double x) {
    const double w = x - c_.a1 * w1_ - c_.a2 * w2_;
    const double y = c_.b0 * w + c_.b1 * w1_ + c_.b2 * w2_;
    w2_ = w1_;
    w1_ = w;
    return y;
  }

 private:
  LBiquadSection c_;
  double w1_ = 0, w2_ = 0;
};

std::vector<LBiquadSection> Sections(int count) {
  std::vector<LBiquadSection> sections;
  sections.reserve(std::size_t(count));
  for (int i = 0; i < count; ++i) sections.push_back(PeakingSection({50 << i, i % 3 * 9 - 6, 1.4}, 44100));
  return sections;
}

std::vector<int> Plain(std::vector<int> samples, int channels, std::span<const LBiquadSection> sections,
                       bool truncates) {
  for (int channel = 0; channel < channels; ++channel) {
    std::vector<PlainSection> row(sections.begin(), sections.end());
    for (std::size_t i = std::size_t(channel); i < samples.size(); i += std::size_t(channels)) {
      double x = samples[i];
      for (PlainSection& section : row) x = truncates ? SaturateToInt(section.Next(x)) : section.Next(x);
      samples[i] = SaturateToInt(x);
    }
  }
  return samples;
}

}  // namespace

TEST(LSPParametricEq, CoefficientsAndSamplesFollowTheLaw) {
  for (const EngineCase* data : Engine::CasesBelow("filters/parametric/")) {
    const LSPEqBandInfo band{data->Int("frequency"), data->Int("db"), data->Decimal("q")};
    const LBiquadSection section = PeakingSection(band, 44100);
    const std::vector<double> expected = data->Out<double>("coefficients");
    const double actual[] = {section.b0, section.b1, section.b2, section.a1, section.a2};
    for (std::size_t i = 0; i < expected.size(); ++i)
      EXPECT_NEAR(actual[i], expected[i], std::abs(expected[i]) * 1e-12) << data->id << " " << i;

    LSoundSource input(NewTestSource(*data));
    LSoundSource source = LSPParametricEq({band}).OpenSource(input);
    ExpectWithin(*data, RunSourceScript(*data, source).samples);
  }
}

TEST(TEqualizer, PassesTheSignalThroughFiveFiltersWhenFlat) {
  const EngineCase& data = Engine::Case("equaliser/equalizer/flat");
  LSoundSource input(NewTestSource(data));
  TEqualizer equalizer;
  LSoundSource source = equalizer.OpenSource(input);
  EXPECT_EQ(source.GetPeak(), input.GetPeak());
  ExpectWithin(data, RunSourceScript(data, source).samples);

  equalizer.SetLevel(4, 12);
  equalizer.SetLevel(5, 12);
  EXPECT_EQ(equalizer.GetLevel(4).Get(), 12);
  EXPECT_EQ(equalizer.OpenSource(input).GetPeak(), kPeakHeadroom);
}

TEST(TEqualizer, SliderLawIsALineAboveAndAnArchBelowTheCentre) {
  const std::vector<int> expected = Engine::Case("equaliser/slider").Out("db");
  for (int position = 0; position <= 100; ++position)
    EXPECT_EQ(EqualizerDbFromSlider(position).Get(), expected[std::size_t(position)]) << position;
  EXPECT_EQ(EqualizerDbFromSlider(-1).Get(), 12);
  EXPECT_EQ(EqualizerDbFromSlider(200).Get(), LLevel::kMuted);
}

// The row of vectors equals one filter after the other, however the sound is cut: at lengths below its skew too.
TEST(LBiquadCascade, EqualsFiltersInARowInEveryForm) {
  for (const LFilterKernels* kernels : UsableFilterKernels())
    for (const int channels : {1, 2, 3, 6})
      for (const int count : {1, 4, 5, 8})
        for (const bool truncates : {true, false}) {
          const std::vector<LBiquadSection> sections = Sections(count);
          std::vector<int> noise = Engine::Noise(5, kPeak16, std::size_t(700) * std::size_t(channels));
          std::fill_n(noise.begin(), 30, INT32_MIN);
          std::fill_n(noise.begin() + 30, 30, INT32_MAX);
          const std::vector<int> expected = Plain(noise, channels, sections, truncates);

          LBiquadCascade cascade(channels, sections,
                                 truncates ? LBiquadCascade::kTruncate : LBiquadCascade::kKeepFractions, 1, *kernels);
          for (int at = 0, part = 0; at < 700; at += part) {
            part = std::min(part * 3 + 1, 700 - at);
            cascade.Run(&noise[std::size_t(at * channels)], part);
          }
          EXPECT_EQ(noise, expected) << kernels->name << " " << channels << " channels, " << count << " sections";
        }
}

TEST(LSPParametricEq, PassesWhatTheRateCannotShape) {
  for (const int rate : {8000, 12000}) {
    LSoundSource input(new TestSource(Engine::Noise(3, kPeak16, 2000), rate, 2));
    std::vector<int> plain, samples;
    ReadInto(plain, input, 1000);
    input.Seek(0);
    LSoundSource source = LSPParametricEq({{6000, 12, 5}, {12000, 12, 5}}).OpenSource(input);
    ReadInto(samples, source, 1000);
    EXPECT_EQ(samples, plain) << rate;
  }
}
