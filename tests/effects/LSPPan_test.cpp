#include "effects/LSPPan.h"

#include <gtest/gtest.h>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

constexpr int kLevel = 100000;

LSoundSource Level(int channels = 2) {
  return LSoundSource(new TestSource(std::vector<int>(std::size_t(2000 * channels), kLevel), 1000,
                                     static_cast<unsigned char>(channels)));
}

std::vector<int> FrameAt(const LSPPan& pan, int frame, int channels = 2) {
  LSoundSource input = Level(channels), source = LSPPan(pan).OpenSource(input);
  source.Seek(frame);
  std::vector<int> out;
  ReadInto(out, source, 1);
  return out;
}

}  // namespace

TEST(LSPPan, LeadsFromPointToPoint) {
  // At 1000 Hz a frame is a millisecond. Given in disorder, and one of them beyond the side.
  const LSPPan pan({{1000, 250}, {200, -100}, {1500, 0}});
  struct Case {
    int frame;
    double left, right;
  };
  for (const Case& c : {Case{0, 1, 0}, Case{200, 1, 0}, Case{400, 1, 0.5}, Case{600, 1, 1}, Case{800, 0.5, 1},
                        Case{1000, 0, 1}, Case{1250, 0.5, 1}, Case{1500, 1, 1}, Case{1999, 1, 1}}) {
    const std::vector<int> out = FrameAt(pan, c.frame);
    EXPECT_NEAR(out[0], c.left * kLevel, 2) << c.frame;
    EXPECT_NEAR(out[1], c.right * kLevel, 2) << c.frame;
  }
  LSoundSource input = Level(), source = LSPPan(pan).OpenSource(input);
  std::vector<int> whole, parts(4000);
  ReadInto(whole, source, 2000);
  source.Seek(0);
  const AllocationGuard guard;
  for (int frame = 0; frame < 2000; frame += 8) source.Read(parts.data() + 2 * frame, 8);
  EXPECT_EQ(guard.Count(), 0);
  EXPECT_EQ(whole, parts);
}

TEST(LSPPan, PassesWhereThereIsNothingToPan) {
  for (const int centre : {FrameAt(LSPPan(), 5)[0], FrameAt(LSPPan({{0, 0}}), 5)[1],
                           FrameAt(LSPPan({{0, -100}}), 5, 1)[0], FrameAt(LSPPan({{0, -100}}), 5, 6)[2]})
    EXPECT_EQ(centre, kLevel);
  // Two points at one time: a jump.
  const LSPPan jump({{100, -100}, {100, 100}});
  EXPECT_EQ(FrameAt(jump, 99), (std::vector<int>{kLevel, 0}));
  EXPECT_EQ(FrameAt(jump, 100), (std::vector<int>{0, kLevel}));
  LSPPan presets;
  EXPECT_EQ(presets.GetIndexInPreset(), -1);
  for (int i = 0; i < presets.GetNumPresets(); ++i) {
    presets.SetPreset(i);
    EXPECT_EQ(presets.GetIndexInPreset(), i);
    EXPECT_EQ(FrameAt(presets, 0), (i == 1 || i == 3 ? std::vector<int>{0, kLevel} : std::vector<int>{kLevel, 0}));
  }
}
