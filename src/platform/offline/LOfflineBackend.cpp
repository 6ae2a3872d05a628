#include "platform/offline/LOfflineBackend.h"

#include <algorithm>
#include <mutex>

#include "foundation/LText.h"
#include "foundation/LThreadRole.h"

// What both kinds of stream share: they are switched on and off while another thread may render.
template <class Stream>
class LOfflineBackend::Switched : public Stream {
 public:
  explicit Switched(LOfflineBackend& backend) : backend_(backend) {}
  bool Start() override {
    std::lock_guard lock(backend_.mutex_);
    return running_ = true;
  }
  void Stop() override {
    std::lock_guard lock(backend_.mutex_);
    running_ = false;
  }

 protected:
  LOfflineBackend& backend_;
  bool running_ = false;
};

class LOfflineBackend::Output final : public Switched<LSoundOutputStream> {
 public:
  Output(LOfflineBackend& backend, int device, const LSoundStreamFormat& format, LSoundRenderer& renderer)
      : Switched(backend),
        device_(std::max(device, 0)),
        channels_(format.channels),
        renderer_(renderer),
        block_(std::size_t(kWantedSliceFrames) * std::size_t(format.channels)) {
    std::lock_guard lock(backend_.mutex_);
    backend_.outputs_.push_back(this);
  }
  ~Output() override {
    std::lock_guard lock(backend_.mutex_);
    std::erase(backend_.outputs_, this);
  }

  void Reset() override {}
  int MaxSliceFrames() const override { return kWantedSliceFrames; }
  int DeviceChannels() const override { return backend_.deviceChannels_; }

  void Render(int frames) {
    if (!running_) return;
    renderer_.RenderData(block_.data(), frames, channels_);
    if (std::size_t(device_) >= backend_.captures_.size()) return;
    if (const Capture& capture = backend_.captures_[std::size_t(device_)]) capture(block_.data(), frames, channels_);
  }

 private:
  int device_;
  int channels_;
  LSoundRenderer& renderer_;
  std::vector<int> block_;
};

class LOfflineBackend::Input final : public Switched<LSoundInputStream> {
 public:
  Input(LOfflineBackend& backend, int channels, LSoundInputReceiver& receiver)
      : Switched(backend), channels_(channels), receiver_(receiver) {
    const std::size_t frames = kMaxBlockFrames;
    samples_.resize(frames * backend_.input_.GetChannels());
    floats_.resize(frames * std::size_t(channels));
    std::lock_guard lock(backend_.mutex_);
    backend_.inputs_.push_back(this);
  }
  ~Input() override {
    std::lock_guard lock(backend_.mutex_);
    std::erase(backend_.inputs_, this);
  }

  int SampleRate() const override { return backend_.input_.GetSampleRate(); }

  void Feed(int frames) {
    if (!running_) return;
    const int have = backend_.input_.GetChannels();
    backend_.input_.Read(samples_.data(), frames);
    for (int frame = 0; frame < frames; ++frame)
      for (int channel = 0; channel < channels_; ++channel)
        floats_[std::size_t(frame * channels_ + channel)] =
            channel < have ? float(samples_[std::size_t(frame * have + channel)]) / float(kFullScale) : 0.0f;
    receiver_.InputData(floats_.data(), frames, channels_);
  }

 private:
  int channels_;
  LSoundInputReceiver& receiver_;
  std::vector<int> samples_;
  std::vector<float> floats_;
};

void LOfflineBackend::SetCapture(int device, Capture capture) {
  if (captures_.size() <= std::size_t(device)) captures_.resize(std::size_t(device) + 1);
  captures_[std::size_t(device)] = std::move(capture);
}

void LOfflineBackend::RenderSlice(int frames) {
  LThreadRoleScope role(LThreadRole::Device);
  std::lock_guard lock(mutex_);
  for (Input* input : inputs_) input->Feed(frames);
  for (Output* output : outputs_) output->Render(frames);
}

std::vector<LSoundDeviceInfo> LOfflineBackend::OutputDevices() {
  std::vector<LSoundDeviceInfo> devices;
  for (int i = 0; i < deviceCount_; ++i) {
    LSoundDeviceInfo info;
    info.name = i == 0 ? "Offline" : LText::Format("Offline (%d)", i + 1);
    info.channels = deviceChannels_;
    info.preferredRate = kDeckRate;
    info.isDefault = i == 0;
    devices.push_back(info);
  }
  return devices;
}

std::vector<LSoundDeviceInfo> LOfflineBackend::InputDevices() {
  if (!input_.IsOk()) return {};
  LSoundDeviceInfo info;
  info.name = "Offline";
  info.channels = input_.GetChannels();
  info.preferredRate = input_.GetSampleRate();
  info.isDefault = true;
  return {info};
}

std::unique_ptr<LSoundOutputStream> LOfflineBackend::OpenOutput(int device, const LSoundStreamFormat& format,
                                                                LSoundRenderer& renderer) {
  if (device >= deviceCount_ || deviceCount_ == 0) return nullptr;
  return std::make_unique<Output>(*this, device, format, renderer);
}

std::unique_ptr<LSoundInputStream> LOfflineBackend::OpenInput(int, const LSoundStreamFormat& format,
                                                              LSoundInputReceiver& receiver) {
  if (!input_.IsOk()) return nullptr;
  return std::make_unique<Input>(*this, format.channels, receiver);
}
