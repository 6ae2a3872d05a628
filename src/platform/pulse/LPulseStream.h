// One stream of libpulse that keeps itself alive: it asks the server for its device, opens with that device's own
// channel map, watches that the server calls back, and looks for a lost device.
// Order    a lost device is tried again, then the default one, every kDeviceRetryMs.
// Units    frames, Hz, ms
// Threads  construction, Start, Stop, Reset, destruction [main]; everything private on the event thread or under its
//          lock; the callbacks [device], on the event thread.
// Failure  IsOpen is false after construction: it could not be opened.
#pragma once
#include <memory>
#include <string>

#include "platform/pulse/LPulseConnection.h"
#include "platform/resample/LResampledOutput.h"

struct LPulseRequest {
  std::string device;  // the server's name; empty: the default one
  bool input = false;
  LSoundStreamFormat format;
};

class LPulseStream final : private LPulseUser {
 public:
  LPulseStream(std::shared_ptr<LPulseConnection> connection, const LPulseRequest& request, LSoundRenderer* renderer,
               LSoundInputReceiver* receiver);
  ~LPulseStream();
  LPulseStream(const LPulseStream&) = delete;
  LPulseStream& operator=(const LPulseStream&) = delete;

  bool IsOpen() const { return opened_; }
  bool Start();
  void Stop();
  void Reset();
  // As the device first opened gave them; they stand whatever device plays later.
  int MaxSliceFrames() const { return maxSliceFrames_; }
  int DelayFrames() const { return delayFrames_; }
  int DeviceChannels() const { return deviceChannels_; }
  int SampleRate() const { return sampleRate_; }

 private:
  enum class State { Closed, Asking, Opening, Ready };

  void Tick(std::uint32_t nowMs) override;
  void ConnectionLost() override;
  void Ask(bool forDefault);
  void Uncork();
  void OnAnswer(const LPulseDevice* device);
  bool Open(bool atDeviceRate);
  bool Connect();
  void OnStreamState();
  void OnReady();
  void OnOpenFailed();
  void CloseStream();
  void Lose();
  template <class Info>
  static void OnInfo(pa_context*, const Info* info, int last, void* self);
  void Fill();
  void RenderInto(int* out, int frames);
  void Take();
  void Receive(const float* in, int frames);

  std::shared_ptr<LPulseConnection> connection_;
  LPulseRequest request_;
  LSoundRenderer* renderer_;
  LSoundInputReceiver* receiver_;
  std::unique_ptr<LResampledOutput> resampler_;

  State state_ = State::Closed;
  pa_operation* question_ = nullptr;
  pa_stream* stream_ = nullptr;
  pa_defer_event* fill_ = nullptr;  // renders on the event thread right after Start
  LPulseDevice device_;             // open or being opened
  pa_sample_spec spec_{};           // of the stream; its channels are never more than the format's
  bool asksDefault_ = false, atDeviceRate_ = false;
  bool opened_ = false, running_ = false;
  bool lost_ = false, announced_ = false;  // announced_: the user was told
  int maxSliceFrames_ = 0, delayFrames_ = 0, deviceChannels_ = 0, sampleRate_ = 0;
  std::uint32_t lastTryMs_ = 0, lastCallbackMs_ = 0;
  std::vector<int> block_;         // a slice of the format's channels, where the device has fewer
  std::vector<float> floatBlock_;  // the same for an input
};
