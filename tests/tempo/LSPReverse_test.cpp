#include "tempo/LSPReverse.h"

#include <gtest/gtest.h>

#include "support/TestSource.h"

TEST(LSPReverse, WalksToTheStartAndIsSilentBeforeIt) {
  std::vector<int> samples;
  for (int frame = 0; frame < 100; ++frame) samples.insert(samples.end(), {frame + 1, -frame - 1});
  LSoundSource input(new TestSource(samples, 44100, 2));
  LSoundSource reversed = LSPReverse().OpenSource(input);
  reversed.Seek(10);
  std::vector<int> out(2 * 6, 7);
  reversed.Read(out.data(), 6);
  EXPECT_EQ(out, (std::vector<int>{10, -10, 9, -9, 8, -8, 7, -7, 6, -6, 5, -5}));
  EXPECT_EQ(reversed.GetPositionSample(), 4);
  reversed.Read(out.data(), 6);
  EXPECT_EQ(out, (std::vector<int>{4, -4, 3, -3, 2, -2, 1, -1, 0, 0, 0, 0}));
  EXPECT_EQ(reversed.GetPositionSample(), 0);
  reversed.Seek(-5);
  reversed.Read(out.data(), 6);
  EXPECT_EQ(out, std::vector<int>(12, 0));
}
