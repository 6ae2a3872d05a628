#include "platform/rtaudio/LRtAudioSession.h"

#include <RtAudio.h>

#include <algorithm>
#include <exception>
#include <type_traits>
#include <utility>

#include "foundation/LThreadRole.h"
#include "platform/LDeviceMessages.h"

#if defined(RTAUDIO_VERSION_MAJOR) && RTAUDIO_VERSION_MAJOR >= 6
#define TAVI_RTAUDIO_6
#endif

namespace {

constexpr unsigned kBuffers = 4;       // ALSA's periods: 46 ms of 512 frames, as the desktop's sound servers get
constexpr int kRealTimePriority = 10;  // of the device's thread, where the system allows it
constexpr const char* kClientName = "Tavi";

struct Device {
  unsigned id;  // what openStream wants
  LSoundDeviceInfo info;
};

// Calls the library; an exception and a code that is no success both give false.
template <class Call>
bool Guarded(Call call) {
  try {
#ifdef TAVI_RTAUDIO_6
    if constexpr (std::is_same_v<decltype(call()), RtAudioErrorType>) {
      const RtAudioErrorType result = call();
      return result == RTAUDIO_NO_ERROR || result == RTAUDIO_WARNING;
    }
#endif
    call();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

std::unique_ptr<RtAudio> NewLibrary(const std::string& api) {
  std::unique_ptr<RtAudio> library;
  Guarded([&] {
    const RtAudio::Api id = RtAudio::getCompiledApiByName(api);
    if (id == RtAudio::UNSPECIFIED) return;
    library = std::make_unique<RtAudio>(id);
    library->showWarnings(false);
  });
  return library;
}

std::vector<unsigned> DeviceIds(RtAudio& library) {
#ifdef TAVI_RTAUDIO_6
  return library.getDeviceIds();
#else
  std::vector<unsigned> ids(library.getDeviceCount());
  for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = unsigned(i);
  return ids;
#endif
}

std::vector<Device> Devices(RtAudio& library, bool input) {
  std::vector<Device> devices;
  Guarded([&] {
    for (const unsigned id : DeviceIds(library))
      Guarded([&] {
        const RtAudio::DeviceInfo found = library.getDeviceInfo(id);
        const unsigned channels = input ? found.inputChannels : found.outputChannels;
        if (channels == 0) return;
        Device device{id, {}};
        device.info.name = found.name;
        device.info.channels = int(channels);
        device.info.preferredRate = int(found.preferredSampleRate);
        device.info.isDefault = input ? found.isDefaultInput : found.isDefaultOutput;
        devices.push_back(device);
      });
  });
  std::vector<LSoundDeviceInfo> infos;
  infos.reserve(devices.size());
  for (const Device& device : devices) infos.push_back(device.info);
  MakeNamesUnique(infos);
  const bool hasDefault = std::any_of(infos.begin(), infos.end(), [](const auto& info) { return info.isDefault; });
  if (!hasDefault && !infos.empty()) infos.front().isDefault = true;
  for (std::size_t i = 0; i < devices.size(); ++i) devices[i].info = infos[i];
  return devices;
}

const Device* Find(const std::vector<Device>& devices, const std::string& name) {
  const auto found = std::find_if(devices.begin(), devices.end(), [&](const Device& device) {
    return name.empty() ? device.info.isDefault : device.info.name == name;
  });
  if (found != devices.end()) return &*found;
  return name.empty() && !devices.empty() ? &devices.front() : nullptr;
}

int OnBlock(void* out, void* in, unsigned frames, double, RtAudioStreamStatus, void* client) {
  tlThreadRole = LThreadRole::Device;
  static_cast<LRtAudioClient*>(client)->Process(out, in, int(frames));
  return 0;
}

}  // namespace

struct LRtAudioSession::Library {
  std::unique_ptr<RtAudio> rtAudio;

  bool OpenStream(const LRtAudioRequest& request, unsigned id, LRtAudioGrant& grant, LRtAudioClient* client) {
    RtAudio::StreamParameters parameters;
    parameters.deviceId = id;
    parameters.nChannels = unsigned(grant.channels);
    RtAudio::StreamOptions options;
    options.flags = RTAUDIO_SCHEDULE_REALTIME;
    options.numberOfBuffers = kBuffers;
    options.priority = kRealTimePriority;
    options.streamName = kClientName;
    auto frames = unsigned(request.sliceFrames);
    auto* out = request.input ? nullptr : &parameters;
    auto* in = request.input ? &parameters : nullptr;
    const RtAudioFormat format = request.input ? RTAUDIO_FLOAT32 : RTAUDIO_SINT32;
#ifdef TAVI_RTAUDIO_6
    rtAudio->setErrorCallback([client](RtAudioErrorType type, const std::string&) {
      if (type != RTAUDIO_WARNING) client->Failed();
    });
    const bool opened = Guarded([&] {
      return rtAudio->openStream(out, in, format, unsigned(grant.sampleRate), &frames, OnBlock, client, &options);
    });
#else
    // With an error callback the library would not throw: an open that fails is told from a stream that fails later.
    const bool opened = Guarded(
        [&] { rtAudio->openStream(out, in, format, unsigned(grant.sampleRate), &frames, OnBlock, client, &options); });
#endif
    grant.sliceFrames = int(frames);
    return opened && rtAudio->isStreamOpen();
  }
};

LRtAudioSession::LRtAudioSession() = default;

LRtAudioSession::~LRtAudioSession() {
  if (!library_) return;
  Guarded([&] {
    if (library_->rtAudio->isStreamOpen()) library_->rtAudio->closeStream();
  });
  Guarded([&] { library_.reset(); });
}

std::vector<LSoundDeviceInfo> LRtAudioSession::List(const std::string& api, bool input) {
  std::vector<LSoundDeviceInfo> infos;
  const auto library = NewLibrary(api);
  if (!library) return infos;
  for (const Device& device : Devices(*library, input)) infos.push_back(device.info);
  return infos;
}

bool LRtAudioSession::Open(const LRtAudioRequest& request, std::shared_ptr<LRtAudioClient> client) {
  auto rtAudio = NewLibrary(request.api);
  if (!rtAudio) return false;
  const std::vector<Device> devices = Devices(*rtAudio, request.input);
  const Device* device = Find(devices, request.deviceName);
  if (!device) return false;
  client_ = std::move(client);
  library_ = std::make_unique<Library>(Library{std::move(rtAudio)});
  grant_.deviceName = device->info.name;
  grant_.deviceChannels = device->info.channels;
  grant_.channels = std::min(request.channels, device->info.channels);
  grant_.sampleRate = request.sampleRate > 0 ? request.sampleRate : device->info.preferredRate;
  if (library_->OpenStream(request, device->id, grant_, client_.get())) return true;
  library_.reset();
  return false;
}

bool LRtAudioSession::Start() {
  return Guarded([&] { return library_->rtAudio->startStream(); }) && library_->rtAudio->isStreamRunning();
}

void LRtAudioSession::Abort() {
  Guarded([&] {
    if (library_->rtAudio->isStreamRunning()) library_->rtAudio->abortStream();
  });
}
