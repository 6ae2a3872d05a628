// Lets what enters a delay line after a jump into a track grow from nothing: else its first echo begins with a click. At
// the start of a track, where the sound begins by itself, nothing is softened.
// Units    steps are samples or frames, as the caller counts.
// Threads  one at a time
#pragma once

class LSoftStart {
 public:
  static constexpr int kSteps = 512;  // some 10 ms

  void Restart(int frame) { step_ = frame > 0 ? 0 : kSteps; }
  bool IsOver() const { return step_ == kSteps; }
  double Next() { return IsOver() ? 1.0 : double(step_++) / kSteps; }

 private:
  int step_ = kSteps;
};
