#include "effects/LSPDistortion.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/TestSource.h"

TEST(LSPDistortion, ShapesByItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("dynamics/distortion/")) {
    const LDistortionShape shape(data->Decimal("degree"), data->Int("threshold"));
    EXPECT_EQ((std::vector<int>{shape.Inner().slope24, shape.Middle().slope24, shape.Outer().slope24,
                                shape.Middle().offset, shape.Outer().offset}),
              data->Out("shape"));
    LSoundSource input(NewTestSource(*data));
    LSPDistortion distortion;  // -20 dB: the threshold of the cases
    distortion.SetParameterByIndex(LSPDistortion::Degree, int(data->Decimal("degree") * 1000));
    LSoundSource source = distortion.OpenSource(input);
    EXPECT_EQ(RunSourceScript(*data, source).samples, data->Out("samples")) << data->id;
  }
}

TEST(LSPDistortion, PassesAtLevelOrDegreeZeroAndKeepsItsPeak) {
  std::vector<int> samples = Engine::Noise(9, kPeak16, 1000);
  samples.insert(samples.end(), {INT_MAX, INT_MIN, 0, -1});
  struct Case {
    int degree, threshold, level;
    bool passes;
  };
  for (const Case& c : {Case{1000, -20, 0, true}, Case{0, -20, 100, true}, Case{700, -3, 50, false},
                        Case{1000, 0, 100, false}, Case{1, -60, 100, false}}) {
    LSPDistortion distortion;
    distortion.SetParameterByIndex(LSPDistortion::Degree, c.degree);
    distortion.SetParameterByIndex(LSPDistortion::Threshold, c.threshold);
    distortion.SetParameterByIndex(LSPDistortion::Level, c.level);
    LSoundSource input(new TestSource(samples, 44100, 1));
    LSoundSource source = distortion.OpenSource(input);
    std::vector<int> out;
    ReadInto(out, source, int(samples.size()));
    EXPECT_EQ(out == samples, c.passes) << c.degree;
    for (std::size_t i = 0; i < 1000; ++i) ASSERT_LE(std::abs(out[i]), source.GetPeak()) << c.threshold;
  }
}
