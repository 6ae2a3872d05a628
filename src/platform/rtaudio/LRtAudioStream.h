// An output or input of RtAudio that keeps itself alive: its thread opens, starts, aborts and closes the device, each
// call bounded in time, watches that the device calls back, and looks for a lost one.
// Order    a lost device is closed; then the same one is tried, then the default one, every kDeviceRetryMs.
// Units    frames of the source; Hz
// Threads  construction, Start, Stop, destruction [main]; the callbacks [device].
// Failure  IsOpen is false after construction: it could not be opened. A library call that hangs is left behind with
//          everything it needs, and never calls the renderer again.
#pragma once
#include <atomic>
#include <memory>
#include <string>

#include "foundation/LThread.h"
#include "platform/LDeviceMessages.h"
#include "platform/resample/LResampledOutput.h"
#include "platform/rtaudio/LRtAudioSession.h"

// Between the library's callback and ours. The gate is shut by default; after ShutGate no call of ours runs or begins.
class LRtAudioBridge final : public LRtAudioClient {
 public:
  LRtAudioBridge(LSoundRenderer* renderer, LSoundInputReceiver* receiver, int channels)
      : renderer_(renderer), receiver_(receiver), channels_(channels) {}

  // Sizes everything for what the device granted, while the gate is shut. false: its rate cannot be converted.
  bool Prepare(const LRtAudioGrant& grant, int sourceRate);
  void OpenGate() { open_ = true; }
  void ShutGate();
  void Discard();  // gate shut: what a resampler holds back
  bool IsGateOpen() const { return open_.load(); }
  unsigned MsSinceCallback() const;
  void RestartWatch();
  bool HasFailed() const { return failed_.load(); }
  int MaxSliceFrames() const { return maxSliceFrames_; }
  int DelayFrames() const { return resampler_ ? resampler_->DelayFrames() : 0; }

  void Process(void* out, const void* in, int frames) override;
  void Failed() override { failed_ = true; }

 private:
  void Render(int* out, int frames);
  void Receive(const float* in, int frames);

  LSoundRenderer* renderer_;
  LSoundInputReceiver* receiver_;
  int channels_;            // of renderer or receiver
  int streamChannels_ = 0;  // of the device's stream, never more than channels_
  int sliceFrames_ = 0;
  int maxSliceFrames_ = 0;
  std::unique_ptr<LResampledOutput> resampler_;
  std::vector<int> block_;         // sliceFrames_ of channels_, where the device has fewer
  std::vector<float> floatBlock_;  // the same for an input
  std::atomic<bool> open_{false}, inside_{false}, failed_{false};
  std::atomic<std::uint32_t> lastCallbackMs_{0};
};

class LRtAudioStream final : private LThread {
 public:
  LRtAudioStream(const LRtAudioRequest& request, LSoundRenderer* renderer, LSoundInputReceiver* receiver,
                 std::shared_ptr<LDeviceMessages> messages);
  ~LRtAudioStream() override;

  bool IsOpen() const { return maxSliceFrames_ > 0; }
  bool Start();
  void Stop();
  void Reset();
  const LRtAudioGrant& Grant() const { return grant_; }  // of the device first opened
  int MaxSliceFrames() const { return maxSliceFrames_; }
  int DelayFrames() const { return delayFrames_; }

 private:
  void ThreadFunction() override;
  void Reconcile();
  bool OpenDevice(const std::string& name);
  bool OpenAt(const std::string& name, int sampleRate);
  void StartDevice();
  void AbortDevice();
  void LoseDevice();
  void RetryDevice();
  void DropSession();
  void Settle();
  std::shared_ptr<LRtAudioBridge> Bridge();

  LRtAudioRequest request_;
  LSoundRenderer* renderer_;
  LSoundInputReceiver* receiver_;
  std::shared_ptr<LDeviceMessages> messages_;
  LRtAudioGrant grant_;
  int maxSliceFrames_ = 0, delayFrames_ = 0;

  LMutex mutex_;  // guards bridge_ and that the gate follows wanted_
  std::shared_ptr<LRtAudioBridge> bridge_;
  std::atomic<bool> wanted_{false};           // Start was called, Stop was not
  std::shared_ptr<LRtAudioSession> session_;  // the thread's, once it runs; null while lost
  bool deviceRuns_ = false;
  std::uint32_t lastTryMs_ = 0;
  std::atomic<bool> lost_{false};
  LSignalObject wake_, settled_;
  std::atomic<int> wishes_{0},
      settledWish_{0};  // changes of wanted_: made, and followed by the device as far as it could
};
