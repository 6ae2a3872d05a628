#include "tempo/LSPPhaseVoc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"
#include "tempo/LSPSpeed.h"
#include "tempo/LSpectralPeaks.h"

namespace {

LSoundSource Vocoded(LSoundSource input, double ratio, bool outputTime) {
  return LSPPhaseVoc(ratio, outputTime).OpenSource(input);
}

double RelativeRms(const std::vector<int>& got, const std::vector<int>& wanted) {
  double error = 0, all = 0;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    error += std::pow(double(got[i]) - wanted[i], 2);
    all += std::pow(double(wanted[i]), 2);
  }
  return all > 0 ? std::sqrt(error / all) : error;
}

}  // namespace

TEST(LSpectralPeaks, AgreeWithTheComputedData) {
  for (const char* id : {"vocoder/find_peaks", "vocoder/find_peaks_flat"}) {
    const auto magnitudes = Engine::Case(id).In<double>("magnitudes");
    std::vector<int> peaks(magnitudes.size());
    peaks.resize(std::size_t(FindPeaks(magnitudes.data(), int(magnitudes.size()), peaks.data(), -40)));
    EXPECT_EQ(peaks, Engine::Case(id).Out("peaks")) << id;
  }

  const EngineCase& unwrap = Engine::Case("vocoder/unwrap");
  const auto phase = unwrap.In<double>("phase"), wantedPhase = unwrap.Out<double>("out");
  for (const LTempoKernels* form : UsableTempoKernels())
    for (const std::size_t count : {phase.size(), std::size_t(7), std::size_t(0)}) {
      std::vector<double> smooth(phase.size());
      form->unwrap(smooth.data(), phase.data(), int(count));
      for (std::size_t i = 0; i < count; ++i) ASSERT_NEAR(smooth[i], wantedPhase[i], 1e-9) << form->name << i;
    }

  const EngineCase& regions = Engine::Case("vocoder/regions");
  const auto frequencies = regions.In<double>("freq");
  const auto peaks = regions.In("peaks");
  std::vector<int> starts(peaks.size() + 1), regionOf(frequencies.size());
  FindRegionStarts(frequencies.data(), int(frequencies.size()), peaks.data(), int(peaks.size()), starts.data(),
                   regionOf.data());
  EXPECT_EQ(starts, regions.Out("start"));
  EXPECT_EQ(regionOf, regions.Out("region"));
}

TEST(LSRCPhaseVoc, HasTheComputedGeometry) {
  const auto rows = Engine::Case("vocoder/geometry").In<double>("rows");
  std::vector<int> got;
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    const LPhaseVocGeometry geometry(int(rows[i]), rows[i + 1], LPhaseVocGeometry::kHopShift);
    got.insert(got.end(), {geometry.size, geometry.synthesisHop, geometry.analysisHop});
  }
  EXPECT_EQ(got, Engine::Case("vocoder/geometry").Out("values"));
}

TEST(LSRCPhaseVoc, PlaysTheComputedWaveforms) {
  for (const EngineCase* data : Engine::CasesBelow("vocoder/vocoder/")) {
    LSoundSource source =
        Vocoded(LSoundSource(NewTestSource(*data)), data->Decimal("r"), data->Int("output_time") != 0);
    const ScriptResult result = RunSourceScript(*data, source);
    EXPECT_EQ(result.ints, data->Out("ints")) << data->id;
    EXPECT_LE(RelativeRms(result.samples, data->Out("samples")), data->Tolerance("samples").second) << data->id;
  }
}

// Levels and pitch are kept; measured from frame 2048 on, the right channel by the turn of its phase against 880 Hz.
TEST(LSRCPhaseVoc, KeepsLevelAndPitch) {
  const auto rms = [](const std::vector<int>& samples, std::size_t from, std::size_t channel) {
    double sum = 0;
    for (std::size_t i = 2 * from + channel; i < samples.size(); i += 2) sum += double(samples[i]) * samples[i];
    return std::sqrt(sum / (double(samples.size()) / 2 - double(from)));
  };
  const auto phaseAt = [](const std::vector<int>& samples, std::size_t from) {
    std::complex<double> sum = 0;
    for (std::size_t i = from; i < from + 1000; ++i)
      sum += double(samples[2 * i + 1]) * std::polar(1.0, -2 * std::numbers::pi * 880 * double(i) / 44100);
    return std::arg(sum);
  };
  for (const EngineCase* data : Engine::CasesBelow("vocoder/facts/")) {
    const std::vector<int> input = data->In("source");
    LSoundSource source = Vocoded(LSoundSource(NewTestSource(*data)), data->Decimal("r"), false);
    const std::vector<int> samples = RunSourceScript(*data, source).samples;
    const auto wanted = data->Out<double>("level_db");
    for (const std::size_t channel : {0U, 1U})
      EXPECT_NEAR(20 * std::log10(rms(samples, 2048, channel) / rms(input, 0, channel)), wanted[channel],
                  data->Tolerance("level_db").second)
          << data->id;
    const double turned = std::remainder(phaseAt(samples, 3000) - phaseAt(samples, 2100), 2 * std::numbers::pi);
    EXPECT_NEAR(880 + turned / (2 * std::numbers::pi) * 44100 / 900, data->Out<double>("frequency")[0],
                data->Tolerance("frequency").second)
        << data->id;
  }
}

// 1.07 asks for hops of 34.24 frames. Where the input has been read to tells the speed.
TEST(LSRCPhaseVoc, HoldsItsSpeedExactly) {
  for (const double ratio : {1.07, 0.917}) {
    auto* track = new TestSource(std::vector<int>(2, 0), 8000, 1);
    LSoundSource source = Vocoded(LSoundSource(track), ratio, true);
    source.Seek(0);
    const int readAtStart = track->GetPositionSample();
    constexpr int kFrames = 32 * 30000;  // two minutes
    std::vector<int> block(3200);
    for (int done = 0; done < kFrames; done += 3200) source.Read(block.data(), 3200);
    EXPECT_NEAR(track->GetPositionSample() - readAtStart, kFrames * ratio, 1) << ratio;
  }
}

TEST(LSRCPhaseVoc, CountsItsPositionInTheTimeAsked) {
  struct Case {
    bool outputTime;
    int end, seek, position;
    bool answersOffset;
    long offset;
    int adjusted;
  };
  const Case cases[] = {{false, 60000, 9000, 9000, true, -1250, -125}, {true, 48000, 9000, 9000, false, -1000, -100}};
  for (const Case& wanted : cases) {
    auto* track = new TestSource(std::vector<int>(120000, 1000), 44100, 2);
    LSoundSource source = Vocoded(LSoundSource(track), 1.25, wanted.outputTime);
    EXPECT_EQ(source.GetPositionSample(), 0);
    EXPECT_EQ(source.GetEndSample(), wanted.end);
    source.Seek(wanted.seek);
    EXPECT_EQ(source.GetPositionSample(), wanted.position);
    long value = -1000;
    EXPECT_EQ(source.ControlMessage(lccRelativeOffset, &value), wanted.answersOffset);
    EXPECT_EQ(value, wanted.offset);
    EXPECT_FALSE(source.ControlMessage(lccPullBack, &value));
    EXPECT_EQ(source.AdjustRelativeOffset(-100, 0), wanted.adjusted);
    track->streaming = true;
    EXPECT_EQ(source.GetEndSample(), 60000 - 2048);
  }
}

TEST(LSPPhaseVoc, ChoosesByTheRatio) {
  // Sound in the first second, then a second of silence.
  std::vector<int> samples(88200);
  for (std::size_t i = 0; i < 44100; ++i) samples[i] = int(100000 * std::sin(double(i) * 0.05));
  const auto open = [&](double ratio) {
    return Vocoded(LSoundSource(new TestSource(samples, 44100, 1)), ratio, false);
  };
  EXPECT_TRUE(dynamic_cast<LSRCPhaseVoc*>(&*open(8)));
  EXPECT_TRUE(dynamic_cast<LSRCSpeed*>(&*open(8.0001)));
  EXPECT_TRUE(dynamic_cast<LSRCSpeed*>(&*open(-8.0001)));
  LSoundSource backward = open(-0.9);
  backward.Seek(88200);
  std::vector<int> out;
  ReadInto(out, backward, 100000);
  const auto loudest = [&](int from, int to) { return *std::max_element(out.begin() + from, out.begin() + to); };
  EXPECT_EQ(loudest(0, 47000), 0);  // the silence lasts 44100 / 0.9 = 49000 frames, less half a transform
  EXPECT_NEAR(loudest(52000, 96000), 100000, 20000);
}

// Short and odd tracks at every ratio there is: the sanitizers watch, the levels stay bounded, nothing is allocated, the
// size of blocks does not matter.
TEST(LSRCPhaseVoc, BearsAnyTrackAndRatio) {
  struct Track {
    int rate, channels, frames;
  };
  const Track tracks[] = {{44100, 2, 0},    {44100, 2, 1},  {44100, 1, 100},   {8000, 1, 9000},
                          {44100, 6, 9000}, {1000, 3, 900}, {192000, 2, 9000}, {1, 1, 5}};
  for (const Track& track : tracks)
    for (const double ratio : {1e-9, 0.003, 0.5, 1.08, 3.99, 8.0, -0.9, std::nan("")}) {
      SCOPED_TRACE(testing::Message() << track.rate << " Hz, " << track.frames << " frames, ratio " << ratio);
      std::vector<int> wanted;
      for (const int block : {3000, 701}) {
        auto noise = Engine::Noise(3, kFullScale, std::size_t(track.frames * track.channels));
        auto* input = new TestSource(std::move(noise), track.rate, static_cast<unsigned char>(track.channels));
        LSoundSource source = Vocoded(LSoundSource(input), ratio, true);
        ASSERT_TRUE(source.IsOk());
        source.Seek(500);
        std::vector<int> samples(std::size_t(3000 * track.channels));
        const AllocationGuard guard;
        for (int done = 0; done < 3000; done += block)
          source.Read(samples.data() + done * track.channels, std::min(block, 3000 - done));
        EXPECT_EQ(guard.Count(), 0);
        EXPECT_GE(source.GetPositionSample(), 0);
        for (const int sample : samples) ASSERT_LT(std::abs(sample), 4 * kFullScale);
        if (block == 3000) wanted = samples;
        EXPECT_TRUE(samples == wanted);
      }
    }
}
