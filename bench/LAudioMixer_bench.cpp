// LAudioMixer::Read of two stereo inputs into four output channels, no gain at unity, against the same arithmetic as
// a plain loop compiled with -O2. Claim: at most 0.4 of the plain loop's time.
#include <benchmark/benchmark.h>

#include "BenchSource.h"
#include "sound/LAudioMixer.h"
#include "sound/LFixedPoint.h"

namespace {

constexpr int kFrames = 4096, kOutputs = 4;
constexpr int kLevels[2][4] = {{-3, -5, -7, -9}, {-2, -4, -6, -8}};  // dB, [input][output]

void BM_Mixer(benchmark::State& state) {
  LAudioMixer mixer(false);
  mixer.SetOutputChannels(kOutputs);
  LSoundSource inputs[] = {LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2)),
                           LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2))};
  for (int input = 0; input < 2; ++input) {
    mixer.AddSource(inputs[input], input);
    for (int output = 0; output < kOutputs; ++output) {
      mixer.AddChannelDesignation(input, output % 2, output);
      mixer.SetChannelDesignationVolume(input, output % 2, output, kLevels[input][output]);
    }
  }
  LSoundSource mix = mixer.OpenSource();
  std::vector<int> out(kFrames * kOutputs);
  for (auto _ : state) {
    mix.Read(out.data(), kFrames);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kFrames);
}

__attribute__((optimize("O2", "no-tree-vectorize"))) void MixPlainly(int* out, const int* in, int frames, int channel,
                                                                     int output, int gain24) {
  for (int frame = 0; frame < frames; ++frame) {
    const int sample = in[frame * 2 + channel];
    const int sampleHigh = sample >> 12, sampleLow = sample & 0xfff, gainHigh = gain24 >> 12, gainLow = gain24 & 0xfff;
    out[frame * kOutputs + output] +=
        gainHigh * sampleHigh + (sampleLow * gainHigh >> 12) + (sampleHigh * gainLow >> 12);
  }
}

void BM_PlainLoop(benchmark::State& state) {
  BenchSource inputs[] = {BenchSource(2), BenchSource(2)};
  std::vector<int> work(kFrames * 2), out(kFrames * kOutputs);
  for (auto _ : state) {
    std::fill(out.begin(), out.end(), 0);
    for (int input = 0; input < 2; ++input) {
      inputs[input].Read(work.data(), kFrames);
      for (int output = 0; output < kOutputs; ++output)
        MixPlainly(out.data(), work.data(), kFrames, output % 2, output,
                   LLevel(kLevels[input][output]).AmplitudeGain24());
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kFrames);
}

BENCHMARK(BM_Mixer);
BENCHMARK(BM_PlainLoop);

}  // namespace

BENCHMARK_MAIN();
