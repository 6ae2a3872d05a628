// A scratch over a track of 4 minutes from a wave file: what a read costs the feeder when the hand leaves the window,
// and what it costs within it.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "audiofile/LWaveFile.h"
#include "audiofile/TSourceOpen.h"
#include "console/TScratch.h"
#include "sound/LSoundSink.h"

namespace {

constexpr int kTrackFrames = 240 * kDeckRate;

// Noise, in a file that goes with the program.
struct Track {
  Track() {
    LSoundSink sink = LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0);
    std::vector<int> block(2 * kMaxBlockFrames);
    unsigned seed = 1;
    for (int at = 0; at < kTrackFrames; at += kMaxBlockFrames) {
      for (int& sample : block) sample = int(seed = seed * 1664525U + 1013904223U) >> 13;
      sink.Write(block.data(), std::min(kMaxBlockFrames, kTrackFrames - at));
    }
  }
  ~Track() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  const std::string path = std::filesystem::temp_directory_path() / "tavi_bench_scratch.wav";
};

LSoundSource OpenTrack() {
  static const Track track;
  LSoundSource source;
  TSourceOpenWithConvert(source, track.path);
  return source;
}

double MsOf(const auto& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// 100 targets scattered over the track, each outside the window: median and longest in ms.
void BM_Refill(benchmark::State& state) {
  LTransitionManager transitions;
  LSoundSource track = OpenTrack();
  TSRCScratch hand(track, 0, transitions);
  std::vector<int> out(2 * kMaxBlockFrames);
  std::vector<double> times;
  unsigned seed = 7;
  for (auto _ : state) {
    times.clear();
    while (times.size() < 100) {
      seed = seed * 1664525U + 1013904223U;
      const int target = int(seed % unsigned(kTrackFrames));
      if (hand.GetWindowStart() < target && target < hand.GetWindowEnd()) continue;
      transitions.AddTransition(target, 10);
      times.push_back(MsOf([&] { hand.Read(out.data(), kMaxBlockFrames); }));
    }
    std::sort(times.begin(), times.end());
  }
  state.counters["median_ms"] = times[times.size() / 2];
  state.counters["max_ms"] = times.back();
}
BENCHMARK(BM_Refill)->Unit(benchmark::kMillisecond);

// A block within the window: 4 moves, forward and back.
void BM_Walk(benchmark::State& state) {
  LTransitionManager transitions;
  LSoundSource track = OpenTrack();
  TSRCScratch hand(track, kTrackFrames / 2, transitions);
  std::vector<int> out(2 * kMaxBlockFrames);
  for (auto _ : state) {
    for (const int way : {4000, -3000, 900, 0}) transitions.AddTransition(kTrackFrames / 2 + way, 40);
    hand.Read(out.data(), kMaxBlockFrames);
    transitions.Clear();
  }
  state.counters["frames_per_s"] =
      benchmark::Counter(double(state.iterations()) * kMaxBlockFrames, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Walk);

}  // namespace

BENCHMARK_MAIN();
