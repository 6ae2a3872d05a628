// The moves of a hand on the way from the main thread to the scratch stage: where to, and how long it took.
// Law      moves queue in a ring of fixed size, so that neither end allocates. When it is full a new move is merged into
//          the last one, which takes its target and adds its duration: no way and no time is lost.
// Units    targets in frames at the deck's pitch; durations in ms.
// Threads  LTransitionManager [main, player] under the player's lock; TScratchClock [main].
#pragma once
#include <array>
#include <cstdint>

struct LTransition {
  int target = 0;
  int durationMs = 0;
};

class LTransitionManager {
 public:
  static constexpr int kCapacity = 256;  // a quarter of a second of the most eager wheel

  void AddTransition(int target, int durationMs);
  LTransition* PeekNextTransition() { return count_ > 0 ? &ring_[first_] : nullptr; }  // null: the hand stands still
  void DeleteTransition();
  void Clear() { count_ = 0; }
  int Count() const { return count_; }

 private:
  std::array<LTransition, kCapacity> ring_;
  std::size_t first_ = 0;
  int count_ = 0;
};

// How long each move took. Moves within one tick of the clock still get a duration of their own, which lets the time of
// the moves run ahead of the clock; what has run ahead is caught up by shorter and shorter moves.
class TScratchClock {
 public:
  static constexpr int kFirstInterpolatedMs = 7, kLongestMs = 100;

  void Start(std::uint32_t nowMs) { lastMs_ = nowMs; }
  int Step(std::uint32_t nowMs);  // ms since the last move, 1..100

 private:
  std::uint32_t lastMs_ = 0;
  int interpolatedMs_ = kFirstInterpolatedMs;  // kept from one scratch to the next
};
