// Effects by delays and the hall, stereo at 44100 Hz, each over a source of noise at full scale. times_realtime is of one
// core; claim: above 200 each, also when the sound has ended and the tails die away.
// Hall     against two plain loops of the same filters: one frame after the other through all of them, and one filter after
//          the other over a block; claim: at most 0.8 of the time of the faster one, in the same run.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "BenchSource.h"
#include "effects/LEffectTypes.h"
#include "effects/LSPReverb3.h"
#include "sound/LWrap.h"

namespace {

constexpr int kBlockFrames = 4096, kChannels = 2;

LSoundSource NewSource() { return LSoundSource::Make<BenchSource>(static_cast<unsigned char>(kChannels)); }

template <class Work>
void Measure(benchmark::State& state, Work work) {
  std::vector<int> out(kBlockFrames * kChannels);
  for (auto _ : state) {
    work(out);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.counters["times_realtime"] =
      benchmark::Counter(double(state.iterations()) * kBlockFrames / kDeckRate, benchmark::Counter::kIsRate);
}

void Run(benchmark::State& state, const LSoundSource& source) {
  Measure(state, [&](std::vector<int>& out) { source.Read(out.data(), kBlockFrames); });
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
  state.SetLabel(effect->GetName());
  Run(state, effect->OpenSource(source));
}

// Doppler needs an end. Long enough that one pass through a track is nearly all there is to measure.
void BM_Doppler(benchmark::State& state) {
  class Track final : public LSoundSourceBase {
   public:
    Track() : LSoundSourceBase(kDeckRate, kChannels, kPeak16), noise_(NewSource()) {}
    void Read(int* out, int frames) override { noise_.Read(out, frames); }
    int GetPositionSample() const override { return 0; }
    int GetEndSample() const override { return 60 * kDeckRate; }

   private:
    LSoundSource noise_;
  };
  LSoundSource source = LSoundSource::Make<Track>();
  LSoundSource doppler = FindEffectType(21).create()->OpenSource(source);
  Measure(state, [&](std::vector<int>& out) {
    if (doppler.GetPositionSample() > 59 * kDeckRate) {
      state.PauseTiming();
      doppler.Seek(0);
      state.ResumeTiming();
    }
    doppler.Read(out.data(), kBlockFrames);
  });
}

// The plain loops

constexpr float kFeedback = 0.707F, kDamping = 0.08F, kWet = 3, kDry = 2, kLeast = 1.17549435e-38F;

struct PlainComb {
  std::vector<float> line;
  std::size_t index = 0;
  float store = 0;
  float Next(float x) {
    const float out = line[index];
    store = out * (1 - kDamping) + store * kDamping;
    if (std::abs(store) < kLeast) store = 0;
    line[index] = x + store * kFeedback;
    if (++index == line.size()) index = 0;
    return out;
  }
};

struct PlainAllPass {
  std::vector<float> line;
  std::size_t index = 0;
  float Next(float x) {
    float late = line[index];
    if (std::abs(late) < kLeast) late = 0;
    line[index] = late * 0.5F + x;
    if (++index == line.size()) index = 0;
    return late - x;
  }
};

struct PlainHall {
  std::array<std::array<PlainComb, kReverbCombs>, kReverbSides> combs;
  std::array<std::array<PlainAllPass, kReverbAllPasses>, kReverbSides> allPasses;
  PlainHall() {
    const std::vector<int> lengths = LSRCReverb3::LineFrames(kDeckRate);
    auto length = lengths.begin();
    for (auto& side : combs)
      for (PlainComb& comb : side) comb.line.resize(std::size_t(*length++));
    for (auto& side : allPasses)
      for (PlainAllPass& pass : side) pass.line.resize(std::size_t(*length++));
  }
};

void BM_HallPlainByFrame(benchmark::State& state) {
  LSoundSource source = NewSource();
  PlainHall hall;
  Measure(state, [&](std::vector<int>& out) {
    source.Read(out.data(), kBlockFrames);
    for (std::size_t i = 0; i < out.size(); i += kChannels) {
      const float x = (float(out[i]) + float(out[i + 1])) * 0.015F;
      for (std::size_t side = 0; side < kReverbSides; ++side) {
        float sum = 0;
        for (PlainComb& comb : hall.combs[side]) sum += comb.Next(x);
        for (PlainAllPass& pass : hall.allPasses[side]) sum = pass.Next(sum);
        out[i + side] = int(sum * kWet + float(out[i + side]) * kDry);
      }
    }
  });
}

void BM_HallPlainByFilter(benchmark::State& state) {
  LSoundSource source = NewSource();
  PlainHall hall;
  std::vector<float> x(kBlockFrames), sum(kBlockFrames);
  Measure(state, [&](std::vector<int>& out) {
    source.Read(out.data(), kBlockFrames);
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = (float(out[2 * i]) + float(out[2 * i + 1])) * 0.015F;
    for (std::size_t side = 0; side < kReverbSides; ++side) {
      std::fill(sum.begin(), sum.end(), 0.0F);
      for (PlainComb& comb : hall.combs[side])
        for (std::size_t i = 0; i < x.size(); ++i) sum[i] += comb.Next(x[i]);
      for (PlainAllPass& pass : hall.allPasses[side])
        for (float& sample : sum) sample = pass.Next(sample);
      for (std::size_t i = 0; i < x.size(); ++i)
        out[2 * i + side] = int(sum[i] * kWet + float(out[2 * i + side]) * kDry);
    }
  });
}

void BM_Hall(benchmark::State& state) {
  const auto form = std::size_t(state.range(0));
  if (form >= UsableFilterKernels().size()) return state.SkipWithError("not on this processor");
  const LFilterKernels& kernels = *UsableFilterKernels()[form];
  state.SetLabel(kernels.name);
  Run(state, LSoundSource::Make<LSRCReverb3>(NewSource(), LReverbSettings{kFeedback, kDamping, kWet, kDry}, kernels));
}

}  // namespace

BENCHMARK(BM_Source);
BENCHMARK(BM_Hall)->ArgName("form")->Arg(0)->Arg(1);
BENCHMARK(BM_HallPlainByFrame);
BENCHMARK(BM_HallPlainByFilter);
BENCHMARK(BM_Effect)->ArgName("type")->Arg(3)->Arg(4)->Arg(7)->Arg(8)->Arg(20);
BENCHMARK(BM_EffectAfterTheEnd)->ArgName("type")->Arg(3)->Arg(4)->Arg(7)->Arg(8)->Arg(20);
BENCHMARK(BM_Doppler);

BENCHMARK_MAIN();
