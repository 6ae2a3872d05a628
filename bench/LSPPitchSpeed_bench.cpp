// A deck's pitch stage in stereo, exact, at the ratios of a slider.
// Warm     against libswresample with a filter of 64 taps in 16 bits, without interpolation between phases, in
//          interleaved and planar form; claim: at most 0.8 of its time once the rows of the filter are computed.
// Cold     the first second after opening, read in refills of 8192 frames, every row computed on its way; claim: no refill
//          above 5 ms of the processor. open_us is the opening.
// Tone     15 kHz at plus 8 %: what is left beside the tone, in dB relative to it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>

#include "SwrBench.h"
#include "tempo/LSPPitchSpeed.h"

namespace {

constexpr int kBlockFrames = 4096;
constexpr double kPerUnit = 1e6;  // ratios are given in millionths

double Ratio(const benchmark::State& state) { return double(state.range(0)) / kPerUnit; }

LSoundSource Pitched(double ratio) {
  LSoundSource source = LSoundSource::Make<BenchSource>(static_cast<unsigned char>(2));
  return LSPPitchSpeed(ratio, true).OpenSource(source);
}

double CpuSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

void BM_Tavi(benchmark::State& state) {
  const LSoundSource source = Pitched(Ratio(state));
  std::vector<int> out(kBlockFrames * 2);
  for (int frames = 0; frames < 2 * kDeckRate; frames += kBlockFrames) source.Read(out.data(), kBlockFrames);
  for (auto _ : state) {
    source.Read(out.data(), kBlockFrames);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBlockFrames);
}

void BM_Swresample(benchmark::State& state) {
  const int toRate = PitchedRate(kDeckRate, Ratio(state));
  RunSwresample(state, static_cast<AVSampleFormat>(state.range(1)), kDeckRate, toRate, kBlockFrames);
}

void BM_Cold(benchmark::State& state) {
  std::vector<int> out(kMaxBlockFrames * 2);
  double worst = 0, opening = 0;
  for (auto _ : state) {
    const double start = CpuSeconds();
    const LSoundSource source = Pitched(Ratio(state));
    opening = std::max(opening, CpuSeconds() - start);
    for (int frames = 0; frames < kDeckRate; frames += kMaxBlockFrames) {
      const double before = CpuSeconds();
      source.Read(out.data(), kMaxBlockFrames);
      worst = std::max(worst, CpuSeconds() - before);
    }
  }
  state.counters["max_read_ms"] = worst * 1e3;
  state.counters["max_open_us"] = opening * 1e6;
}

// A tone of one channel, for ever.
class ToneSource final : public LSoundSourceBase {
 public:
  explicit ToneSource(double hz) : LSoundSourceBase(kDeckRate, 1, kPeak16), step_(2 * M_PI * hz / kDeckRate) {}
  void Read(int* out, int frames) override {
    for (int i = 0; i < frames; ++i) out[i] = int(std::lround(0.5 * kFullScale * std::sin(step_ * position_++)));
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kEndless; }
  void Seek(int frame) override { position_ = frame; }

 private:
  double step_;
  int position_ = 0;
};

// Fits a sine and a cosine of the tone and compares what they leave with what they take.
double BesideToneDb(const std::vector<int>& samples, double step) {
  double ss = 0, cc = 0, sc = 0, sy = 0, cy = 0, all = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double s = std::sin(step * double(i)), c = std::cos(step * double(i)), y = samples[i];
    ss += s * s, cc += c * c, sc += s * c, sy += s * y, cy += c * y, all += y * y;
  }
  const double determinant = ss * cc - sc * sc;
  const double a = (sy * cc - cy * sc) / determinant, b = (cy * ss - sy * sc) / determinant;
  const double tone = a * sy + b * cy;
  return 10 * std::log10((all - tone) / tone);
}

void BM_Tone(benchmark::State& state) {
  constexpr double kHz = 15000;
  constexpr int kFrames = 65536, kLeadFrames = 1000;
  std::vector<int> out(kFrames);
  for (auto _ : state) {
    LSoundSource source = LSoundSource::Make<ToneSource>(kHz);
    source = LSPPitchSpeed(Ratio(state), true).OpenSource(source);
    source.Read(out.data(), kLeadFrames);
    source.Read(out.data(), kFrames);
  }
  state.counters["beside_tone_db"] = BesideToneDb(out, 2 * M_PI * kHz / PitchedRate(kDeckRate, Ratio(state)));
}

// 4537, 2663, 33923 and 88003 rows; more than the last there cannot be on a deck.
constexpr int kRatios[] = {1080000, 920000, 1300000, 501116};
void EachRatio(benchmark::internal::Benchmark* benchmark) {
  for (const int ratio : kRatios) benchmark->Arg(ratio);
}
void EachRatioAndFormat(benchmark::internal::Benchmark* benchmark) {
  for (const int ratio : kRatios)
    for (const int format : {AV_SAMPLE_FMT_S16, AV_SAMPLE_FMT_S16P}) benchmark->Args({ratio, format});
}
BENCHMARK(BM_Tavi)->Apply(EachRatio);
BENCHMARK(BM_Swresample)->Apply(EachRatioAndFormat);
BENCHMARK(BM_Cold)->Apply(EachRatio)->Iterations(20);
BENCHMARK(BM_Tone)->Arg(kRatios[0])->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
