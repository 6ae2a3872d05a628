#include "console/TMicrophone.h"

namespace {

constexpr LSoundTime kMaxSpeakingMs = 216000000;
constexpr int kGateDb = -50;
constexpr int kLateFrames = 10000, kStarvedFrames = 1001;
constexpr int kRefillWaitMs = 100;
constexpr int kResumeTimer = 0;

}  // namespace

TMicrophone::TMicrophone(TMicrophoneNotify& target) : target_(target) {
  player_.SetNotify(this, 0);
  pipe_.SetStopSignals(recorder_.StopSignal(), player_.StopSignal());
}

bool TMicrophone::StartSpeaking() {
  StopSpeaking();
  sink_ = pipe_.OpenSink();
  source_ = pipe_.OpenSource();
  speaking_ = player_.Start(source_, 0) && recorder_.Start(sink_, kMaxSpeakingMs, kGateDb, 0, 0);
  if (!speaking_) StopSpeaking();
  return speaking_;
}

void TMicrophone::StopSpeaking() {
  TimerReset(kResumeTimer);
  speaking_ = false;
  player_.StopPlaying();
  source_.Close();
  recorder_.Stop();
  sink_.Close();
  pipe_.Reset();
}

void TMicrophone::spntfLevel(const LLevels& levels, long) {
  HoldDelay();
  target_.micntfLevel(levels);
}

void TMicrophone::HoldDelay() {
  if (!speaking_) return;
  auto& device = player_.GetDevice();
  const int lag = device.GetLagToWriteCursor();
  if (lag > kLateFrames) {
    player_.LockEngine();
    device.ResyncStart();
    // The input cannot go back; the crossfade's history does, and fades from what would have followed.
    player_.Chain().Seek(player_.Chain().GetPositionSample() - device.GetLagToWriteCursor());
    player_.RequestCrossFade();
    device.ResyncBuffer(false);
    device.ResyncFinish();
    player_.UnlockEngine();
  } else if (lag < kStarvedFrames && player_.IsPlaying()) {
    player_.Pause();
    TimerSet(kResumeTimer, kRefillWaitMs);
  }
}

void TMicrophone::EvTimer(int) {
  if (speaking_) player_.Resume();
}
