// A console with two decks on the offline backend, and what it sent to the device.
#pragma once
#include <cmath>

#include "console/DJConsole.h"
#include "sound/LSoundProcess.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

// A steady tone, as long as wanted; channel 1 carries the negative.
inline std::vector<int> Tone(double hz, int amplitude, int frames) {
  std::vector<int> samples;
  samples.reserve(std::size_t(frames) * 2);
  for (int i = 0; i < frames; ++i) {
    const int value = int(amplitude * std::sin(2 * M_PI * hz * i / kDeckRate));
    samples.insert(samples.end(), {value, -value});
  }
  return samples;
}

// What the five flat bands of a deck's equaliser may take from a sample: each truncates.
inline constexpr int kEqualizerLoss = 5;

struct ConsoleRig {
  explicit ConsoleRig(LTestPlatform::Threads threads = LTestPlatform::Threads::Offline) : platform(threads) {
    platform.backend.SetCapture(0, [this](const int* s, int frames, int channels) {
      heardChannels = channels;
      heard.insert(heard.end(), s, s + std::ptrdiff_t(frames) * channels);
    });
    platform.backend.SetCapture(1, [this](const int* s, int frames, int channels) {
      phones.insert(phones.end(), s, s + std::ptrdiff_t(frames) * channels);
    });
    console = std::make_unique<DJConsole>();
    console->AddDeck(kDeckA);
    console->AddDeck(kDeckB);
  }
  ~ConsoleRig() { console.reset(); }

  DJDeck& Deck(DJDeckPosition position) { return *console->GetDeck(position); }
  void Load(DJDeckPosition position, std::vector<int> samples) {
    Deck(position).Load("memory", LSoundSource(new TestSource(std::move(samples), kDeckRate, 2)), 0, 0);
  }
  void RunMs(long ms) { platform.run.RunMs(ms); }
  // What one channel of the main device heard, on the sample scale.
  std::vector<int> Heard(int channel = 0) const {
    std::vector<int> samples;
    for (std::size_t i = std::size_t(channel); i < heard.size(); i += std::size_t(heardChannels))
      samples.push_back(heard[i] >> 12);
    return samples;
  }

  LTestPlatform platform;
  std::unique_ptr<DJConsole> console;
  std::vector<int> heard, phones;  // device samples
  int heardChannels = 2;
};

inline double Rms(const std::vector<int>& samples, std::size_t from, std::size_t count) {
  double sum = 0;
  for (std::size_t i = from; i < from + count; ++i) sum += double(samples[i]) * samples[i];
  return std::sqrt(sum / double(count));
}
