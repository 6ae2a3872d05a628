#include "platform/rtaudio/LRtAudioStream.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "foundation/LClock.h"
#include "platform/LBounded.h"

namespace {

constexpr unsigned kOpenLimitMs = 3000, kStartLimitMs = 1500, kAbortLimitMs = 1000;
constexpr unsigned kSettleLimitMs = 2000;  // Start and Stop wait no longer for the device
constexpr unsigned kWatchMs = 200;

std::uint32_t NowMs() {
  static const LRealClock clock;  // devices run in real time, whatever the program's clock says
  return clock.NowMs();
}

}  // namespace

bool LRtAudioBridge::Prepare(const LRtAudioGrant& grant, int sourceRate) {
  streamChannels_ = grant.channels;
  sliceFrames_ = std::max(grant.sliceFrames, 1);
  maxSliceFrames_ = sliceFrames_;
  const std::size_t samples = std::size_t(sliceFrames_) * std::size_t(channels_);
  if (receiver_) {
    floatBlock_.resize(samples);
    return true;
  }
  block_.resize(samples);
  if (grant.sampleRate == sourceRate) return true;
  resampler_ = std::make_unique<LResampledOutput>(*renderer_, sourceRate, grant.sampleRate, channels_);
  maxSliceFrames_ = resampler_->SourceSliceFrames(sliceFrames_);
  return resampler_->IsOk();
}

void LRtAudioBridge::ShutGate() {
  open_ = false;
  while (inside_) std::this_thread::sleep_for(std::chrono::microseconds(100));  // for one block at most
}

void LRtAudioBridge::Discard() {
  if (resampler_) resampler_->Discard();
}

unsigned LRtAudioBridge::MsSinceCallback() const { return NowMs() - lastCallbackMs_; }
void LRtAudioBridge::RestartWatch() { lastCallbackMs_ = NowMs(); }

void LRtAudioBridge::Process(void* out, const void* in, int frames) {
  lastCallbackMs_ = NowMs();
  inside_ = true;
  const bool open = open_;
  if (open && out) Render(static_cast<int*>(out), frames);
  if (open && in) Receive(static_cast<const float*>(in), frames);
  inside_ = false;
  if (!open && out) std::fill_n(static_cast<int*>(out), std::ptrdiff_t(frames) * streamChannels_, 0);
}

// A server's period may have grown since: no request is larger than what was promised.
void LRtAudioBridge::Render(int* out, int frames) {
  LSoundRenderer& renderer = resampler_ ? *resampler_ : *renderer_;
  const bool straight = streamChannels_ == channels_;
  while (frames > 0) {
    const int block = std::min(frames, sliceFrames_);
    renderer.RenderData(straight ? out : block_.data(), block, channels_);
    for (int frame = 0; !straight && frame < block; ++frame)
      std::copy_n(block_.data() + std::ptrdiff_t(frame) * channels_, streamChannels_,
                  out + std::ptrdiff_t(frame) * streamChannels_);
    out += std::ptrdiff_t(block) * streamChannels_;
    frames -= block;
  }
}

void LRtAudioBridge::Receive(const float* in, int frames) {
  while (frames > 0) {
    const int block = std::min(frames, sliceFrames_);
    for (int frame = 0; frame < block; ++frame)
      std::copy_n(in + std::ptrdiff_t(frame) * streamChannels_, streamChannels_,
                  floatBlock_.data() + std::ptrdiff_t(frame) * channels_);
    receiver_->InputData(floatBlock_.data(), block, channels_);
    in += std::ptrdiff_t(block) * streamChannels_;
    frames -= block;
  }
}

LRtAudioStream::LRtAudioStream(const LRtAudioRequest& request, LSoundRenderer* renderer, LSoundInputReceiver* receiver,
                               std::shared_ptr<LDeviceMessages> messages)
    : LThread("LRtAudioStream"),
      request_(request),
      renderer_(renderer),
      receiver_(receiver),
      messages_(std::move(messages)) {
  if (!OpenDevice(request.deviceName)) return;
  grant_ = session_->Grant();
  delayFrames_ = bridge_->DelayFrames();
  if (LThread::Start(kPriorityWorking)) maxSliceFrames_ = bridge_->MaxSliceFrames();
}

LRtAudioStream::~LRtAudioStream() {
  wanted_ = false;
  if (const auto bridge = Bridge()) bridge->ShutGate();
  LThread::Stop();
  DropSession();
}

std::shared_ptr<LRtAudioBridge> LRtAudioStream::Bridge() {
  const std::lock_guard lock(mutex_);
  return bridge_;
}

bool LRtAudioStream::Start() {
  {
    const std::lock_guard lock(mutex_);
    if (bridge_ && !wanted_) bridge_->Discard();
    wanted_ = true;
    if (bridge_) bridge_->OpenGate();
  }
  Settle();
  return wanted_;  // a lost device will come back; one that does not start has taken the wish back
}

void LRtAudioStream::Stop() {
  {
    const std::lock_guard lock(mutex_);
    wanted_ = false;
    if (bridge_) bridge_->ShutGate();
  }
  Settle();
}

// Until the thread has seen the present wish, or for a bounded while.
void LRtAudioStream::Settle() {
  const int wish = ++wishes_;
  const std::uint32_t startMs = NowMs();
  wake_.Signal();
  for (unsigned ms = 0; settledWish_ < wish && ms < kSettleLimitMs; ms = NowMs() - startMs) {
    settled_.Reset();
    if (settledWish_ < wish) settled_.WaitSignal(kSettleLimitMs - ms);
  }
}

// The library has nothing to drop but the periods on their way; a resampler's rest goes at the next start.
void LRtAudioStream::Reset() {}

void LRtAudioStream::ThreadFunction() {
  while (!IsToStop()) {
    wake_.Reset();
    const int wish = wishes_;
    Reconcile();
    settledWish_ = wish;
    settled_.Signal();
    ProcessWaitSignal(wake_, kWatchMs);
  }
}

void LRtAudioStream::Reconcile() {
  if (!session_) {
    if (wanted_ && NowMs() - lastTryMs_ >= kDeviceRetryMs) RetryDevice();
    return;
  }
  if (wanted_ && !deviceRuns_)
    StartDevice();
  else if (!wanted_ && deviceRuns_)
    AbortDevice();
  else if (deviceRuns_ && (bridge_->HasFailed() || bridge_->MsSinceCallback() > kDeviceSilentMs))
    LoseDevice();
}

bool LRtAudioStream::OpenDevice(const std::string& name) {
  return OpenAt(name, request_.sampleRate) || (request_.sampleRate > 0 && OpenAt(name, 0));
}

bool LRtAudioStream::OpenAt(const std::string& name, int sampleRate) {
  auto session = std::make_shared<LRtAudioSession>();
  auto bridge = std::make_shared<LRtAudioBridge>(renderer_, receiver_, request_.channels);
  auto opened = std::make_shared<std::atomic<bool>>(false);
  LRtAudioRequest request = request_;
  request.deviceName = name;
  request.sampleRate = sampleRate;
  const bool inTime = RunBounded(kOpenLimitMs, [=] { *opened = session->Open(request, bridge); });
  if (!inTime) return false;
  if (!*opened || !bridge->Prepare(session->Grant(), request_.sampleRate)) {
    RunBounded(kAbortLimitMs, [session = std::move(session)]() mutable { session.reset(); });
    return false;
  }
  const std::lock_guard lock(mutex_);
  session_ = std::move(session);
  bridge_ = std::move(bridge);
  if (wanted_) bridge_->OpenGate();
  return true;
}

void LRtAudioStream::StartDevice() {
  bridge_->RestartWatch();
  auto started = std::make_shared<std::atomic<bool>>(false);
  const bool inTime = RunBounded(kStartLimitMs, [started, session = session_] { *started = session->Start(); });
  deviceRuns_ = inTime && *started;
  bridge_->RestartWatch();
  if (deviceRuns_) {
    if (lost_.exchange(false)) messages_->Regained(session_->Grant().deviceName);
    return;
  }
  DropSession();
  lastTryMs_ = NowMs();
  if (!lost_) wanted_ = false;
}

void LRtAudioStream::AbortDevice() {
  deviceRuns_ = false;
  if (!RunBounded(kAbortLimitMs, [session = session_] { session->Abort(); })) DropSession();
}

void LRtAudioStream::LoseDevice() {
  messages_->Lost(session_->Grant().deviceName);
  lost_ = true;
  DropSession();
  RetryDevice();
}

void LRtAudioStream::RetryDevice() {
  lastTryMs_ = NowMs();
  if (OpenDevice(request_.deviceName) || OpenDevice("")) StartDevice();
  lastTryMs_ = NowMs();
}

void LRtAudioStream::DropSession() {
  if (const auto bridge = Bridge()) bridge->ShutGate();
  deviceRuns_ = false;
  if (!session_) return;
  RunBounded(kAbortLimitMs, [session = std::move(session_)]() mutable {
    session->Abort();
    session.reset();
  });
  session_.reset();
}
