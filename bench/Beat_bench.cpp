// The tempo of a four-minute track, refined, against TempoTrackV2 of qm-dsp with its complex-domain onset function (steps
// of 512, frames of 1024). Digital silence after a burst as well, on a thread that does not flush denormal numbers.
// Claim: at most 1.5 times the time of qm-dsp.
#include <benchmark/benchmark.h>
#include <dsp/onsets/DetectionFunction.h>
#include <dsp/tempotracking/TempoTrackV2.h>

#include <cmath>
#include <vector>

#include "tempo/LBeatDetection.h"
#include "tempo/TTempoRefiner.h"

namespace {

constexpr int kFrames = 240 * kDeckRate;
constexpr int kBeatFrames = 21168;  // 125 BPM

// Drums over a chord and its noise: onsets in every band.
std::vector<int> Music() {
  std::vector<int> samples;
  samples.reserve(kFrames);
  unsigned seed = 1;
  for (int i = 0; i < kFrames; ++i) {
    const double time = double(i) / kDeckRate, beat = double(i % kBeatFrames) / kDeckRate;
    const double half = double((i + kBeatFrames / 2) % kBeatFrames) / kDeckRate;
    seed = seed * 1664525U + 1013904223U;
    const double noise = int(seed) / 2147483648.0;
    const int chord = i / kBeatFrames / 4 % 4;
    samples.push_back(int(200000 * std::exp(-beat * 12) * std::sin(350 * beat) + 80000 * noise * std::exp(-half * 60) +
                          5000 * noise + 60000 * std::sin(2 * M_PI * (220 + 30 * chord) * time) * std::exp(-half * 3)));
  }
  return samples;
}

std::vector<int> Silence() {
  std::vector<int> samples(kFrames);
  samples[0] = kPeak16;
  return samples;
}

class TSamples final : public LSoundSourceBase {
 public:
  explicit TSamples(const std::vector<int>& samples) : LSoundSourceBase(kDeckRate, 1, kPeak16), samples_(samples) {}
  void Read(int* out, int frames) override {
    for (; frames > 0; --frames, ++position_) *out++ = position_ < kFrames ? samples_[unsigned(position_)] : 0;
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kFrames; }
  void Seek(int frame) override { position_ = frame; }

 private:
  const std::vector<int>& samples_;
  int position_ = 0;
};

void BM_Tavi(benchmark::State& state, const std::vector<int>& samples) {
  LProcessInterfaceVoid process;
  for (auto _ : state) {
    LProcessSoundSourceBPMDetectionData data;
    data.source = LSoundSource::Make<TSamples>(samples);
    Process(process, data);
    RefineTempo(data);
    state.counters["bpm"] = data.bpm;
    state.counters["onsets"] = double(data.beats.size());
  }
}

void BM_Qm(benchmark::State& state, const std::vector<int>& samples) {
  constexpr int kStep = 512, kFrame = 1024;
  for (auto _ : state) {
    DetectionFunction onsets(DFConfig{kStep, kFrame, DF_COMPLEXSD, 3, false, -1, -1});
    std::vector<double> strengths, frame(kFrame), periods, tempos, beats;
    for (int at = 0; at + kFrame <= kFrames; at += kStep) {
      for (int i = 0; i < kFrame; ++i) frame[unsigned(i)] = samples[unsigned(at + i)] / double(kFullScale);
      strengths.push_back(onsets.processTimeDomain(frame.data()));
    }
    strengths.erase(strengths.begin(), strengths.begin() + 2);  // the function settles
    TempoTrackV2 tracker(kDeckRate, kStep);
    periods.resize(strengths.size());
    tracker.calculateBeatPeriod(strengths, periods, tempos);
    tracker.calculateBeats(strengths, periods, beats);
    state.counters["bpm"] = tempos.empty() ? 0 : tempos[tempos.size() / 2];
  }
}

const std::vector<int> kMusic = Music(), kSilence = Silence();

BENCHMARK_CAPTURE(BM_Tavi, music, kMusic)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Qm, music, kMusic)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Tavi, silence, kSilence)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Qm, silence, kSilence)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
