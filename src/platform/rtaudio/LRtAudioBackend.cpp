#include "platform/rtaudio/LRtAudioBackend.h"

#include <utility>

#include "platform/LBounded.h"
#include "platform/rtaudio/LRtAudioStream.h"

namespace {

constexpr unsigned kListLimitMs = 3000;

class Output final : public LSoundOutputStream {
 public:
  Output(const LRtAudioRequest& request, LSoundRenderer& renderer, std::shared_ptr<LDeviceMessages> messages,
         std::shared_ptr<int> open)
      : open_(std::move(open)), stream_(request, &renderer, nullptr, std::move(messages)) {}

  bool IsOpen() const { return stream_.IsOpen(); }
  bool Start() override { return stream_.Start(); }
  void Stop() override { stream_.Stop(); }
  void Reset() override { stream_.Reset(); }
  int MaxSliceFrames() const override { return stream_.MaxSliceFrames(); }
  int ExtraLatencyFrames() const override { return stream_.DelayFrames(); }
  int DeviceChannels() const override { return stream_.Grant().deviceChannels; }

 private:
  std::shared_ptr<int> open_;
  LRtAudioStream stream_;
};

class Input final : public LSoundInputStream {
 public:
  Input(const LRtAudioRequest& request, LSoundInputReceiver& receiver, std::shared_ptr<LDeviceMessages> messages,
        std::shared_ptr<int> open)
      : open_(std::move(open)), stream_(request, nullptr, &receiver, std::move(messages)) {}

  bool IsOpen() const { return stream_.IsOpen(); }
  bool Start() override { return stream_.Start(); }
  void Stop() override { stream_.Stop(); }
  int SampleRate() const override { return stream_.Grant().sampleRate; }

 private:
  std::shared_ptr<int> open_;
  LRtAudioStream stream_;
};

LRtAudioRequest MakeRequest(const std::string& api, std::string name, bool input, const LSoundStreamFormat& format) {
  LRtAudioRequest request;
  request.api = api;
  request.deviceName = std::move(name);
  request.input = input;
  request.channels = format.channels;
  request.sampleRate = input ? 0 : format.sampleRate;
  request.sliceFrames = format.sliceFrames;
  return request;
}

}  // namespace

// A device that plays refuses to be asked what it can (ALSA's hardware is exclusive): while a stream is open, the list
// stands as it was.
const LRtAudioBackend::Infos& LRtAudioBackend::Devices(Infos& known, bool input) {
  if (openStreams_.use_count() > 1 && !known.empty()) return known;
  auto found = std::make_shared<Infos>();
  if (RunBounded(kListLimitMs, [found, input, api = api_] { *found = LRtAudioSession::List(api, input); }))
    known = *found;
  return known;
}

bool LRtAudioBackend::NameOf(int device, bool input, std::string& name) {
  name.clear();
  if (device == kDefaultDevice) return true;
  const Infos& devices = Devices(input ? inputs_ : outputs_, input);
  if (device < 0 || device >= int(devices.size())) return false;
  name = devices[std::size_t(device)].name;
  return true;
}

std::unique_ptr<LSoundOutputStream> LRtAudioBackend::OpenOutput(int device, const LSoundStreamFormat& format,
                                                                LSoundRenderer& renderer) {
  std::string name;
  if (!NameOf(device, false, name)) return nullptr;
  auto stream = std::make_unique<Output>(MakeRequest(api_, name, false, format), renderer, messages_, openStreams_);
  if (!stream->IsOpen()) return nullptr;
  return stream;
}

std::unique_ptr<LSoundInputStream> LRtAudioBackend::OpenInput(int device, const LSoundStreamFormat& format,
                                                              LSoundInputReceiver& receiver) {
  std::string name;
  if (!NameOf(device, true, name)) return nullptr;
  auto stream = std::make_unique<Input>(MakeRequest(api_, name, true, format), receiver, messages_, openStreams_);
  if (!stream->IsOpen()) return nullptr;
  return stream;
}
