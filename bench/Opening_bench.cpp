// Opening sound files, and a first jump to the end of long ones. Claims: a wave file opens in under 0.2 ms; so do the
// other containers.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "audiofile/LAifFile.h"
#include "audiofile/LAuFile.h"
#include "audiofile/LGSMFile.h"
#include "audiofile/LRawFile.h"
#include "audiofile/LVocFile.h"
#include "audiofile/LWaveFile.h"

namespace {

constexpr int kHourFrames = 3600 * 8000;

// One file at a time, gone at the end.
class TemporaryFile {
 public:
  explicit TemporaryFile(const char* extension)
      : path_("/tmp/tavi-opening-" + std::to_string(::getpid()) + extension) {}
  ~TemporaryFile() { LFile::Remove(path_); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& Path() const { return path_; }
  void Fill(const std::string& header, std::size_t bytes) const {
    std::string content = header;
    for (std::size_t i = 0; i < bytes; ++i) content += char(i * 2654435761u >> 13);
    LFile::WriteReplacing(path_, content);
  }
  void Fill(const LSoundSink& sink) const {
    std::vector<int> block(std::size_t{8192} * sink.GetChannels());
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = int(i % 200) * 2000 - 200000;
    for (int done = 0; done < 1 << 20; done += 8192) sink.Write(block.data(), 8192);
  }

 private:
  std::string path_;
};

template <class Open>
void MeasureOpening(benchmark::State& state, const Open& open) {
  for (auto _ : state) benchmark::DoNotOptimize(open().GetEndSample());
}

template <class Open>
void MeasureFirstJump(benchmark::State& state, const Open& open) {
  std::vector<int> block(512);
  for (auto _ : state) {
    state.PauseTiming();
    LSoundSource source = open();
    state.ResumeTiming();
    source.Seek(source.GetEndSample() - 1000);
    source.Read(block.data(), 512);
    state.PauseTiming();
    source.Close();
    state.ResumeTiming();
  }
}

void BM_OpenWave(benchmark::State& state) {
  const TemporaryFile file(".wav");
  file.Fill(LWaveFile::OpenSinkPCM(file.Path(), 44100, 2, 16, 0));
  MeasureOpening(state, [&] { return LWaveFile::OpenSource(file.Path()); });
}
void BM_OpenGsmWave(benchmark::State& state) {
  const TemporaryFile file(".wav");
  file.Fill(LGSMWaveOpenSink(file.Path(), 8000, 1));
  MeasureOpening(state, [&] { return LWaveFile::OpenSource(file.Path()); });
}
void BM_OpenAiff(benchmark::State& state) {
  const TemporaryFile file(".aiff");
  file.Fill(LAifFile::OpenAIFFSink(file.Path(), 44100, 2, 16, afftPcm));
  MeasureOpening(state, [&] { return LAifFile::OpenSource(file.Path()); });
}
void BM_OpenAu(benchmark::State& state) {
  const TemporaryFile file(".au");
  file.Fill(std::string(".snd\0\0\0\x18\xFF\xFF\xFF\xFF\0\0\0\x03\0\0\xAC\x44\0\0\0\x02", 24), 1 << 22);
  MeasureOpening(state, [&] { return LAuFile::OpenSource(file.Path()); });
}

// One block of the largest length, in the ADPCM form of 4 bits.
std::string VocHeader() {
  return "Creative Voice File\x1A" + std::string("\x1A\0\x0A\x01\x29\x11\x01\xFF\xFF\xFF\x83\x01", 12);
}
void BM_OpenVoc(benchmark::State& state) {
  const TemporaryFile file(".voc");
  file.Fill(VocHeader(), 0xFFFFFF);
  MeasureOpening(state, [&] { return LVocFile::OpenSource(file.Path()); });
}
void BM_FirstJumpInAnHourOfVox(benchmark::State& state) {
  const TemporaryFile file(".vox");
  file.Fill("", kHourFrames / 2);
  MeasureFirstJump(state, [&] { return LRawFile::OpenSource(file.Path(), {8000, 1, 0}); });
}
void BM_FirstJumpInAnHourOfVoc(benchmark::State& state) {
  const TemporaryFile file(".voc");
  file.Fill(VocHeader(), kHourFrames / 2);
  MeasureFirstJump(state, [&] { return LVocFile::OpenSource(file.Path()); });
}
void BM_FirstJumpInGsm(benchmark::State& state) {
  const TemporaryFile file(".wav");
  file.Fill(LGSMWaveOpenSink(file.Path(), 8000, 1));
  MeasureFirstJump(state, [&] { return LWaveFile::OpenSource(file.Path()); });
}

BENCHMARK(BM_OpenWave);
BENCHMARK(BM_OpenGsmWave);
BENCHMARK(BM_OpenAiff);
BENCHMARK(BM_OpenAu);
BENCHMARK(BM_OpenVoc);
BENCHMARK(BM_FirstJumpInAnHourOfVox)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstJumpInAnHourOfVoc)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstJumpInGsm);

}  // namespace

BENCHMARK_MAIN();
