// The talk-over: an input device through a gate and a ring into a player of its own, straight to the output and not
// through the mix, so it is not in a recording. The delay is held between two bounds: late, it drops what is queued;
// starved, it waits a moment.
// Units    frames of 44100 Hz stereo
// Threads  [main]
// Failure  StartSpeaking is false if input or output does not open.
#pragma once
#include "foundation/LTimerHandler.h"
#include "sound/LSinkToSource.h"
#include "sound/LSoundPlayer.h"
#include "sound/LSoundRecorder.h"

class TMicrophoneNotify {
 public:
  virtual void micntfLevel(const LLevels& levels) = 0;

 protected:
  ~TMicrophoneNotify() = default;
};

class TMicrophone final : private LSoundPlayerNotify, private LTimerHandler {
 public:
  explicit TMicrophone(TMicrophoneNotify& target);
  ~TMicrophone() override { StopSpeaking(); }

  void SetDevice(const LSoundPlayDevice& device) { player_.GetDevice().SetDevice(device); }
  bool StartSpeaking();
  void StopSpeaking();
  bool IsSpeaking() const { return speaking_; }

 private:
  void spntfLevel(const LLevels& levels, long id) override;
  void EvTimer(int id) override;
  void HoldDelay();

  TMicrophoneNotify& target_;  // outlives this
  LSinkToSourceBase pipe_;     // outlives both ends
  LSoundPlayer player_;
  LSoundRecorder recorder_;
  LSoundSink sink_;
  LSoundSource source_;
  bool speaking_ = false;
};
