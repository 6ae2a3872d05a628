#include "TDemoSynth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int kFilterStepFrames = 32;  // between two settings of a moving filter
constexpr double kPi = std::numbers::pi;

double NoteHz(double note) { return 440 * std::exp2((note - 69) / 12); }
double Seconds(int frames) { return double(frames) / TDemoSynth::kRate; }
int Frames(double seconds) { return int(seconds * TDemoSynth::kRate); }

// Up over `attack`, down over `release` behind the note's length; all in frames.
float Envelope(int at, int frames, int attack, int release) {
  const float up = std::min(1.0F, float(at) / float(attack));
  const float down = std::clamp(float(frames + release - at) / float(release), 0.0F, 1.0F);
  return up * down * down;
}

// Ends a shot on zero.
void FadeEnd(std::vector<float>& shot) {
  const int fade = Frames(0.01);
  for (int i = 0; i < fade; ++i) shot[shot.size() - 1 - std::size_t(i)] *= float(i) / float(fade);
}

float PolyBlep(double phase, double step) {
  if (phase < step) {
    const double t = phase / step;
    return float(t + t - t * t - 1);
  }
  if (phase > 1 - step) {
    const double t = (phase - 1) / step;
    return float(t * t + t + t + 1);
  }
  return 0;
}

}  // namespace

namespace TDemoSynth {

void Bus::AddShot(const std::vector<float>& shot, int frame, float gain, float pan) {
  const float l = gain * std::sqrt((1 - pan) / 2), r = gain * std::sqrt((1 + pan) / 2);
  for (std::size_t i = 0; i < shot.size(); ++i) Add(frame + int(i), shot[i] * l, shot[i] * r);
}

float Saw::Next() {
  const float value = float(2 * phase_ - 1) - PolyBlep(phase_, step_);
  phase_ += step_;
  if (phase_ >= 1) phase_ -= 1;
  return value;
}

void Filter::SetHz(double hz) {
  g_ = std::tan(kPi * std::min(hz, 0.45 * kRate) / kRate);
  a1_ = 1 / (1 + g_ * (g_ + damping_));
  a2_ = g_ * a1_;
  a3_ = g_ * a2_;
}

void Filter::Feed(float in) {
  const double v3 = in - memory2_;
  band_ = a1_ * memory1_ + a2_ * v3;
  low_ = memory2_ + a2_ * memory1_ + a3_ * v3;
  memory1_ = 2 * band_ - memory1_;
  memory2_ = 2 * low_ - memory2_;
  high_ = in - damping_ * band_ - low_;
}

std::vector<float> Kick() {
  std::vector<float> shot(std::size_t(Frames(0.45)));
  double phase = 0;
  for (std::size_t i = 0; i < shot.size(); ++i) {
    const double t = Seconds(int(i));
    shot[i] = float(std::sin(2 * kPi * phase) * std::exp(-t / 0.16));
    phase += (47 + 130 * std::exp(-t / 0.035) + 400 * std::exp(-t / 0.004)) / kRate;
  }
  FadeEnd(shot);
  return shot;
}

std::vector<float> Clap(Noise& noise) {
  constexpr double kBurstSeconds = 0.011;
  constexpr int kBursts = 3;  // the last one rings on
  std::vector<float> shot(std::size_t(Frames(0.4)));
  Filter filter(0.55);
  filter.SetHz(1500);
  for (std::size_t i = 0; i < shot.size(); ++i) {
    const double t = Seconds(int(i));
    const int burst = std::min(int(t / kBurstSeconds), kBursts - 1);
    const double since = t - burst * kBurstSeconds;
    const double level = std::exp(-since / (burst == kBursts - 1 ? 0.075 : 0.006)) * std::min(1.0, since / 0.0005);
    filter.Feed(noise.Next() * float(level));
    shot[i] = filter.Band() + 0.15F * filter.High();
  }
  FadeEnd(shot);
  return shot;
}

std::vector<float> Hat(Noise& noise, double decaySeconds) {
  std::vector<float> shot(std::size_t(Frames(decaySeconds * 6)));
  Filter filter(0.3);
  filter.SetHz(8000);
  for (std::size_t i = 0; i < shot.size(); ++i) {
    const double t = Seconds(int(i));
    filter.Feed(noise.Next());
    shot[i] = filter.High() * float(std::exp(-t / decaySeconds) * std::min(1.0, t / 0.0007));
  }
  FadeEnd(shot);
  return shot;
}

void AddBass(Bus& bus, int start, int frames, int note, float gain) {
  const int attack = Frames(0.004), release = Frames(0.06);
  const double hz = NoteHz(note);
  Saw saw(hz, 0.5);
  Filter filter(0.45);
  for (int i = 0; i < frames + release; ++i) {
    const double t = Seconds(i);
    if (i % kFilterStepFrames == 0) filter.SetHz(160 + 900 * std::exp(-t / 0.09));
    filter.Feed(saw.Next());
    const float sub = float(std::sin(2 * kPi * hz * t));
    const float value = (0.5F * filter.Low() + 0.6F * sub) * Envelope(i, frames, attack, release) * gain;
    bus.Add(start + i, value, value);
  }
}

void AddPad(Bus& bus, int start, int frames, int note, float gain, double brightHz) {
  constexpr double kDetune = 0.09;  // semitones, to either side
  const int attack = Frames(0.12), release = Frames(0.35);
  Saw leftSaw(NoteHz(note - kDetune), 0.13 * (note % 7)), rightSaw(NoteHz(note + kDetune), 0.11 * (note % 9));
  Filter leftFilter(0.2), rightFilter(0.2);
  for (int i = 0; i < frames + release; ++i) {
    if (i % kFilterStepFrames == 0) {
      const double sway = 1 + 0.25 * std::sin(2 * kPi * 0.17 * Seconds(start + i));
      leftFilter.SetHz(brightHz * sway);
      rightFilter.SetHz(brightHz * (2 - sway));
    }
    leftFilter.Feed(leftSaw.Next());
    rightFilter.Feed(rightSaw.Next());
    const float level = Envelope(i, frames, attack, release) * gain;
    bus.Add(start + i, (0.8F * leftFilter.Low() + 0.2F * rightFilter.Low()) * level,
            (0.2F * leftFilter.Low() + 0.8F * rightFilter.Low()) * level);
  }
}

void AddPluck(Bus& bus, int start, int note, float gain, float pan, double brightHz) {
  const int frames = Frames(0.45);
  Saw saw(NoteHz(note), 0.5), octave(NoteHz(note + 12.04), 0.25);
  Filter filter(0.35);
  std::vector<float> shot(static_cast<std::size_t>(frames));
  for (int i = 0; i < frames; ++i) {
    const double t = Seconds(i);
    if (i % kFilterStepFrames == 0) filter.SetHz(300 + brightHz * std::exp(-t / 0.08));
    filter.Feed(saw.Next() + 0.4F * octave.Next());
    shot[std::size_t(i)] = filter.Low() * float(std::exp(-t / 0.13) * std::min(1.0, t / 0.003));
  }
  FadeEnd(shot);
  bus.AddShot(shot, start, gain, pan);
}

void AddSweep(Bus& bus, int start, int frames, Noise& noise, float gain) {
  const int release = Frames(0.15);
  Filter leftFilter(0.6), rightFilter(0.6);
  for (int i = 0; i < frames + release; ++i) {
    const double part = std::min(1.0, double(i) / frames);
    if (i % kFilterStepFrames == 0) {
      leftFilter.SetHz(300 * std::exp2(4.6 * part));
      rightFilter.SetHz(330 * std::exp2(4.6 * part));
    }
    leftFilter.Feed(noise.Next());
    rightFilter.Feed(noise.Next());
    const float level = float(part * part) * gain * Envelope(i, frames, 1000, release);
    bus.Add(start + i, leftFilter.Band() * level, rightFilter.Band() * level);
  }
}

void PingPongEcho(Bus& bus, int delayFrames, float feedback) {
  const std::vector<float> dryLeft = bus.left, dryRight = bus.right;
  std::vector<float> left(dryLeft.size()), right(dryRight.size());
  for (std::size_t i = std::size_t(delayFrames); i < left.size(); ++i) {
    const std::size_t before = i - std::size_t(delayFrames);
    left[i] = feedback * (dryRight[before] + right[before]);
    right[i] = feedback * (dryLeft[before] + left[before]);
    bus.left[i] += left[i];
    bus.right[i] += right[i];
  }
}

void Duck(Bus& bus, const std::vector<int>& kicks, float depth) {
  const int attack = Frames(0.006), length = Frames(0.9);
  std::vector<float> gains(bus.left.size(), 1.0F);
  for (const int kick : kicks)
    for (int i = 0; i < std::min(length, int(gains.size()) - kick); ++i) {
      const float shape = std::min(1.0F, float(i) / float(attack)) * float(std::exp(-Seconds(i) / 0.11));
      float& gain = *(gains.begin() + kick + i);
      gain = std::min(gain, 1 - depth * shape);
    }
  for (std::size_t i = 0; i < gains.size(); ++i) bus.left[i] *= gains[i], bus.right[i] *= gains[i];
}

}  // namespace TDemoSynth
