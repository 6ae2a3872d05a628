// The 63-tap stereo converter from 44100 to 48000 Hz against libswresample with a filter of 64 taps in 16 bits, without
// interpolation between phases. Per second of sound; claim: at most 0.8 of libswresample's time.
#include <benchmark/benchmark.h>

#include "SwrBench.h"
#include "sound/LSPConvertRate.h"

namespace {

constexpr int kBlockFrames = 4096, kFromRate = 44100, kToRate = 48000;

void BM_Tavi(benchmark::State& state) {
  LSoundSource source = LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2));
  source = LSPConvertRate(kToRate).OpenSource(source);
  std::vector<int> out(kBlockFrames * 2);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBlockFrames);
}

void BM_Swresample(benchmark::State& state) {
  RunSwresample(state, static_cast<AVSampleFormat>(state.range(0)), kFromRate, kToRate, kBlockFrames);
}

BENCHMARK(BM_Tavi);
BENCHMARK(BM_Swresample)->Arg(AV_SAMPLE_FMT_S16)->Arg(AV_SAMPLE_FMT_S16P);

}  // namespace

BENCHMARK_MAIN();
