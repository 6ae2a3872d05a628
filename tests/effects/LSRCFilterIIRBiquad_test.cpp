#include "effects/LSRCFilterIIRBiquad.h"

#include <gtest/gtest.h>

#include "support/TestSource.h"

namespace {

std::vector<int> Filtered(std::vector<int> samples, int sections, const double* table, double gain) {
  const int frames = int(samples.size());
  LSoundSource input(new TestSource(std::move(samples), 44100, 1));
  LSoundSource source = LSPFilterIIRBiquad(sections, table, gain).OpenSource(input);
  std::vector<int> out;
  ReadInto(out, source, frames);
  return out;
}

}  // namespace

// w = 100, 0 + 50, 25, ... for a1 = -0.5; y = w + 2 w1, kept in fractions for the second section, which adds w2.
TEST(LSRCFilterIIRBiquad, RunsItsSectionsInARow) {
  const double table[] = {1, 2, 0, -0.5, 0, 1, 0, 1, 0, 0};
  EXPECT_EQ(Filtered({200, 0, 0, 0, 0}, 1, table, 0.5), (std::vector<int>{100, 250, 125, 62, 31}));
  EXPECT_EQ(Filtered({200, 0, 0, 0, 0}, 2, table, 0.5), (std::vector<int>{100, 250, 225, 312, 156}));
  EXPECT_EQ(Filtered({200, -7, 9}, 0, table, 0.5), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(Filtered({INT32_MAX, INT32_MIN}, 1, table, 4), (std::vector<int>{INT32_MAX, INT32_MAX}));
}
