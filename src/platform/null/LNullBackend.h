// A device that is always there: renders in real time into nothing.
// Units    frames
// Threads  [main]; rendering on its own thread per stream, in the device's role.
#pragma once
#include "sound/LSoundBackend.h"

class LNullBackend final : public LSoundBackend {
 public:
  static constexpr const char* kDeviceName = "null";

  std::string Name() const override { return "null"; }
  std::vector<LSoundDeviceInfo> OutputDevices() override;
  std::vector<LSoundDeviceInfo> InputDevices() override { return {}; }
  std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                 LSoundRenderer& renderer) override;
  std::unique_ptr<LSoundInputStream> OpenInput(int, const LSoundStreamFormat&, LSoundInputReceiver&) override {
    return nullptr;
  }
};
