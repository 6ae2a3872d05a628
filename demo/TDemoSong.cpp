#include "TDemoSong.h"

#include <algorithm>
#include <cmath>

#include "TDemoSynth.h"

namespace {

using namespace TDemoSynth;

constexpr int kStepsPerBar = 16, kStepsPerBeat = 4;
constexpr float kPeak = 27571;  // -1.5 dB of 32768
constexpr float kDrive = 1.15F;
constexpr float kDcPole = 0.998F;  // takes away what lies below 14 Hz
constexpr int kPhraseBars = 8;     // every phrase ends with a fill

constexpr unsigned kBeat = tdlKick | tdlHat;
constexpr unsigned kGroove = kBeat | tdlClap | tdlOpenHat | tdlBass;

class Renderer {
 public:
  explicit Renderer(const TDemoSong& song)
      : song_(song),
        stepFrames_(double(song.beatFrames) / kStepsPerBeat),
        frames_(TotalBars() * BarFrames() + song.beatFrames * 2),  // for the last echo
        noise_(song.seed),
        drums_(frames_),
        music_(frames_),
        plucks_(frames_) {}

  std::vector<short> Render() {
    int bar = 0;
    for (const TDemoSection& section : song_.sections) {
      if (section.layers & tdlSweep) AddSweep(music_, FrameOf(bar, 0), section.bars * BarFrames(), noise_, 0.34F);
      for (int i = 0; i < section.bars; ++i, ++bar) PlayBar(bar, section.layers);
    }
    PingPongEcho(plucks_, int(3 * stepFrames_), 0.42F);
    Duck(music_, kicks_, 0.62F);
    Duck(plucks_, kicks_, 0.35F);
    return Master();
  }

 private:
  int TotalBars() const {
    int bars = 0;
    for (const TDemoSection& section : song_.sections) bars += section.bars;
    return bars;
  }
  int BarFrames() const { return song_.beatFrames * 4; }
  int FrameOf(int bar, int step) const { return bar * BarFrames() + int(step * stepFrames_); }

  void PlayBar(int bar, unsigned layers) {
    const TDemoChord& chord = song_.chords[bar % 4];
    const double bright = layers & tdlBright ? 1.8 : 1;
    for (int step = 0; step < kStepsPerBar; ++step) PlayDrums(bar, step, layers);
    if (layers & tdlBass) PlayBass(bar, chord);
    if (layers & tdlPluck) PlayPlucks(bar, chord, 3200 * bright);
    if (layers & tdlPad)
      for (const int note : chord.notes) AddPad(music_, FrameOf(bar, 0), BarFrames(), note, 0.15F, 1000 * bright);
  }

  void PlayDrums(int bar, int step, unsigned layers) {
    const int frame = FrameOf(bar, step);
    const bool fill = bar % kPhraseBars == kPhraseBars - 1 && step >= 12;
    if (layers & tdlKick && step % 4 == 0) {
      drums_.AddShot(kick_, frame, 0.95F, 0);
      kicks_.push_back(frame);
    }
    if (layers & tdlClap && (step % 8 == 4 || (fill && step != 13)))
      drums_.AddShot(clap_, frame, step == 12 || !fill ? 1.3F : 0.7F, 0.1F);
    if (layers & tdlHat && song_.hat[step] != '.')
      drums_.AddShot(hat_, frame, song_.hat[step] == 'X' ? 0.55F : 0.32F, -0.25F);
    if (layers & tdlOpenHat && song_.openHat[step] != '.') drums_.AddShot(openHat_, frame, 0.42F, 0.3F);
  }

  void PlayBass(int bar, const TDemoChord& chord) {
    for (int step = 0; step < kStepsPerBar; ++step) {
      const char kind = song_.bass[step];
      if (kind == '.') continue;
      AddBass(music_, FrameOf(bar, step), int(1.5 * stepFrames_), chord.bass + (kind == 'o' ? 12 : 0), 0.32F);
    }
  }

  void PlayPlucks(int bar, const TDemoChord& chord, double brightHz) {
    const char* pattern = song_.pluck[bar / 2 % 2];
    for (int step = 0; step < kStepsPerBar; ++step) {
      if (pattern[step] == '.') continue;
      const int index = pattern[step] - '0';
      const int note = chord.notes[index % 4] + 12 + index / 4 * 12;
      AddPluck(plucks_, FrameOf(bar, step), note, 0.42F, step % 2 ? 0.35F : -0.35F, brightHz);
    }
  }

  std::vector<short> Master() {
    float loudest = 0;
    const auto mix = [&](std::vector<float>& drums, const std::vector<float>& music, const std::vector<float>& plucks) {
      float before = 0, out = 0;
      for (std::size_t i = 0; i < drums.size(); ++i) {
        const float driven = std::tanh(kDrive * (0.72F * drums[i] + music[i] + plucks[i]));
        out = driven - before + kDcPole * out;
        before = driven;
        drums[i] = out;
        loudest = std::max(loudest, std::abs(drums[i]));
      }
    };
    mix(drums_.left, music_.left, plucks_.left);
    mix(drums_.right, music_.right, plucks_.right);

    const int fade = song_.beatFrames;  // at the very end
    std::vector<short> samples;
    samples.reserve(drums_.left.size() * 2);
    for (int i = 0; i < frames_; ++i) {
      const float gain = kPeak / loudest * std::min(1.0F, float(frames_ - 1 - i) / float(fade));
      for (const std::vector<float>* channel : {&drums_.left, &drums_.right})
        samples.push_back(static_cast<short>(std::lrint((*channel)[std::size_t(i)] * gain)));
    }
    return samples;
  }

  const TDemoSong& song_;
  double stepFrames_;
  int frames_;
  Noise noise_;
  const std::vector<float> kick_ = Kick(), clap_ = Clap(noise_), hat_ = Hat(noise_, 0.022),
                           openHat_ = Hat(noise_, 0.09);
  Bus drums_, music_, plucks_;
  std::vector<int> kicks_;  // frames
};

}  // namespace

const std::vector<TDemoSong>& DemoSongs() {
  static const std::vector<TDemoSong> songs = {
      {"Tavi Demo - Nachtfahrt",
       22050,  // 120 BPM, A minor
       {{33, {57, 60, 64, 69}}, {29, {57, 60, 65, 69}}, {36, {55, 60, 64, 67}}, {31, {55, 59, 62, 67}}},
       "x.X.x.X.x.X.x.Xx",
       "..x...x...x...x.",
       "x..x..x.x..x..o.",
       {"0.1.2.3.2.1.2.3.", "4.3.2.3.4.3.2.1."},
       {{4, kBeat},
        {4, kBeat | tdlClap | tdlBass},
        {8, kGroove | tdlPad},
        {8, kBeat | tdlBass | tdlPad | tdlPluck | tdlSweep},
        {16, kGroove | tdlPad | tdlPluck | tdlBright},
        {4, tdlPad | tdlPluck},
        {4, tdlPad | tdlPluck | tdlHat | tdlSweep},
        {8, kGroove | tdlPad | tdlPluck | tdlBright},
        {4, kGroove},
        {4, kBeat}},
       20261},
      {"Tavi Demo - Morgenrot",
       21000,  // 126 BPM, C minor
       {{36, {60, 63, 67, 70}}, {29, {60, 63, 65, 68}}, {32, {60, 63, 67, 68}}, {31, {58, 62, 65, 67}}},
       "X.x.X.xxX.x.X.xx",
       "..x...x...x...x.",
       "..x.x.o...x.x.ox",
       {"3..2..1.3..2..5.", "5..3..2.1..2.3.."},
       {{4, kBeat | tdlBass},
        {4, kGroove},
        {8, kGroove | tdlPluck},
        {8, kGroove | tdlPad | tdlPluck | tdlSweep},
        {16, kGroove | tdlPad | tdlPluck | tdlBright},
        {4, tdlPad},
        {4, tdlPad | tdlPluck | tdlClap | tdlSweep},
        {8, kGroove | tdlPad | tdlPluck | tdlBright},
        {4, kGroove},
        {4, kBeat | tdlBass}},
       20262},
  };
  return songs;
}

std::vector<short> RenderDemoSong(const TDemoSong& song) { return Renderer(song).Render(); }
