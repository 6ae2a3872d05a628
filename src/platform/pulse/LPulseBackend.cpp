#include "platform/pulse/LPulseBackend.h"

#include <optional>
#include <utility>

#include "platform/pulse/LPulseStream.h"

namespace {

class Output final : public LSoundOutputStream {
 public:
  Output(std::shared_ptr<LPulseConnection> connection, const LPulseRequest& request, LSoundRenderer& renderer)
      : stream_(std::move(connection), request, &renderer, nullptr) {}

  bool IsOpen() const { return stream_.IsOpen(); }
  bool Start() override { return stream_.Start(); }
  void Stop() override { stream_.Stop(); }
  void Reset() override { stream_.Reset(); }
  int MaxSliceFrames() const override { return stream_.MaxSliceFrames(); }
  int ExtraLatencyFrames() const override { return stream_.DelayFrames(); }
  int DeviceChannels() const override { return stream_.DeviceChannels(); }

 private:
  LPulseStream stream_;
};

class Input final : public LSoundInputStream {
 public:
  Input(std::shared_ptr<LPulseConnection> connection, const LPulseRequest& request, LSoundInputReceiver& receiver)
      : stream_(std::move(connection), request, nullptr, &receiver) {}

  bool IsOpen() const { return stream_.IsOpen(); }
  bool Start() override { return stream_.Start(); }
  void Stop() override { stream_.Stop(); }
  int SampleRate() const override { return stream_.SampleRate(); }

 private:
  LPulseStream stream_;
};

std::vector<LSoundDeviceInfo> Infos(const std::vector<LPulseDevice>& devices) {
  std::vector<LSoundDeviceInfo> infos;
  infos.reserve(devices.size());
  for (const LPulseDevice& device : devices) infos.push_back(device.info);
  return infos;
}

std::optional<LPulseRequest> MakeRequest(LPulseConnection& connection, int device, bool input,
                                         const LSoundStreamFormat& format) {
  if (format.channels < 1 || format.channels > int(PA_CHANNELS_MAX) || format.sliceFrames < 1) return std::nullopt;
  LPulseRequest request{"", input, format};
  if (device == kDefaultDevice) return request;
  const std::vector<LPulseDevice> devices = connection.Devices(input);
  if (device < 0 || device >= int(devices.size())) return std::nullopt;
  request.device = devices[std::size_t(device)].id;
  return request;
}

}  // namespace

LPulseBackend::LPulseBackend() : connection_(std::make_shared<LPulseConnection>()) {}

std::vector<LSoundDeviceInfo> LPulseBackend::OutputDevices() { return Infos(connection_->Devices(false)); }
std::vector<LSoundDeviceInfo> LPulseBackend::InputDevices() { return Infos(connection_->Devices(true)); }
std::string LPulseBackend::TakeMessage() { return connection_->messages.Take(); }

std::unique_ptr<LSoundOutputStream> LPulseBackend::OpenOutput(int device, const LSoundStreamFormat& format,
                                                              LSoundRenderer& renderer) {
  const auto request = MakeRequest(*connection_, device, false, format);
  if (!request || !connection_->IsRunning()) return nullptr;
  auto stream = std::make_unique<Output>(connection_, *request, renderer);
  if (!stream->IsOpen()) return nullptr;
  return stream;
}

std::unique_ptr<LSoundInputStream> LPulseBackend::OpenInput(int device, const LSoundStreamFormat& format,
                                                            LSoundInputReceiver& receiver) {
  const auto request = MakeRequest(*connection_, device, true, format);
  if (!request || !connection_->IsRunning()) return nullptr;
  auto stream = std::make_unique<Input>(connection_, *request, receiver);
  if (!stream->IsOpen()) return nullptr;
  return stream;
}
