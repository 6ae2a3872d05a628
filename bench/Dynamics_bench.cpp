// Effects that act on level, pan and the plain gain, stereo at 44100 Hz, each over a source of noise at full scale, at which
// every one of them works. times_realtime is of one core; claim: above 200 each.
// Copy     what the source itself costs.
#include <benchmark/benchmark.h>

#include <vector>

#include "BenchSource.h"
#include "effects/LEffectTypes.h"
#include "effects/LSPDRCSimple.h"
#include "effects/LSPPan.h"

namespace {

constexpr int kBlockFrames = 4096, kChannels = 2;

LSoundSource NewSource() { return LSoundSource::Make<BenchSource>(static_cast<unsigned char>(kChannels)); }

void Run(benchmark::State& state, const LSoundSource& source) {
  std::vector<int> out(kBlockFrames * kChannels);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.counters["times_realtime"] =
      benchmark::Counter(double(state.iterations()) * kBlockFrames / kDeckRate, benchmark::Counter::kIsRate);
}

void BM_Copy(benchmark::State& state) { Run(state, NewSource()); }

void BM_Effect(benchmark::State& state) {
  LSoundSource source = NewSource();
  const std::unique_ptr<LEffect> effect = FindEffectType(int(state.range(0))).create();
  effect->SetPreset(0);
  state.SetLabel(effect->GetName());
  Run(state, effect->OpenSource(source));
}

void BM_DrawnCompressor(benchmark::State& state) {
  LSoundSource source = NewSource();
  Run(state, LSPDRCPointLine({{-60, -50}, {0, -20}}).OpenSource(source));
}

void BM_Pan(benchmark::State& state) {
  LSoundSource source = NewSource();
  LSPPan pan;
  pan.SetPreset(0);
  Run(state, pan.OpenSource(source));
}

}  // namespace

BENCHMARK(BM_Copy);
BENCHMARK(BM_Effect)->ArgName("type")->Arg(1)->Arg(2)->Arg(5)->Arg(19);
BENCHMARK(BM_DrawnCompressor);
BENCHMARK(BM_Pan);

BENCHMARK_MAIN();
