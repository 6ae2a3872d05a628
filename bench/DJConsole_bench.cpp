// The whole graph: two decks from wave files, mixer, limiter, recorder tee into a wave file, ring, offline device. How
// many seconds of sound a second of one core makes.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "audiofile/LWaveFile.h"
#include "audiofile/TSourceOpen.h"
#include "console/DJConsole.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "platform/offline/LOfflineRun.h"

namespace {

constexpr int kTrackSeconds = 300;

std::string MakeTrack(const std::filesystem::path& folder, const char* name, unsigned seed) {
  const std::string path = folder / name;
  LSoundSink sink = LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0);
  std::vector<int> block(2 * kMaxBlockFrames);
  for (int at = 0; at < kTrackSeconds * kDeckRate; at += kMaxBlockFrames) {
    for (int& sample : block) {
      seed = seed * 1664525 + 1013904223;
      sample = int(seed) >> 13;
    }
    sink.Write(block.data(), kMaxBlockFrames);
  }
  return path;
}

void BM_WholeGraph(benchmark::State& state) {
  tlThreadRole = LThreadRole::Main;
  const auto folder = std::filesystem::temp_directory_path() / "tavi_bench_graph";
  std::filesystem::create_directories(folder);
  LVirtualClock clock;
  LMainLoop loop(clock);
  LFolders folders(folder);
  LMemoryPreferences preferences;
  LOfflineBackend backend;
  LSteps steps;
  LOfflineRun run(loop, clock, steps, backend);
  LPlatformServices services;
  services.clock = &clock;
  services.mainLoop = &loop;
  services.folders = &folders;
  services.preferences = &preferences;
  services.soundBackend = &backend;
  services.steps = &steps;
  LPlatform::Fill(services);
  LTimerHandler::Enable(true);
  {
    DJConsole console;
    const char* names[] = {"a.wav", "b.wav"};
    for (const DJDeckPosition deck : {kDeckA, kDeckB}) {
      LSoundSource source;
      const std::string path = MakeTrack(folder, names[deck], unsigned(deck) + 1);
      TSourceOpenWithConvert(source, path);
      console.AddDeck(deck).Load(path, source, 0, 0);
    }
    if (state.range(0)) console.StartRecordingTo(folder / "mix.wav");
    for (const DJDeckPosition deck : {kDeckA, kDeckB}) console.GetDeck(deck)->Play();
    run.RunMs(3500);  // the ring is full from here on
    const long start = run.Frames();
    for (auto _ : state) {
      if (!console.IsAnyDeckPlaying()) {
        state.SkipWithError("the tracks are over");
        break;
      }
      run.RunMs(1000);
    }
    state.counters["realtime"] =
        benchmark::Counter(double(run.Frames() - start) / kDeckRate, benchmark::Counter::kIsRate);
  }
  LPlatform::Clear();
  std::filesystem::remove_all(folder);
}
BENCHMARK(BM_WholeGraph)->Arg(0)->Arg(1)->Iterations(200)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
