// The 63-tap stereo converter from 44100 to 48000 Hz against libswresample with a filter of 64 taps in 16 bits, without
// interpolation between phases. Per second of sound; claim: at most 0.8 of libswresample's time.
#include <benchmark/benchmark.h>

#include "sound/LSPConvertRate.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "BenchSource.h"

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

// Interleaved (AV_SAMPLE_FMT_S16) or planar (AV_SAMPLE_FMT_S16P), which spares it the interleaving.
void BM_Swresample(benchmark::State& state) {
  const auto format = static_cast<AVSampleFormat>(state.range(0));
  const bool planar = format == AV_SAMPLE_FMT_S16P;
  AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
  SwrContext* context = nullptr;
  swr_alloc_set_opts2(&context, &stereo, format, kToRate, &stereo, format, kFromRate, 0, nullptr);
  av_opt_set_sample_fmt(context, "internal_sample_fmt", AV_SAMPLE_FMT_S16P, 0);
  av_opt_set_int(context, "filter_size", 64, 0);
  av_opt_set_int(context, "linear_interp", 0, 0);
  av_opt_set_int(context, "exact_rational", 1, 0);
  if (swr_init(context) < 0) return state.SkipWithError("swr_init failed");

  BenchSource noise(2);
  std::vector<int> samples(kMaxBlockFrames * 2);
  noise.Read(samples.data(), kMaxBlockFrames);
  std::vector<short> in(samples.size()), out(samples.size() * 2);
  for (std::size_t i = 0; i < in.size(); ++i) in[i] = static_cast<short>(samples[i] >> 4);
  const auto* inBytes = reinterpret_cast<const std::uint8_t*>(in.data());
  auto* outBytes = reinterpret_cast<std::uint8_t*>(out.data());
  const std::uint8_t* inPlanes[] = {inBytes, planar ? inBytes + kMaxBlockFrames * 2 : nullptr};
  std::uint8_t* outPlanes[] = {outBytes, planar ? outBytes + kMaxBlockFrames * 2 : nullptr};
  long long made = 0;
  for (auto _ : state) {
    const int inFrames = kBlockFrames * kFromRate / kToRate;
    made += swr_convert(context, outPlanes, kMaxBlockFrames, inPlanes, inFrames);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(made);
  swr_free(&context);
}

BENCHMARK(BM_Tavi);
BENCHMARK(BM_Swresample)->Arg(AV_SAMPLE_FMT_S16)->Arg(AV_SAMPLE_FMT_S16P);

}  // namespace

BENCHMARK_MAIN();
