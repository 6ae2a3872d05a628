#include "effects/LSPEq.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "effects/LSPEqBand.h"
#include "support/TestSource.h"

namespace {

std::vector<int> Noise(int frames) { return Engine::Noise(9, kPeak16, std::size_t(frames) * 2); }

std::vector<int> Read(LSoundSource& source, int frames) {
  std::vector<int> samples;
  ReadInto(samples, source, frames);
  return samples;
}

}  // namespace

TEST(LFiltFFT, EqualsTheSumOfProductsInEveryForm) {
  std::vector<double> coefficients;
  for (const int value : Engine::Noise(4, 1000, 150)) coefficients.push_back(value / 5000.0);
  const std::vector<int> noise = Noise(512);
  for (const LFilterKernels* kernels : UsableFilterKernels()) {
    LFiltFFT filter(*kernels);
    filter.SetBlkSize(64);
    filter.SetCoeff(coefficients.data(), coefficients.size());
    std::vector<int> samples = noise;
    filter.ApplyFilter(&samples[1], &samples[1], 128, 2);
    filter.ApplyFilter(&samples[257], &samples[257], 384, 2);
    for (std::size_t n = 0; n < 512; ++n) {
      double sum = 0;
      for (std::size_t k = 0; k < std::min(n + 1, coefficients.size()); ++k)
        sum += coefficients[k] * noise[2 * (n - k) + 1];
      ASSERT_NEAR(samples[2 * n + 1], sum, 0.501) << kernels->name << " " << n;
      ASSERT_EQ(samples[2 * n], noise[2 * n]);
    }
  }
}

TEST(LSRCEq, FlatPassesToTheBitAtEveryPosition) {
  const std::vector<int> noise = Noise(6000);
  LSoundSource input(new TestSource(noise, 44100, 2));
  LSoundSource source = LSPGraphicEqBand().OpenSource(input);
  for (const int start : {0, 100, 4000}) {
    source.Seek(start);
    EXPECT_EQ(source.GetPositionSample(), start);
    const std::vector<int> samples = Read(source, 777);
    EXPECT_TRUE(std::equal(samples.begin(), samples.end(), noise.begin() + std::ptrdiff_t(start) * 2)) << start;
    EXPECT_EQ(source.GetPositionSample(), start + 777);
    long held = 0;
    source.ControlMessage(lccPullBack, &held);
    EXPECT_EQ(held, input.GetPositionSample() - (start + 777));
  }
}

TEST(LSRCEq, SoundsTheSameAfterASeek) {
  LSoundSource input(new TestSource(Noise(9000), 44100, 2));
  LSPParametricEqBand band;
  band.SetParameterByIndex(LSPParametricEqBand::Level, 12);
  LSoundSource source = band.OpenSource(input);
  EXPECT_EQ(source.GetPeak(), kPeakHeadroom);
  Read(source, 5000);
  const std::vector<int> through = Read(source, 1000);
  source.Seek(5000);
  EXPECT_EQ(Read(source, 1000), through);
}

// A sine at a point of the curve comes out at the curve's level.
TEST(LSPEqBand, CurvesAreHeard) {
  LSPParametricEqBand bell;
  for (const auto& [index, value] : {std::pair(0, 2000), {1, -12}, {2, 2000}}) bell.SetParameterByIndex(index, value);
  LSPEqPointLine line;
  line.SetParameterByIndex(4, 12);  // 2400 Hz; 6000 Hz stays at 0 dB
  LSPGraphicEqBand graphic;
  for (int i = 0; i < graphic.GetNumParameters(); ++i) graphic.SetParameterByIndex(i, -6);

  const struct {
    LSPEqBand& band;
    double hz, db;
  } cases[] = {{bell, 2000, -12},  {bell, 4000, -6},  // an octave off, half of two octaves
               {bell, 500, -0.75}, {line, std::sqrt(2400.0 * 6000), 6},
               {line, 12000, 0},   {graphic, 60 * 2.5 * 2.5, -6.75}};  // -6 (1 + 2 / 16)
  for (const auto& row : cases) {
    EXPECT_NEAR(row.band.DbAt(row.hz), row.db, 0.05) << row.hz;
    std::vector<int> sine;
    sine.reserve(16384);
    for (int i = 0; i < 16384; ++i) sine.push_back(int(100000 * std::sin(2 * std::numbers::pi * row.hz * i / 44100)));
    LSoundSource input(new TestSource(sine, 44100, 1));
    LSoundSource source = row.band.OpenSource(input);
    const std::vector<int> out = Read(source, 12000);
    double in2 = 0, out2 = 0;
    for (std::size_t i = 4000; i < 12000; ++i) {
      in2 += double(sine[i]) * sine[i];
      out2 += double(out[i]) * out[i];
    }
    EXPECT_NEAR(10 * std::log10(out2 / in2), row.db, 0.1) << row.hz;
  }
}
