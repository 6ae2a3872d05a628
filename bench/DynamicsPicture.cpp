// What the effects on level do to a sound, beside the mathematics of each; prints tables. Every figure of the left side is
// measured on what comes out of the effect's source.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <vector>

#include "effects/LSPDRCSimple.h"
#include "effects/LSPDistortion.h"
#include "effects/LSPGainEffect.h"
#include "effects/LSPPan.h"
#include "effects/LSPTremolo.h"
#include "sound/LSPPeakLimit.h"

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr int kToneHz = 441, kTurnFrames = kDeckRate / kToneHz;

// A mono or stereo signal given by its frame.
class FunctionSource final : public LSoundSourceBase {
 public:
  using Function = std::function<double(int frame)>;
  explicit FunctionSource(Function function, unsigned char channels = 1)
      : LSoundSourceBase(kDeckRate, channels, kPeak16), function_(std::move(function)) {}
  void Read(int* out, int frames) override {
    for (const int end = position_ + frames; position_ < end; ++position_)
      for (int channel = 0; channel < GetChannels(); ++channel) *out++ = int(function_(position_));
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kEndless; }
  void Seek(int frame) override { position_ = frame; }

 private:
  Function function_;
  int position_ = 0;
};

double Amplitude(double db) { return std::pow(10, db / 20) * kFullScale; }
double Db(double factor) { return 20 * std::log10(std::max(factor, 1e-9)); }

FunctionSource::Function Tone(double amplitude) {
  return [amplitude](int frame) { return amplitude * std::sin(kTurn * kToneHz * frame / kDeckRate); };
}

std::vector<int> Played(LSoundProcess&& process, const FunctionSource::Function& signal, int frames,
                        unsigned char channels = 1) {
  LSoundSource input = LSoundSource::Make<FunctionSource>(signal, channels), source = process.OpenSource(input);
  std::vector<int> out(std::size_t(frames) * channels);
  for (int done = 0; done < frames; done += kMaxBlockFrames)
    source.Read(out.data() + std::size_t(done) * channels, std::min(kMaxBlockFrames, frames - done));
  return out;
}

double PeakOver(const std::vector<int>& samples, int from, int frames) {
  const auto at = samples.begin() + from;
  const auto [low, high] = std::minmax_element(at, at + frames);
  return std::max(double(*high), -double(*low));
}

// One row of a table: what was measured, what the mathematics say, and how far apart they are.
void Row(const char* what, double at, double measured, double wanted) {
  std::printf("  %-28s %10.3f  %12.4f  %12.4f  %9.4f\n", what, at, measured, wanted, measured - wanted);
}

void Title(const char* text, const char* at, const char* unit) {
  std::printf("\n%s\n  %-28s %10s  %12s  %12s  %9s\n", text, "", at, unit, "by law", "off by");
}

// Compressor

// The whole decibel that the mean square of a tone is measured as.
double MeasuredDb(double db) { return std::trunc(db + (db < 0 ? -0.5 : 0.5)); }

void CompressorCurve(const char* name, int preset) {
  for (int in = -60; in <= 0; in += 6) {
    LSPDRCSimple compressor;
    if (preset >= 0) compressor.SetPreset(preset);
    constexpr double kThreshold[] = {-20, -24, -30}, kSlope[] = {1, 0.5, 0.75};
    const std::vector<int> out = Played(std::move(compressor), Tone(Amplitude(in)), kDeckRate);
    const double over = std::max(MeasuredDb(in) - kThreshold[preset + 1], 0.0);
    Row(name, in, Db(PeakOver(out, kDeckRate / 2, kTurnFrames) / kFullScale), in - over * kSlope[preset + 1]);
  }
}

void CompressorTimes() {
  // From -60 dB up to 0 dB and back; the gain falls by 20 dB. The share of the way after one time constant.
  const int blockFrames = kDeckRate / 50, up = 100 * blockFrames, down = 300 * blockFrames;
  for (const int ms : {20, 100, 500}) {
    LSPDRCSimple compressor;
    compressor.SetParameterByIndex(LSPDRCSimple::Attack, ms);
    compressor.SetParameterByIndex(LSPDRCSimple::Release, ms);
    const auto signal = [&](int frame) { return Tone(Amplitude(frame >= up && frame < down ? 0 : -60))(frame); };
    const std::vector<int> out = Played(std::move(compressor), signal, 500 * blockFrames);
    const int blocks = ms / 20, frames = blocks * blockFrames;
    const double left = std::pow(1 - 1.0 / blocks, blocks);  // of the way
    // The gain begins to move one block ahead of the change; it is read off where it has moved for `ms`.
    const double attack = PeakOver(out, std::max(up + frames - blockFrames, up), kTurnFrames) / kFullScale;
    const double release = PeakOver(out, down + frames - blockFrames, kTurnFrames) / Amplitude(-60);
    Row("gain after the attack, ms", ms, Db(attack), Db(0.1 + 0.9 * left));
    Row("gain after the release, ms", ms, Db(release), Db(1 - 0.9 * left));
  }
}

// Shapes: a ramp through the effect

void DistortionCurve() {
  constexpr double kDegree[] = {1, 0.6, 0.3, 0.1}, kThresholdDb[] = {-32, -24, -18, -12};
  for (int preset = 0; preset < 4; ++preset) {
    LSPDistortion distortion;
    distortion.SetPreset(preset);
    const std::string name = distortion.GetPresetsName(preset);
    const double degree = kDegree[preset], threshold = std::pow(10, kThresholdDb[preset] / 20),
                 middle = 1 - .22 * degree;
    const std::vector<int> out = Played(
        std::move(distortion), [](int frame) { return frame * 4096.0 - kFullScale; }, 257);
    for (const int frame : {0, 96, 122, 127, 128, 129, 134, 160, 192, 256}) {
      const double in = (frame - 128) / 128.0, size = std::abs(in), knee = threshold / 4;
      const double inner = std::min(size, knee) * (4 - 3 * middle);
      const double rest = std::clamp(size - knee, 0.0, threshold - knee) * middle;
      const double outer = std::max(size - threshold, 0.0) * (1 - degree);
      Row(name.c_str(), in, double(out[std::size_t(frame)]) / kFullScale, std::copysign(inner + rest + outer, in));
    }
  }
}

// The share of odd harmonics in a tone at full scale.
double HarmonicDb(const std::vector<int>& samples, int harmonic) {
  double re = 0, im = 0, re1 = 0, im1 = 0;
  for (int i = 0; i < kDeckRate; ++i) {
    const double turn = kTurn * kToneHz * i / kDeckRate, sample = samples[std::size_t(i)];
    re += sample * std::cos(turn * harmonic), im += sample * std::sin(turn * harmonic);
    re1 += sample * std::cos(turn), im1 += sample * std::sin(turn);
  }
  return Db(std::hypot(re, im) / std::hypot(re1, im1));
}

void DistortionHarmonics() {
  LSPDistortion clip;
  clip.SetPreset(0);
  const std::vector<int> out = Played(std::move(clip), Tone(kPeak16), kDeckRate);
  // Clipped this hard, a sine is nearly a square wave.
  for (const int harmonic : {2, 3, 5, 7}) {
    const bool odd = harmonic % 2 == 1;
    std::printf("  harmonic %d of a clipped tone  %8.2f dB   square wave %s\n", harmonic, HarmonicDb(out, harmonic),
                odd ? std::to_string(-20 * std::log10(harmonic)).substr(0, 6).c_str() : "none");
  }
}

// Modulation

void TremoloSwing() {
  constexpr double kHz[] = {12, 8, 4}, kDepth[] = {100, 75, 50};
  for (int preset = 0; preset < 3; ++preset) {
    LSPTremolo tremolo;
    tremolo.SetPreset(preset);
    const std::string name = tremolo.GetPresetsName(preset);
    const std::vector<int> out = Played(
        std::move(tremolo), [](int) { return 200000.0; }, 10 * kDeckRate);
    const auto [low, high] = std::minmax_element(out.begin(), out.end());
    int rising = 0;
    double first = 0, last = 0;
    for (std::size_t i = 1; i < out.size(); ++i)
      if (out[i - 1] <= 200000 && out[i] > 200000) {
        last = double(i);
        if (rising++ == 0) first = last;
      }
    Row((name + ": turns per second").c_str(), kHz[preset], (rising - 1) * kDeckRate / (last - first), kHz[preset]);
    Row((name + ": depth, %").c_str(), kDepth[preset], (*high - *low) / 4000.0, kDepth[preset]);
  }
}

void PanLine() {
  const LSPPan pan({{0, -100}, {10000, 100}});
  const std::vector<int> out = Played(
      LSPPan(pan), [](int) { return double(kPeak16); }, 11 * kDeckRate, 2);
  for (int second = 0; second <= 10; ++second) {
    const std::size_t at = std::size_t(second) * kDeckRate * 2;
    const double place = second * 20.0 - 100;
    Row("left, s", second, double(out[at]) / kPeak16, std::min(100 - place, 100.0) / 100);
    Row("right, s", second, double(out[at + 1]) / kPeak16, std::min(100 + place, 100.0) / 100);
  }
}

void GainLine() {
  for (const int percent : {1, 25, 50, 100, 200, 400}) {
    LSPGainEffect gain;
    gain.SetParameterByIndex(0, percent);
    const std::vector<int> out = Played(
        std::move(gain), [](int) { return 400000.0; }, 1);
    Row("percent", percent, out[0] / 4000.0, percent);
  }
}

// Limiters: a steady tone above the limit, and the peak of what comes out

void LimiterCurve() {
  for (const double in : {-12.0, -0.1, 0.0, 1.0, 3.0, 6.0, 12.0}) {
    const double wanted = std::min(in, Db(double(kPeak16) / kFullScale));
    const auto last = [&](LSoundProcess&& limiter) {
      return Db(PeakOver(Played(std::move(limiter), Tone(Amplitude(in)), kDeckRate), kDeckRate / 2, kDeckRate / 2) /
                kFullScale);
    };
    Row("with look-ahead", in, last(LSPPeakLimit(kPeak16)), wanted);
    Row("without a buffer", in, last(LSPPeakLimitNoBuffer(kPeak16)), wanted);
  }
}

}  // namespace

int main() {
  Title("Compressor: steady tone, level in and out", "in, dB", "out, dB");
  CompressorCurve("new", -1);
  CompressorCurve("Allgemeiner Stimmpegel", 0);
  CompressorCurve("TV- / Radio-Werbung", 1);
  Title("Compressor: way of the gain from 0 to -20 dB and back", "time", "gain, dB");
  CompressorTimes();
  Title("Distortion: a ramp, of full scale", "in", "out");
  DistortionCurve();
  DistortionHarmonics();
  Title("Tremolo over a constant level", "set", "measured");
  TremoloSwing();
  Title("Pan from left to right in 10 s", "time", "gain");
  PanLine();
  Title("Gain", "set", "percent");
  GainLine();
  Title("Peak limiters: tone above the limit of a 16-bit source", "in, dB", "out, dB");
  LimiterCurve();
}
