// What the effects by delays and the hall do to a sound, beside the mathematics of each; prints tables. Every figure of the
// left side is measured on what comes out of the effect's source.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "effects/LSPChorus.h"
#include "effects/LSPDoppler.h"
#include "effects/LSPEcho.h"
#include "effects/LSPFlanger.h"
#include "effects/LSPReverb3.h"
#include "effects/LSPVibrato.h"

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr int kClick = 1 << 28;  // the finest voice of the hall still shows

using Complex = std::complex<double>;
using Signal = std::function<double(int frame)>;

class FunctionSource final : public LSoundSourceBase {
 public:
  FunctionSource(Signal signal, unsigned char channels, int frames)
      : LSoundSourceBase(kDeckRate, channels, kPeak16), signal_(std::move(signal)), frames_(frames) {}
  void Read(int* out, int frames) override {
    for (const int end = position_ + frames; position_ < end; ++position_)
      for (int channel = 0; channel < GetChannels(); ++channel) *out++ = int(signal_(position_));
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return frames_; }
  void Seek(int frame) override { position_ = frame; }

 private:
  Signal signal_;
  int frames_, position_ = 0;
};

std::vector<int> Played(LSoundProcess&& process, const Signal& signal, int frames, unsigned char channels = 1) {
  LSoundSource input = LSoundSource::Make<FunctionSource>(signal, channels, frames), source = process.OpenSource(input);
  std::vector<int> out(std::size_t(frames) * channels);
  for (int done = 0; done < frames; done += kMaxBlockFrames)
    source.Read(out.data() + std::size_t(done) * channels, std::min(kMaxBlockFrames, frames - done));
  return out;
}

double ClickAtStart(int frame) { return frame == 0 ? kClick : 0; }

Signal Tone(double hz, double phase = 0) {
  return [=](int frame) { return 400000 * std::sin(kTurn * hz * frame / kDeckRate + phase); };
}

double Db(double factor) { return 20 * std::log10(std::max(factor, 1e-12)); }
Complex Delay(double frames, double hz) { return std::polar(1.0, -kTurn * hz * frames / kDeckRate); }

// The answer to a click, at one frequency.
Complex Response(const std::vector<int>& answer, double hz) {
  Complex sum;
  for (std::size_t i = 0; i < answer.size(); ++i) sum += double(answer[i]) / kClick * Delay(double(i), hz);
  return sum;
}

void Title(const char* text, const char* at, const char* unit) {
  std::printf("\n%s\n  %-34s %10s  %12s  %12s  %9s\n", text, "", at, unit, "by law", "off by");
}
void Row(const std::string& what, double at, double measured, double wanted) {
  std::printf("  %-34s %10.3f  %12.4f  %12.4f  %9.4f\n", what.c_str(), at, measured, wanted, measured - wanted);
}

// Where a voice stands in the frames behind a click, as the mean of its samples' places.
double Place(const std::vector<double>& samples) {
  double sum = 0, moment = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) sum += samples[i], moment += samples[i] * double(i);
  return moment / sum;
}

void EchoRepeats() {
  const std::vector<int> out = Played(LSPEcho(), ClickAtStart, kDeckRate);
  for (int repeat = 0; repeat <= 5; ++repeat)
    Row("level, dB", repeat * 100, Db(double(out[std::size_t(repeat * 4410)]) / kClick), repeat * Db(0.5));
}

void FlangerNotches() {
  LSPFlanger flanger;
  flanger.SetParameterByIndex(LSPFlanger::Frequency, 0);
  const std::vector<int> out = Played(std::move(flanger), ClickAtStart, kDeckRate);
  constexpr int kCentre = 220;  // 5 ms in whole frames
  for (const double hz : {50.0, 100.2, 150.0, 200.5, 1000.0, 5011.4, 5111.6})
    Row("standing still: level, dB", hz, Db(std::abs(Response(out, hz))), Db(std::abs(1.0 + 0.5 * Delay(kCentre, hz))));
}

// Clicks far enough apart that a voice behind one is over before the next.
constexpr int kClickFrames = 4851;  // 110 ms

Signal Clicks() {
  return [](int frame) { return frame % kClickFrames == 0 ? kClick : 0; };
}

void FlangerSwing() {
  LSPFlanger flanger;
  flanger.SetParameterByIndex(LSPFlanger::Frequency, 300);
  const std::vector<int> out = Played(std::move(flanger), Clicks(), 32 * kClickFrames);
  for (int click = 0; click < 32; click += 3) {
    const int at = click * kClickFrames;
    const double late = Place({out.begin() + at + 1, out.begin() + at + 2000}) + 1;
    // The frame that is heard late has met the sine that much later.
    Row("delay, frames", at * 1000.0 / kDeckRate, late, 220 + 154 * std::sin(kTurn * 0.3 * (at + late) / kDeckRate));
  }
}

void ChorusVoices() {
  LSPChorus chorus;
  chorus.SetPreset(0);
  const std::vector<int> out = Played(std::move(chorus), Clicks(), 32 * kClickFrames, 2);
  for (int click = 0; click < 32; click += 4) {
    // The voices have weights 1 and 1/2 on the left and 1/2 and 1 on the right: this parts them.
    std::vector<double> voices[2];
    for (int i = 1; i < 4000; ++i) {
      const auto at = std::size_t(click * kClickFrames + i) * 2;
      voices[0].push_back(2.0 * out[at] - out[at + 1]);
      voices[1].push_back(2.0 * out[at + 1] - out[at]);
    }
    for (int voice = 0; voice < 2; ++voice) {
      const double late = Place(voices[voice]) + 1, hz = voice == 0 ? 0.375 : 0.5;
      const int at = click * kClickFrames;
      Row(voice == 0 ? "first voice, frames" : "second voice, frames", at * 1000.0 / kDeckRate, late,
          1764 + 88.2 * std::sin(kTurn * hz * (at + late) / kDeckRate));
    }
  }
}

constexpr int kPitchFrames = 40;  // over which a pitch is measured

// The pitch of what was a tone, in semitones above it. The effects are linear: from a sine and a cosine they make the two
// parts of a pointer whose turning is the pitch.
std::vector<double> Semitones(const std::function<std::vector<int>(const Signal&)>& play, int hz) {
  const std::vector<int> im = play(Tone(hz)), re = play(Tone(hz, kTurn / 4));
  const auto pointer = [&](std::size_t at) { return Complex(re[at], im[at]); };
  std::vector<double> semitones;
  for (std::size_t i = 0; i + kPitchFrames < re.size(); ++i) {
    const double expected = kTurn * hz * kPitchFrames / kDeckRate;
    const Complex moved = pointer(i + kPitchFrames) * std::conj(pointer(i)) * std::polar(1.0, -expected);
    semitones.push_back(12 * std::log2(1 + std::arg(moved) / expected));
  }
  return semitones;
}

// The lowest and the highest pitch. Between two frames the all-pass is late by f / (2 - f) for low tones, where the delay
// wanted is f: at the depths set, that adds up to a tenth of a semitone.
std::pair<double, double> VibratoLaw(double hz, double depth) {
  const double swing = (std::exp2(depth / 12) - 1) * kDeckRate / (kTurn * hz);
  const auto late = [&](int frame) {
    const double delay = int(swing) + 2 + swing * std::sin(kTurn * hz * frame / kDeckRate),
                 f = delay - std::floor(delay);
    return std::floor(delay) + f / (2 - f);
  };
  std::pair<double, double> ends;
  for (int i = 0; i < kDeckRate; ++i) {
    const double semitones = 12 * std::log2(1 - (late(i + kPitchFrames) - late(i)) / kPitchFrames);
    ends = {std::min(ends.first, semitones), std::max(ends.second, semitones)};
  }
  return ends;
}

void VibratoSwing() {
  constexpr int kHz[] = {10, 6, 3}, kToneHz = 882;
  constexpr double kDepth[] = {0.9, 0.5, 0.25};
  for (int preset = 0; preset < 3; ++preset) {
    LSPVibrato vibrato;
    vibrato.SetPreset(preset);
    const std::string name = vibrato.GetPresetsName(preset);
    const auto play = [&](const Signal& tone) { return Played(LSPVibrato(vibrato), tone, 11 * kDeckRate); };
    std::vector<double> pitch = Semitones(play, kToneHz);
    pitch.erase(pitch.begin(), pitch.begin() + kDeckRate / 2);
    const auto [low, high] = std::minmax_element(pitch.begin(), pitch.end());
    const auto [lawLow, lawHigh] = VibratoLaw(kHz[preset], kDepth[preset]);
    int rising = 0;
    double first = 0, last = 0;
    for (std::size_t i = 1; i < pitch.size(); ++i)
      if (pitch[i - 1] <= 0 && pitch[i] > 0) {
        // The all-pass ripples a little around the crossing; a real one is most of a turn behind the last.
        if (rising > 0 && double(i) - last < 0.5 * kDeckRate / kHz[preset]) continue;
        last = double(i);
        if (rising++ == 0) first = last;
      }
    Row(name + ": turns per second", kHz[preset], (rising - 1) * kDeckRate / (last - first), kHz[preset]);
    Row(name + ": up, semitones", kDepth[preset], *high, lawHigh);
    Row(name + ": down, semitones", kDepth[preset], *low, lawLow);
  }
}

void DopplerPass() {
  constexpr int kToneHz = 441, kFrames = 12 * kDeckRate;
  constexpr double kSpeed = 50, kHeight = 50, kSoundSpeed = 343.3125;
  LSPDoppler doppler;
  doppler.SetPreset(2);
  const auto play = [&](const Signal& tone) { return Played(LSPDoppler(doppler), tone, kFrames); };
  const std::vector<int> out = play(Tone(kToneHz));
  const std::vector<double> pitch = Semitones(play, kToneHz);
  for (int tenth = 1; tenth <= 90; tenth += 8) {
    const int at = tenth * kFrames / 100, turn = kDeckRate / kToneHz;
    const double along = (at - 0.5 * kFrames) * kSpeed / kDeckRate, away = std::hypot(along, kHeight);
    Row("pitch, semitones", at * 1000.0 / kDeckRate, pitch[std::size_t(at - kPitchFrames / 2)],
        12 * std::log2(1 - kSpeed * along / away / kSoundSpeed));
    const auto place = out.begin() + at;
    Row("level, dB", at * 1000.0 / kDeckRate, Db(*std::max_element(place - turn, place + turn) / 400000.0),
        Db(kHeight / away));
  }
}

// Hall

struct HallValues {
  int time, diffusion;
};

std::vector<int> HallAnswer(const HallValues& values, int frames) {
  LSPReverb3 hall;
  hall.SetParameterByIndex(LSPReverb3::Time, values.time);
  hall.SetParameterByIndex(LSPReverb3::Diffusion, values.diffusion);
  const std::vector<int> both = Played(std::move(hall), ClickAtStart, frames, 2);
  std::vector<int> left;
  for (std::size_t i = 0; i < both.size(); i += 2) left.push_back(both[i]);
  return left;
}

Complex HallByLaw(const HallValues& values, double hz) {
  const double feedback = 0.7 + values.time * 7e-5, damping = values.diffusion * 0.004;
  Complex combs, allPasses = 1;
  for (const int frames : {1116, 1188, 1277, 1356, 1422, 1491, 1557, 1617}) {
    const Complex late = Delay(frames, hz);
    combs += late / (1.0 - feedback * (1 - damping) / (1.0 - damping * Delay(1, hz)) * late);
  }
  for (const int frames : {556, 441, 341, 225}) {
    const Complex late = Delay(frames, hz);
    allPasses *= (1.5 * late - 1.0) / (1.0 - 0.5 * late);
  }
  return 2.0 + 3 * 2 * 0.015 * combs * allPasses;
}

void HallResponse() {
  for (const HallValues& values : {HallValues{100, 20}, {1000, 20}, {1000, 100}}) {
    const std::vector<int> out = HallAnswer(values, 8 * kDeckRate);
    for (const double hz : {20.0, 100.0, 440.0, 1000.0, 4000.0, 12000.0})
      Row("time " + std::to_string(values.time) + ", diffusion " + std::to_string(values.diffusion) + ": dB", hz,
          Db(std::abs(Response(out, hz))), Db(std::abs(HallByLaw(values, hz))));
  }
}

// How long the hall takes to fade by 60 dB, from the slope of what is left of its energy. Without damping the longest
// comb lasts longest, and the end of the hall is its.
void HallTimes() {
  LSPReverb3 hall;
  for (int preset = 0; preset < 4; ++preset) {
    hall.SetPreset(preset);
    LSoundProcessParameter time;
    hall.GetParameterByIndex(LSPReverb3::Time, &time);
    const std::vector<int> out = HallAnswer({time.value, 0}, 3 * kDeckRate);
    std::vector<double> left(out.size() + 1);
    for (std::size_t i = out.size(); i-- > 0;) left[i] = left[i + 1] + double(out[i]) * out[i];
    const std::size_t start = 4410;  // past the sound itself and the first echoes
    const auto fallen = [&](double db) {
      const auto below = [&](double energy) { return 10 * std::log10(std::max(energy, 1e-9) / left[start]) < db; };
      return double(std::find_if(left.begin() + start, left.end(), below) - left.begin()) / kDeckRate;
    };
    const double feedback = 0.7 + time.value * 7e-5;
    Row(hall.GetPresetsName(preset) + ": s", time.value, (fallen(-100) - fallen(-70)) * 2,
        3 * 1617.0 / kDeckRate / -std::log10(feedback));
  }
}

}  // namespace

int main() {
  Title("Echo, new: a click and its repeats", "time, ms", "measured");
  EchoRepeats();
  Title("Flanger, new but for the frequency", "in, Hz", "measured");
  FlangerNotches();
  Title("Flanger at 0.3 Hz: where clicks are heard again", "time, ms", "measured");
  FlangerSwing();
  Title("Chorus \"Stark\": where clicks are heard again", "time, ms", "measured");
  ChorusVoices();
  Title("Vibrato over a tone of 882 Hz", "set", "measured");
  VibratoSwing();
  Title("Doppler \"Leise\" over 12 s of a tone, mono", "time, ms", "measured");
  DopplerPass();
  Title("Hall: frequency response, left", "in, Hz", "measured");
  HallResponse();
  Title("Hall without damping: time to fade by 60 dB", "set, ms", "measured");
  HallTimes();
}
