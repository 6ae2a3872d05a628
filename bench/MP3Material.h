// Music-like sound as MPEG files for measurements: chords with a decay, a bass line, drums of noise, made anew each time.
// Units    frames at 44100 Hz, stereo
// Failure  an empty path where the program "lame" is missing
#pragma once
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

class MP3Material {
 public:
  static constexpr int kRate = 44100;

  MP3Material() {
    char pattern[] = "/tmp/tavi-bench-XXXXXX";
    folder_ = ::mkdtemp(pattern);
  }
  MP3Material(const MP3Material&) = delete;
  MP3Material& operator=(const MP3Material&) = delete;
  ~MP3Material() {
    for (const std::string& path : made_) std::remove(path.c_str());
    ::rmdir(folder_.c_str());
  }

  // The song for so many seconds, with the encoder's options.
  std::string Make(const std::string& name, const std::string& options, int seconds) {
    const std::string wave = folder_ + "/song.raw";
    std::string path = folder_ + "/" + name;
    Write(wave, seconds);
    const bool isMade =
        std::system(("lame --quiet -r -s 44.1 --little-endian " + options + " " + wave + " " + path).c_str()) == 0;
    std::remove(wave.c_str());
    if (!isMade) return "";
    made_.push_back(path);
    return path;
  }

 private:
  static void Write(const std::string& path, int seconds) {
    constexpr int kLoopSeconds = 40;
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    static const std::vector<short> loop = [] {
      std::vector<short> samples;
      for (int i = 0; i < kLoopSeconds * kRate; ++i)
        for (int channel = 0; channel < 2; ++channel) samples.push_back(Sample(double(i) / kRate, channel));
      return samples;
    }();
    for (int second = 0; second < seconds; ++second) {
      const std::size_t start = std::size_t(second % kLoopSeconds) * kRate * 2;
      std::fwrite(loop.data() + start, sizeof(short), std::size_t(kRate) * 2, file);
    }
    std::fclose(file);
  }

  static short Sample(double time, int channel) {
    constexpr double kBeat = 60.0 / 126;
    static unsigned noise = 1;
    noise = noise * 1664525U + 1013904223U;
    const double white = int(noise) / 2147483648.0;
    const double beat = std::fmod(time, kBeat), half = std::fmod(time + kBeat / 2, kBeat);
    const int chord = int(time / (4 * kBeat)) % 4;
    constexpr double kRoots[4] = {110.0, 87.31, 130.81, 98.0};
    double sum = 0.5 * std::sin(2 * std::numbers::pi * 52 * beat * std::exp(-beat * 6)) * std::exp(-beat * 7);
    sum += 0.22 * white * std::exp(-half * 60) + 0.02 * white;
    for (int voice = 0; voice < 3; ++voice) {
      constexpr double kRatios[3] = {2, 2.52, 2.997};
      const double angle = 2 * std::numbers::pi * kRoots[chord] * kRatios[voice] * time * (channel == 0 ? 1 : 1.003);
      for (int harmonic = 1; harmonic <= 8; ++harmonic)
        sum += 0.11 / harmonic * std::sin(angle * harmonic) * (0.4 + 0.6 * std::exp(-half * 3));
    }
    return static_cast<short>(std::lround(std::fmax(-1, std::fmin(1, sum)) * 32000));
  }

  std::string folder_;
  std::vector<std::string> made_;
};
