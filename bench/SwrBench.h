// libswresample as the yardstick of our converters: a filter of 64 taps in 16 bits, without interpolation between
// phases, over stereo noise.
#pragma once
#include <benchmark/benchmark.h>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "BenchSource.h"

// Interleaved (AV_SAMPLE_FMT_S16) or planar (AV_SAMPLE_FMT_S16P), which spares it the interleaving.
inline void RunSwresample(benchmark::State& state, AVSampleFormat format, int fromRate, int toRate, int blockFrames) {
  const bool planar = format == AV_SAMPLE_FMT_S16P;
  AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
  SwrContext* context = nullptr;
  swr_alloc_set_opts2(&context, &stereo, format, toRate, &stereo, format, fromRate, 0, nullptr);
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
  const int inFrames = int((long long)blockFrames * fromRate / toRate);
  long long made = 0;
  for (auto _ : state) {
    made += swr_convert(context, outPlanes, kMaxBlockFrames, inPlanes, inFrames);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(made);
  swr_free(&context);
}
