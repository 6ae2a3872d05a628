#include "effects/LSPTremolo.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/TestSource.h"

TEST(LSPTremolo, SwingsByItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("dynamics/tremolo/")) {
    LSoundSource input(NewTestSource(*data));
    LSPTremolo tremolo;
    tremolo.SetParameterByIndex(LSPTremolo::Frequency, int(data->Decimal("hz") * 1000));
    tremolo.SetParameterByIndex(LSPTremolo::Depth, int(data->Decimal("depth") * 100));
    LSoundSource source = tremolo.OpenSource(input);
    const std::vector<int> out = RunSourceScript(*data, source).samples, wanted = data->Out("samples");
    ASSERT_EQ(out.size(), wanted.size());
    for (std::size_t i = 0; i < out.size(); ++i) ASSERT_NEAR(out[i], wanted[i], 1) << i;
    EXPECT_EQ(source.GetPeak(), 2 * input.GetPeak());
    // The same place sounds the same again.
    source.Seek(700);
    std::vector<int> again;
    ReadInto(again, source, 1000);
    EXPECT_TRUE(std::equal(again.begin(), again.end(), out.begin() + 1400));
  }
}

TEST(LSPTremolo, PassesWithoutDepthAndHoldsExtremes) {
  const std::vector<int> samples{INT_MAX, INT_MIN, 0, 5, -5, 524272, INT_MAX, INT_MIN};
  LSPTremolo tremolo;
  tremolo.SetParameterByIndex(LSPTremolo::Depth, 0);
  LSoundSource input(new TestSource(samples, 8000, 1));
  LSoundSource source = tremolo.OpenSource(input);
  std::vector<int> out;
  ReadInto(out, source, 8);
  EXPECT_EQ(out, samples);
  tremolo.SetParameterByIndex(LSPTremolo::Depth, 100);
  tremolo.SetParameterByIndex(LSPTremolo::Frequency, 20000);
  input.Seek(0);
  source = tremolo.OpenSource(input);
  out.clear();
  ReadInto(out, source, 8);
  EXPECT_EQ(out[6], INT_MAX);  // raised beyond the range
  EXPECT_EQ(out[7], INT_MIN);
}
