// The hand on the record: follows a queue of targets through a window of decoded sound held around the hand, so that
// normal motion reaches no file. The last stage but one of a deck's chain while it is scratched.
// Signal   a walk by whole frames, no interpolation between them: the rough sound of a needle. No move, no sound.
// Units    frames at the deck's pitch; durations in ms; the window in samples of two channels.
// Threads  TScratch [main]; TSRCScratch [player], it takes moves from the list under the player's lock. Read allocates
//          nothing; a target outside the window reads up to 4 s of sound from the input at once.
// Failure  every index is held inside the window, outside of it is silence. What is not stereo, or has an error, gives
//          a silent source with error 2.
#pragma once
#include <vector>

#include "console/LTransitionManager.h"
#include "sound/LSoundProcess.h"

class TScratch final : public LSoundProcess {
 public:
  // The list outlives the source.
  TScratch(int startFrame, LTransitionManager& transitions) : startFrame_(startFrame), transitions_(transitions) {}
  LSoundSource OpenSource(LSoundSource& input) override;

 private:
  int startFrame_;
  LTransitionManager& transitions_;
};

class TSRCScratch final : public LSoundProcessBase {
 public:
  static constexpr int kReachFrames = 88200;    // 2 s to each side of the hand
  static constexpr int kWindowFrames = 352800;  // twice what the reach needs
  static constexpr int kChannels = 2;

  TSRCScratch(const LSoundSource& input, int startFrame, LTransitionManager& transitions);

  void Read(int* out, int frames) override;
  bool IsStreaming() const override { return false; }

  int GetCurrentFrame() const { return current_; }
  int GetWindowStart() const { return windowStart_; }
  int GetWindowEnd() const { return windowEnd_; }

 private:
  void FillWindow(int centre);
  bool IsInWindow(int frame) const { return windowStart_ < frame && frame < windowEnd_; }
  int FollowTransition(LTransition& transition, int* out, int frames);
  void Walk(int* out, int frames, long long way) const;

  LTransitionManager& transitions_;
  int current_;                          // where the hand is
  int windowStart_ = 0, windowEnd_ = 0;  // what the window holds
  std::vector<int> window_;              // kWindowFrames
};
