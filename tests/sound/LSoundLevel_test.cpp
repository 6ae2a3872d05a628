#include "sound/LSoundLevel.h"

#include <gtest/gtest.h>

#include "support/EngineData.h"

TEST(LSoundLevel, MeasuresTheComputedPeaksMeanSquaresAndLevels) {
  for (const EngineCase* data : Engine::CasesBelow("samples/measure/")) {
    const std::vector<int> samples = data->In("samples");
    const int frames = int(samples.size()) / 2;
    const unsigned squares[] = {GetBufferMeanSquare(samples.data(), frames, 2),
                                GetBufferMeanSquareChan(0, samples.data(), frames, 2),
                                GetBufferMeanSquareChan(1, samples.data(), frames, 2)};
    std::vector<long long> measured = {GetBufferPeak(samples.data(), frames, 2)};
    for (const unsigned square : squares) measured.push_back(square);
    for (const unsigned square : squares) measured.push_back(LevelFromMeanSquare(square).Get());
    EXPECT_EQ(measured, data->Out<long long>("values")) << data->id;
  }
}

TEST(LSoundLevel, LevelOfAMeanSquare) {
  const EngineCase& data = Engine::Case("samples/level");
  std::vector<int> levels;
  for (const long long square : data.In<long long>("mean_square"))
    levels.push_back(LevelFromMeanSquare(unsigned(square)).Get());
  EXPECT_EQ(levels, data.Out("db"));
}

TEST(LSoundLevel, Edges) {
  const int loud[] = {-2147483647 - 1, 2147483647, -2147483647 - 1, 2147483647};
  EXPECT_EQ(GetBufferPeak(loud, 2, 2), 2147483647);
  EXPECT_EQ(GetBufferMeanSquare(loud, 2, 2), 4294967295U);  // saturates
  EXPECT_EQ(GetBufferMeanSquare(loud, 0, 2), 0U);
  EXPECT_EQ(GetBufferPeak(loud, 0, 2), 0);

  const int block[] = {3, -9, 1, 9, -9, 2};  // three stereo frames
  int frame = -1;
  EXPECT_EQ(GetBufferPeak(block, 3, 2, frame), 9);
  EXPECT_EQ(frame, 0);  // of the first largest magnitude
  EXPECT_EQ(GetBufferPeakChan(0, block, 3, 2), 9);
  EXPECT_EQ(GetBufferPeakChan(1, block, 2, 2), 9);
}

TEST(LSoundLevel, QuickGain) {
  for (const EngineCase* data : Engine::CasesBelow("samples/gain_quick/")) {
    std::vector<int> samples = data->In("samples");
    GainAudioBufferQuick(data->Int("gain"), samples.data(), int(samples.size()));
    EXPECT_EQ(samples, data->Out("samples")) << data->id;
  }
}

TEST(LdB, TableOfGainsAndSums) {
  const EngineCase& table = Engine::Case("samples/ldb_table");
  const auto& built = LLevel::GetTable();
  EXPECT_EQ(std::vector<int>(built.amplitude.begin(), built.amplitude.end()), table.Out("amplitude"));
  EXPECT_EQ(std::vector<int>(built.power.begin(), built.power.end()), table.Out("power"));
  for (const char* id : {"samples/ldb_sum", "samples/ldb_sum_silence"}) {
    const std::vector<int> pairs = Engine::Case(id).In("pairs");
    std::vector<int> sums;
    for (std::size_t i = 0; i < pairs.size(); i += 2) sums.push_back((LLevel(pairs[i]) + LLevel(pairs[i + 1])).Get());
    EXPECT_EQ(sums, Engine::Case(id).Out("sum")) << id;
  }
}
