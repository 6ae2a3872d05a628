// How exactly tempos are found: click and drum tracks from 70 to 180 BPM in steps of 1, and the files of the command line,
// each named after its tempo: "bpm=file". Prints a line for each that is off, and the counts.
// Claim    all tracks of its own within 0.1 BPM, their first beat within 10 ms.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string>

#include "tempo/LBeatDetection.h"
#include "tempo/TTempoRefiner.h"

namespace {

constexpr int kSeconds = 60, kRate = kDeckRate;

class TSamples final : public LSoundSourceBase {
 public:
  explicit TSamples(std::vector<int> samples) : LSoundSourceBase(kRate, 1, kPeak16), samples_(std::move(samples)) {}
  void Read(int* out, int frames) override {
    for (; frames > 0; --frames, ++position_)
      *out++ = position_ < int(samples_.size()) ? samples_[unsigned(position_)] : 0;
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return int(samples_.size()); }
  void Seek(int frame) override { position_ = frame; }

 private:
  std::vector<int> samples_;
  int position_ = 0;
};

class TTrack {
 public:
  explicit TTrack(double bpm) : beat_(60 * kRate / bpm), samples_(std::size_t(kSeconds) * kRate) {}

  void Clicks() {
    for (int n = 0; n * beat_ < double(samples_.size()); ++n) Noise(n * beat_, 300000, 0.012);
  }
  // Kick and snare in turn, hats on the eighths, and some sixteenths between.
  void Drums() {
    for (int n = 0; n * beat_ < double(samples_.size()); ++n) {
      n % 2 == 0 ? Kick(n * beat_) : Noise(n * beat_, 150000, 0.06);
      Noise((n + 0.5) * beat_, 60000, 0.015);
      if (n % 4 == 2) Kick((n + 0.75) * beat_);
      if (n % 8 == 5) Noise((n + 0.25) * beat_, 40000, 0.02);
    }
  }
  LSoundSource Source() { return LSoundSource::Make<TSamples>(samples_); }

 private:
  void Add(double at, double seconds, auto&& sample) {
    const auto first = std::size_t(std::lround(at)), count = std::size_t(seconds * kRate);
    for (std::size_t i = 0; i < count && first + i < samples_.size(); ++i)
      samples_[first + i] += int(sample(double(i) / kRate));
  }
  void Noise(double at, double level, double decay) {
    Add(at, decay * 6, [&](double t) {
      seed_ = seed_ * 1664525U + 1013904223U;
      return level * std::exp(-t / decay) * int(seed_) / 2147483648.0;
    });
  }
  void Kick(double at) {
    Add(at, 0.3, [](double t) {
      const double turns = 50 * t + 2.5 * (1 - std::exp(-t * 40));
      return 300000 * std::exp(-t / 0.08) * std::cos(2 * std::numbers::pi * turns);
    });
  }

  double beat_;  // frames
  std::vector<int> samples_;
  unsigned seed_ = 1;
};

struct TCount {
  int all = 0, exact = 0, atBeat = 0;
  double worst = 0;

  void Add(const char* kind, double bpm, const LProcessSoundSourceBPMDetectionData& data, double stated) {
    const double off = std::abs(data.bpm - bpm), beat = 60 * kRate / bpm;
    const double late = std::remainder(data.offset, beat) * 1000 / kRate;
    ++all;
    if (off <= 0.1) {
      ++exact;
      worst = std::max(worst, off);
    }
    atBeat += std::abs(late) <= 10;
    if (off > 0.1 || std::abs(late) > 10)
      std::printf("  %s %.2f: stated %.3f, refined %.3f, first beat %.1f ms off\n", kind, bpm, stated, data.bpm, late);
  }
  void Print(const char* kind) const {
    std::printf("%s: %d of %d within 0.1 BPM (the worst of them %.4f off), %d with the first beat within 10 ms\n", kind,
                exact, all, worst, atBeat);
  }
};

void Measure(const char* kind, void (TTrack::*fill)()) {
  TCount count;
  for (int bpm = 70; bpm <= 180; ++bpm) {
    TTrack track(bpm);
    (track.*fill)();
    LProcessInterfaceVoid process;
    LProcessSoundSourceBPMDetectionData data;
    data.source = track.Source();
    Process(process, data);
    const double stated = data.bpm;
    RefineTempo(data);
    count.Add(kind, bpm, data, stated);
  }
  count.Print(kind);
}

void MeasureFile(const char* argument) {
  const char* const path = std::strchr(argument, '=');
  if (!path) return;
  LProcessInterfaceVoid process;
  LProcessBPMDetectionData data;
  data.SetFile(path + 1);
  Process(process, data);
  const double stated = data.bpm;
  RefineTempo(data);
  std::printf("%s: known %.3f, stated %.3f, refined %.3f, first beat at frame %d\n", path + 1, std::atof(argument),
              stated, data.bpm, data.offset);
}

}  // namespace

int main(int count, char** arguments) {
  Measure("clicks", &TTrack::Clicks);
  Measure("drums", &TTrack::Drums);
  for (int i = 1; i < count; ++i) MeasureFile(arguments[i]);
}
