#include "platform/pulse/LPulseStream.h"

#include <algorithm>
#include <utility>

namespace {

constexpr unsigned kOpenLimitMs = 3000;
// The server holds four slices, 46 ms at 44100 Hz: as much as a player treats as already taken, so that a change is
// heard when the player says. It asks for one slice at a time: the device's own buffer then gets half of what lies
// above two slices, one slice, and three are left to bridge a late thread. After running dry it waits until all four
// are back.
constexpr int kBufferedSlices = 4;
constexpr unsigned kFirstCallbackMs = 1000;  // of grace: a sink that slept takes its time

void Release(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

// Copies the first `outChannels` of each frame, or all of them and leaves the rest as it is.
template <class Sample>
void CopyChannels(const Sample* in, int inChannels, Sample* out, int outChannels, int frames) {
  const int count = std::min(inChannels, outChannels);
  for (int frame = 0; frame < frames; ++frame)
    std::copy_n(in + std::ptrdiff_t(frame) * inChannels, count, out + std::ptrdiff_t(frame) * outChannels);
}

}  // namespace

LPulseStream::LPulseStream(std::shared_ptr<LPulseConnection> connection, const LPulseRequest& request,
                           LSoundRenderer* renderer, LSoundInputReceiver* receiver)
    : connection_(std::move(connection)), request_(request), renderer_(renderer), receiver_(receiver) {
  const std::size_t samples = std::size_t(request.format.sliceFrames) * std::size_t(request.format.channels);
  if (renderer)
    block_.resize(samples);
  else
    floatBlock_.resize(samples);

  LPulseLock lock(*connection_);
  if (!connection_->IsReady()) return;
  connection_->Add(*this);
  Ask(request_.device.empty());
  connection_->WaitUntil([&] { return state_ == State::Ready || state_ == State::Closed; }, kOpenLimitMs);
  opened_ = state_ == State::Ready;
  if (!opened_) return;
  deviceChannels_ = device_.info.channels;
  sampleRate_ = int(spec_.rate);
  maxSliceFrames_ = request_.format.sliceFrames;
  if (!resampler_) return;
  delayFrames_ = resampler_->DelayFrames();
  maxSliceFrames_ = resampler_->SourceSliceFrames(maxSliceFrames_);
}

LPulseStream::~LPulseStream() {
  LPulseLock lock(*connection_);
  running_ = false;
  connection_->Remove(*this);
  CloseStream();
}

bool LPulseStream::Start() {
  LPulseLock lock(*connection_);
  if (!opened_) return false;
  if (resampler_ && !running_) resampler_->Discard();
  running_ = true;
  if (state_ == State::Ready) Uncork();
  return true;  // a lost device will come back
}

void LPulseStream::Stop() {
  LPulseLock lock(*connection_);
  running_ = false;
  if (state_ != State::Ready) return;
  if (fill_) connection_->Api()->defer_enable(fill_, 0);
  Release(pa_stream_cork(stream_, 1, nullptr, nullptr));
  Release(pa_stream_flush(stream_, nullptr, nullptr));
}

void LPulseStream::Reset() {
  LPulseLock lock(*connection_);
  if (state_ == State::Ready) Release(pa_stream_flush(stream_, nullptr, nullptr));
}

void LPulseStream::Uncork() {
  lastCallbackMs_ = LPulseConnection::NowMs() + kFirstCallbackMs;
  Release(pa_stream_cork(stream_, 0, nullptr, nullptr));
  if (fill_) connection_->Api()->defer_enable(fill_, 1);
}

template <class Info>
void LPulseStream::OnInfo(pa_context*, const Info* info, int last, void* self) {
  auto& stream = *static_cast<LPulseStream*>(self);
  if (stream.state_ != State::Asking) return;
  if (last || !info) return stream.OnAnswer(nullptr);
  const LPulseDevice device = MakePulseDevice(info->name, info->description, info->sample_spec, info->channel_map);
  stream.OnAnswer(&device);
}

void LPulseStream::Ask(bool forDefault) {
  CloseStream();
  state_ = State::Asking;
  asksDefault_ = forDefault;
  lastTryMs_ = LPulseConnection::NowMs();
  pa_context* context = connection_->Context();
  question_ =
      request_.input
          ? pa_context_get_source_info_by_name(context, forDefault ? "@DEFAULT_SOURCE@" : request_.device.c_str(),
                                               OnInfo<pa_source_info>, this)
          : pa_context_get_sink_info_by_name(context, forDefault ? "@DEFAULT_SINK@" : request_.device.c_str(),
                                             OnInfo<pa_sink_info>, this);
  if (!question_) OnOpenFailed();
}

void LPulseStream::OnAnswer(const LPulseDevice* device) {
  if (!device) return OnOpenFailed();
  device_ = *device;
  if (!Open(false)) OnOpenFailed();
}

bool LPulseStream::Open(bool atDeviceRate) {
  CloseStream();
  state_ = State::Opening;
  atDeviceRate_ = atDeviceRate;
  const LSoundStreamFormat& format = request_.format;
  spec_.format = request_.input ? PA_SAMPLE_FLOAT32NE : PA_SAMPLE_S32NE;
  spec_.channels = static_cast<std::uint8_t>(std::clamp(format.channels, 1, int(device_.map.channels)));
  const int wantedRate = request_.input ? sampleRate_ : format.sampleRate;  // an input once open keeps its rate
  spec_.rate = std::uint32_t(atDeviceRate || wantedRate <= 0 ? device_.info.preferredRate : wantedRate);
  resampler_.reset();
  if (renderer_ && int(spec_.rate) != format.sampleRate) {
    resampler_ = std::make_unique<LResampledOutput>(*renderer_, format.sampleRate, int(spec_.rate), format.channels);
    if (!resampler_->IsOk()) return false;
  }
  return Connect();
}

// The device's own positions keep every channel in its place; without them the server would mix channels into others.
bool LPulseStream::Connect() {
  pa_channel_map map = device_.map;
  map.channels = spec_.channels;
  stream_ = pa_sample_spec_valid(&spec_) ? pa_stream_new(connection_->Context(), "Tavi", &spec_, &map) : nullptr;
  if (!stream_) {
    OnOpenFailed();
    return true;
  }
  pa_stream_set_state_callback(
      stream_, [](pa_stream*, void* self) { static_cast<LPulseStream*>(self)->OnStreamState(); }, this);
  const auto slice = std::uint32_t(std::size_t(request_.format.sliceFrames) * pa_frame_size(&spec_));
  pa_buffer_attr buffer{};
  buffer.maxlength = std::uint32_t(-1);
  buffer.tlength = buffer.prebuf = kBufferedSlices * slice;
  buffer.minreq = slice;
  buffer.fragsize =
      std::uint32_t(std::size_t(std::min(request_.format.sliceFrames, kWantedSliceFrames)) * pa_frame_size(&spec_));
  // A device named by the user is not exchanged behind our back; the default one may follow the desktop's choice.
  const char* name = asksDefault_ ? nullptr : device_.id.c_str();
  const auto flags = pa_stream_flags_t(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY | PA_STREAM_NO_REMIX_CHANNELS |
                                       (asksDefault_ ? 0 : PA_STREAM_DONT_MOVE));
  int result;
  if (request_.input) {
    pa_stream_set_read_callback(
        stream_, [](pa_stream*, size_t, void* self) { static_cast<LPulseStream*>(self)->Take(); }, this);
    result = pa_stream_connect_record(stream_, name, &buffer, flags);
  } else {
    pa_stream_set_write_callback(
        stream_, [](pa_stream*, size_t, void* self) { static_cast<LPulseStream*>(self)->Fill(); }, this);
    result = pa_stream_connect_playback(stream_, name, &buffer, flags, nullptr, nullptr);
  }
  if (result < 0) OnOpenFailed();
  return true;
}

void LPulseStream::OnStreamState() {
  const pa_stream_state_t state = pa_stream_get_state(stream_);
  if (state == PA_STREAM_READY)
    OnReady();
  else if (!PA_STREAM_IS_GOOD(state))
    state_ == State::Ready ? Lose() : OnOpenFailed();
}

void LPulseStream::OnReady() {
  state_ = State::Ready;
  lost_ = false;
  if (renderer_) {
    fill_ = connection_->Api()->defer_new(
        connection_->Api(),
        [](pa_mainloop_api* api, pa_defer_event* event, void* self) {
          api->defer_enable(event, 0);
          static_cast<LPulseStream*>(self)->Fill();
        },
        this);
    if (fill_) connection_->Api()->defer_enable(fill_, 0);
  }
  if (running_) Uncork();
  if (std::exchange(announced_, false)) connection_->messages.Regained(device_.info.name);
  connection_->Signal();
}

void LPulseStream::OnOpenFailed() {
  const bool refused = state_ == State::Opening && !atDeviceRate_ && int(spec_.rate) != device_.info.preferredRate;
  CloseStream();
  if (refused && connection_->IsReady()) {
    if (Open(true)) return;
    CloseStream();
  }
  if (lost_ && !asksDefault_ && connection_->IsReady()) return Ask(true);
  connection_->Signal();
}

void LPulseStream::CloseStream() {
  state_ = State::Closed;
  if (question_) {
    pa_operation_cancel(question_);
    Release(std::exchange(question_, nullptr));
  }
  if (fill_) connection_->Api()->defer_free(std::exchange(fill_, nullptr));
  if (!stream_) return;
  pa_stream* stream = std::exchange(stream_, nullptr);
  pa_stream_set_state_callback(stream, nullptr, nullptr);
  pa_stream_set_write_callback(stream, nullptr, nullptr);
  pa_stream_set_read_callback(stream, nullptr, nullptr);
  pa_stream_disconnect(stream);
  pa_stream_unref(stream);
}

void LPulseStream::ConnectionLost() {
  if (opened_) return Lose();
  CloseStream();
  connection_->Signal();
}

void LPulseStream::Lose() {
  CloseStream();
  lastTryMs_ = LPulseConnection::NowMs() - kDeviceRetryMs;  // the first attempt comes at once
  lost_ = true;
  if (running_ && !std::exchange(announced_, true)) connection_->messages.Lost(device_.info.name);
}

void LPulseStream::Tick(std::uint32_t nowMs) {
  if (!opened_) return;
  if (state_ == State::Ready) {
    if (running_ && std::int32_t(nowMs - lastCallbackMs_) > std::int32_t(kDeviceSilentMs)) Lose();
    return;
  }
  if (lost_ && connection_->IsReady() && nowMs - lastTryMs_ >= kDeviceRetryMs) Ask(request_.device.empty());
}

void LPulseStream::Fill() {
  if (!running_ || state_ != State::Ready) return;
  lastCallbackMs_ = LPulseConnection::NowMs();
  const std::size_t frameBytes = pa_frame_size(&spec_), writable = pa_stream_writable_size(stream_);
  if (writable == std::size_t(-1)) return;
  for (std::size_t frames = writable / frameBytes; frames > 0;) {
    void* out = nullptr;
    std::size_t bytes = std::min(frames, std::size_t(request_.format.sliceFrames)) * frameBytes;
    if (pa_stream_begin_write(stream_, &out, &bytes) < 0 || !out || bytes < frameBytes) return;
    const std::size_t block = std::min(bytes / frameBytes, frames);
    RenderInto(static_cast<int*>(out), int(block));
    if (pa_stream_write(stream_, out, block * frameBytes, nullptr, 0, PA_SEEK_RELATIVE) < 0) return;
    frames -= block;
  }
}

void LPulseStream::RenderInto(int* out, int frames) {
  LSoundRenderer& renderer = resampler_ ? *resampler_ : *renderer_;
  const int channels = request_.format.channels;
  for (const int slice = request_.format.sliceFrames; frames > 0; frames -= slice, out += slice * spec_.channels) {
    const int block = std::min(frames, slice);
    const bool straight = spec_.channels == channels;
    renderer.RenderData(straight ? out : block_.data(), block, channels);
    if (!straight) CopyChannels(block_.data(), channels, out, spec_.channels, block);
  }
}

void LPulseStream::Take() {
  if (state_ != State::Ready) return;
  lastCallbackMs_ = LPulseConnection::NowMs();
  while (pa_stream_readable_size(stream_) > 0) {
    const void* data = nullptr;
    std::size_t bytes = 0;
    if (pa_stream_peek(stream_, &data, &bytes) < 0 || bytes == 0) return;
    const int frames = int(bytes / pa_frame_size(&spec_));
    if (running_) Receive(static_cast<const float*>(data), frames);
    pa_stream_drop(stream_);
  }
}

// in is null where the server lost something: silence of the same length.
void LPulseStream::Receive(const float* in, int frames) {
  const int channels = request_.format.channels;
  for (const int slice = request_.format.sliceFrames; frames > 0; frames -= slice) {
    const int block = std::min(frames, slice);
    if (in)
      CopyChannels(in, spec_.channels, floatBlock_.data(), channels, block);
    else
      std::fill(floatBlock_.begin(), floatBlock_.end(), 0.0f);
    receiver_->InputData(floatBlock_.data(), block, channels);
    if (in) in += std::ptrdiff_t(block) * spec_.channels;
  }
}
