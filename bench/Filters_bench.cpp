// Effects that shape frequencies, stereo at 44100 Hz. times_realtime is of one core.
// Bands    five peaking bands, every one truncating to whole samples, against two plain loops of the same arithmetic: one
//          band after the other over a block, and one frame after the other through all bands; claim: at most 0.6 of the
//          time of the faster one.
// Others   claim: above 200 times real time, the equalisers by transforms above 60 times.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "BenchSource.h"
#include "effects/LEffectTypes.h"
#include "effects/LSPParametricEq.h"
#include "effects/LSPWahwah.h"
#include "effects/TEqualizer.h"
#include "sound/LWrap.h"

namespace {

constexpr int kBlockFrames = 4096, kBands = TEqualizer::kBands, kChannels = 2;

LSoundSource NewSource() { return LSoundSource::Make<BenchSource>(static_cast<unsigned char>(kChannels)); }

TEqualizer NewEqualizer() {
  TEqualizer equalizer;
  for (int band = 0; band < kBands; ++band) equalizer.SetLevel(band, band % 2 ? 6 : -6);
  return equalizer;
}

struct PlainBand {
  LBiquadSection c;
  double w1[kChannels] = {}, w2[kChannels] = {};
  int Next(int sample, int channel) {
    const double w = sample - c.a1 * w1[channel] - c.a2 * w2[channel];
    const double y = c.b0 * w + c.b1 * w1[channel] + c.b2 * w2[channel];
    w2[channel] = w1[channel];
    w1[channel] = w;
    return int(y);
  }
};

std::vector<PlainBand> PlainBands() {
  const TEqualizer equalizer = NewEqualizer();
  std::vector<PlainBand> bands;
  bands.reserve(kBands);
  for (int i = 0; i < kBands; ++i)
    bands.push_back(
        {PeakingSection({TEqualizer::kCentresHz[std::size_t(i)], equalizer.GetLevel(i), TEqualizer::kQ}, kDeckRate)});
  return bands;
}

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kBlockFrames);
  state.counters["times_realtime"] =
      benchmark::Counter(double(state.iterations()) * kBlockFrames / kDeckRate, benchmark::Counter::kIsRate);
}

void Run(benchmark::State& state, const LSoundSource& source) {
  std::vector<int> out(kBlockFrames * kChannels);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  Report(state);
}

void BM_FiveBands(benchmark::State& state) {
  LSoundSource source = NewSource();
  Run(state, NewEqualizer().OpenSource(source));
}

void BM_FiveBandsPlainByBand(benchmark::State& state) {
  LSoundSource source = NewSource();
  std::vector<PlainBand> bands = PlainBands();
  std::vector<int> out(kBlockFrames * kChannels);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    for (PlainBand& kept : bands) {
      PlainBand band = kept;
      for (int i = 0; i < kBlockFrames * kChannels; i += kChannels)
        for (int channel = 0; channel < kChannels; ++channel)
          out[std::size_t(i + channel)] = band.Next(out[std::size_t(i + channel)], channel);
      kept = band;
    }
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  Report(state);
}

void BM_FiveBandsPlainByFrame(benchmark::State& state) {
  LSoundSource source = NewSource();
  std::vector<PlainBand> bands = PlainBands();
  std::vector<int> out(kBlockFrames * kChannels);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    for (std::size_t i = 0; i < out.size(); ++i) {
      int sample = out[i];
      for (PlainBand& band : bands) sample = band.Next(sample, int(i % kChannels));
      out[i] = sample;
    }
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  Report(state);
}

void BM_Source(benchmark::State& state) { Run(state, NewSource()); }

void BM_Effect(benchmark::State& state) {
  LSoundSource source = NewSource();
  const std::unique_ptr<LEffect> effect = FindEffectType(int(state.range(0))).create();
  state.SetLabel(effect->GetName());
  Run(state, effect->OpenSource(source));
}

void BM_EffectAfterTheEnd(benchmark::State& state) {
  LSoundSource source = LSoundSource::Make<EndedSource>();
  const std::unique_ptr<LEffect> effect = FindEffectType(int(state.range(0))).create();
  effect->LoadValue(0, 6);
  state.SetLabel(effect->GetName());
  Run(state, effect->OpenSource(source));
}

}  // namespace

BENCHMARK(BM_Source);
BENCHMARK(BM_FiveBands);
BENCHMARK(BM_FiveBandsPlainByBand);
BENCHMARK(BM_FiveBandsPlainByFrame);
BENCHMARK(BM_Effect)->ArgName("type")->Arg(6)->Arg(10)->Arg(15)->Arg(16)->Arg(22);
BENCHMARK(BM_EffectAfterTheEnd)->ArgName("type")->Arg(10)->Arg(16)->Arg(22);

BENCHMARK_MAIN();
