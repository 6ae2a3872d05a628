// Sound through RtAudio: ALSA's hardware devices, JACK, CoreAudio.
// Units    frames, Hz
// Threads  [main]; the streams call back on the library's threads in the device's role.
// Failure  a system that is not there gives empty lists, one that hangs does so within the bound.
#pragma once
#include <memory>
#include <string>

#include "platform/LDeviceMessages.h"
#include "sound/LSoundBackend.h"

class LRtAudioBackend final : public LSoundBackend {
 public:
  explicit LRtAudioBackend(std::string api) : api_(std::move(api)) {}  // "alsa", "jack", "coreaudio"

  std::string Name() const override { return api_; }
  std::vector<LSoundDeviceInfo> OutputDevices() override { return Devices(outputs_, false); }
  std::vector<LSoundDeviceInfo> InputDevices() override { return Devices(inputs_, true); }
  std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                 LSoundRenderer& renderer) override;
  std::unique_ptr<LSoundInputStream> OpenInput(int device, const LSoundStreamFormat& format,
                                               LSoundInputReceiver& receiver) override;
  std::string TakeMessage() override { return messages_->Take(); }

 private:
  using Infos = std::vector<LSoundDeviceInfo>;
  const Infos& Devices(Infos& known, bool input);
  bool NameOf(int device, bool input, std::string& name);

  std::string api_;
  Infos outputs_, inputs_;                                       // as last walked
  std::shared_ptr<int> openStreams_ = std::make_shared<int>(0);  // each holds one more reference
  std::shared_ptr<LDeviceMessages> messages_ = std::make_shared<LDeviceMessages>();
};
