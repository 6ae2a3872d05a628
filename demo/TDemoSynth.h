// The instruments of the demo tracks: oscillator, filter, drums, bass, pad, pluck, noise sweep, echo.
// Units    frames at kRate; Hz; notes in MIDI numbers (69 is 440 Hz); levels as parts of full scale
// Failure  what would sound outside a bus is left out.
#pragma once
#include <cstdint>
#include <vector>

namespace TDemoSynth {

constexpr int kRate = 44100;

// Two channels to add sounds to.
struct Bus {
  explicit Bus(int frames) : left(std::size_t(frames)), right(std::size_t(frames)) {}
  void Add(int frame, float l, float r) {
    if (frame < 0 || std::size_t(frame) >= left.size()) return;
    left[std::size_t(frame)] += l;
    right[std::size_t(frame)] += r;
  }
  void AddShot(const std::vector<float>& shot, int frame, float gain, float pan);  // pan -1..1
  std::vector<float> left, right;
};

// A generator of its own, so that every run gives the same bytes (constants of Numerical Recipes, ranqd1).
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed) {}
  float Next() {  // -1..1
    state_ = state_ * 1664525u + 1013904223u;
    return float(std::int32_t(state_)) / 2147483648.0F;
  }

 private:
  std::uint32_t state_;
};

// A saw without audible aliasing: the step is rounded off by a polynomial over one frame on either side (PolyBLEP).
class Saw {
 public:
  Saw(double hz, double phase) : step_(hz / kRate), phase_(phase) {}
  float Next();

 private:
  double step_, phase_;  // in periods
};

// State variable filter with trapezoidal integration (A. Simper, "Solving the continuous SVF equations").
class Filter {
 public:
  explicit Filter(double resonance) : damping_(2 - 2 * resonance) {}
  void SetHz(double hz);
  void Feed(float in);
  float Low() const { return float(low_); }
  float Band() const { return float(band_); }
  float High() const { return float(high_); }

 private:
  double damping_, g_ = 0, a1_ = 1, a2_ = 0, a3_ = 0;
  double memory1_ = 0, memory2_ = 0, low_ = 0, band_ = 0, high_ = 0;
};

std::vector<float> Kick();
std::vector<float> Clap(Noise& noise);
std::vector<float> Hat(Noise& noise, double decaySeconds);

void AddBass(Bus& bus, int start, int frames, int note, float gain);
void AddPad(Bus& bus, int start, int frames, int note, float gain, double brightHz);
void AddPluck(Bus& bus, int start, int note, float gain, float pan, double brightHz);
void AddSweep(Bus& bus, int start, int frames, Noise& noise, float gain);  // rises to its end

void PingPongEcho(Bus& bus, int delayFrames, float feedback);
// Lowers the bus at each kick, so that the kick has room.
void Duck(Bus& bus, const std::vector<int>& kicks, float depth);

}  // namespace TDemoSynth
