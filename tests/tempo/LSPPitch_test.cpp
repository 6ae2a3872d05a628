#include "tempo/LSPPitch.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/TestSource.h"

namespace {

// The share of a signal's energy that one frequency has.
double ShareOf(const std::vector<int>& samples, double hz) {
  double sine = 0, cosine = 0, all = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double angle = 2 * M_PI * hz * double(i) / 44100;
    sine += samples[i] * std::sin(angle);
    cosine += samples[i] * std::cos(angle);
    all += double(samples[i]) * samples[i];
  }
  return 2 * (sine * sine + cosine * cosine) / (all * double(samples.size()));
}

}  // namespace

TEST(LSPPitch, MovesAToneAndKeepsTheLength) {
  std::vector<int> samples(88200);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = int(300000 * std::sin(2 * M_PI * 1000 * double(i) / 44100));
  struct {
    double ratio, hz;
  } const rows[] = {{2, 2000}, {1.0594631, 1059.4631}, {0.5, 500}};
  for (const auto& row : rows) {
    LSoundSource input(new TestSource(samples, 44100, 1));
    LSoundSource source = LSPPitch(row.ratio).OpenSource(input);
    EXPECT_NEAR(source.GetEndSample(), 88200, 3) << row.ratio;
    std::vector<int> lead, out;
    ReadInto(lead, source, 10000);
    ReadInto(out, source, 44100);
    EXPECT_NEAR(source.GetPositionSample(), 54100, 256) << row.ratio;  // to a hop of the vocoder
    EXPECT_GT(ShareOf(out, row.hz), 0.9) << row.ratio;
  }
}

TEST(LSPPitch, OddRatiosOpen) {
  for (const double ratio : {0.0, 0.05, -1.0, std::nan("")}) {
    LSoundSource input(new TestSource(Engine::Noise(51, 300000, 4000), 44100, 2));
    LSoundSource source = LSPPitch(ratio, false).OpenSource(input);
    std::vector<int> out;
    ReadInto(out, source, 3000);
    EXPECT_TRUE(source.IsOk()) << ratio;
  }
}
