// What the effects with a swinging delay share: the frames just gone by, and the sine that moves the place they are heard
// from.
// Law      delay = centre + sin(phase) * swing; what lies between two frames is taken from both by share.
// Units    delays in frames, 0 being the frame last pushed; phases in radians.
// Threads  one at a time; only the construction allocates.
#pragma once
#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <vector>

#include "effects/LSoftStart.h"

class LSwing {
 public:
  LSwing(int centreFrames, double swingFrames, double step)
      : centre_(centreFrames), swing_(swingFrames), step_(std::fmod(step, kTurn)) {}

  double NextDelay() {
    const double delay = centre_ + std::sin(phase_) * swing_;
    phase_ += step_;
    if (phase_ >= kTurn) phase_ -= kTurn;  // a phase that grew all evening would lose its last bits
    return delay;
  }
  int MostFrames() const { return int(centre_ + swing_) + 1; }  // the further of the two frames a tap takes

  static double StepOf(double hz, int sampleRate) { return kTurn * hz / sampleRate; }

 private:
  static constexpr double kTurn = 2 * std::numbers::pi;
  int centre_;
  double swing_, step_;
  double phase_ = 0;
};

class LModulatedRing {
 public:
  // Between two frames, by share; `near` is the later one.
  struct Tap {
    const int* near;
    const int* far;
    double share;  // of far
    double operator[](int channel) const { return near[channel] * (1 - share) + far[channel] * share; }
  };

  LModulatedRing(int mostFrames, int channels)
      : channels_(std::size_t(channels)),
        mask_(std::bit_ceil(std::size_t(mostFrames) + 1) - 1),
        ring_((mask_ + 1) * channels_) {}

  void Push(const int* frame) {
    newest_ = (newest_ + 1) & mask_;
    std::copy_n(frame, channels_, &ring_[newest_ * channels_]);
    if (!softStart_.IsOver()) Soften(softStart_.Next());
  }
  Tap At(double delay) const {
    const auto whole = std::size_t(delay);
    return {Frame(whole), Frame(whole + 1), delay - double(whole)};
  }
  void ClearForSeek(int frame) {
    std::fill(ring_.begin(), ring_.end(), 0);
    softStart_.Restart(frame);
  }

 private:
  void Soften(double gain) {
    for (std::size_t i = 0; i < channels_; ++i)
      ring_[newest_ * channels_ + i] = int(ring_[newest_ * channels_ + i] * gain);
  }
  const int* Frame(std::size_t back) const { return &ring_[((newest_ - back) & mask_) * channels_]; }

  std::size_t channels_, mask_;  // frames, one less than a power of two
  std::vector<int> ring_;        // interleaved
  std::size_t newest_ = 0;
  LSoftStart softStart_;
};
