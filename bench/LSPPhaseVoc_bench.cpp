// Key lock of a stereo track at 44100 Hz against Rubber Band's faster real-time engine: CPU time for a second of output,
// in blocks of the same size. The argument is the speed in percent. Claim: at most 0.4 of Rubber Band's time.
#include <benchmark/benchmark.h>
#include <rubberband/RubberBandStretcher.h>

#include <cmath>
#include <type_traits>

#include "BenchSource.h"
#include "tempo/LSPPhaseVoc.h"

namespace {

constexpr int kBlockFrames = 1024;

// Chords with drums: a spectrum with as many peaks as music has, in noise that has many more.
class MusicSource final : public LSoundSourceBase {
 public:
  MusicSource() : LSoundSourceBase(kDeckRate, 2, kPeak16), samples_(std::size_t(kLoopFrames) * 2) {
    unsigned seed = 1;
    for (int frame = 0; frame < kLoopFrames; ++frame) {
      const double time = double(frame) / kDeckRate;
      double chord = 0;
      for (int voice = 0; voice < 24; ++voice)
        chord += std::sin(6.2831853 * time * 55 * (voice + 1) * 1.0003) / (voice + 2);
      const double drum = std::exp(-20 * std::fmod(time, 0.5));
      seed = seed * 1664525U + 1013904223U;
      const double hiss = int(seed) / 2147483648.0;
      samples_[std::size_t(frame) * 2] = int(kFullScale * (0.2 * chord + 0.4 * drum * hiss));
      samples_[std::size_t(frame) * 2 + 1] = int(kFullScale * (0.2 * chord * std::cos(time) - 0.3 * drum * hiss));
    }
  }
  void Read(int* out, int frames) override {
    for (int frame = 0; frame < frames; ++frame, position_ = (position_ + 1) % kLoopFrames)
      for (int channel = 0; channel < 2; ++channel)
        *out++ = samples_[std::size_t(position_) * 2 + std::size_t(channel)];
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kEndless; }

 private:
  static constexpr int kLoopFrames = 2 * kDeckRate;
  std::vector<int> samples_;
  int position_ = 0;
};

template <class Source>
LSoundSource Input() {
  if constexpr (std::is_same_v<Source, MusicSource>)
    return LSoundSource::Make<MusicSource>();
  else
    return LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2));
}

void CountSeconds(benchmark::State& state, double frames) {
  state.counters["s_per_s"] =
      benchmark::Counter(frames / kDeckRate, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class Source>
void BM_Tavi(benchmark::State& state) {
  LSoundSource source = Input<Source>();
  source = LSPPhaseVoc(double(state.range(0)) / 100, true).OpenSource(source);
  std::vector<int> out(kBlockFrames * 2);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    benchmark::ClobberMemory();
  }
  CountSeconds(state, double(state.iterations()) * kBlockFrames);
}

template <class Source>
void BM_RubberBandFaster(benchmark::State& state) {
  using RubberBand::RubberBandStretcher;
  RubberBandStretcher stretcher(kDeckRate, 2,
                                RubberBandStretcher::OptionProcessRealTime | RubberBandStretcher::OptionEngineFaster,
                                100 / double(state.range(0)), 1);
  LSoundSource source = Input<Source>();
  std::vector<int> samples(kBlockFrames * 2);
  std::vector<float> left(kBlockFrames), right(kBlockFrames);
  float* const planes[] = {left.data(), right.data()};
  double made = 0;
  for (auto _ : state) {
    while (stretcher.available() < kBlockFrames) {
      source.Read(samples.data(), kBlockFrames);
      for (std::size_t i = 0; i < kBlockFrames; ++i) {
        left[i] = float(samples[2 * i]) / kFullScale;
        right[i] = float(samples[2 * i + 1]) / kFullScale;
      }
      stretcher.process(planes, kBlockFrames, false);
    }
    made += double(stretcher.retrieve(planes, kBlockFrames));
    benchmark::ClobberMemory();
  }
  CountSeconds(state, made);
}

void BM_Construction(benchmark::State& state) {
  LSoundSource source = LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2));
  for (auto _ : state) benchmark::DoNotOptimize(LSPPhaseVoc(1.08, true).OpenSource(source));
}

BENCHMARK(BM_Tavi<MusicSource>)->Arg(108)->Arg(92);
BENCHMARK(BM_RubberBandFaster<MusicSource>)->Arg(108)->Arg(92);
BENCHMARK(BM_Tavi<BenchSource>)->Arg(108)->Arg(92);
BENCHMARK(BM_RubberBandFaster<BenchSource>)->Arg(108)->Arg(92);
BENCHMARK(BM_Construction)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
