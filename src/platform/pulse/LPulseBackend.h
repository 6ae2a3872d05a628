// Sound through PulseAudio, or PipeWire in its place: named sinks and sources, each channel in its place.
// Units    frames, Hz
// Threads  [main]; rendering on the connection's event thread in the device's role.
// Failure  without a server the lists are empty; the constructor returns within LPulseConnection::kConnectLimitMs.
#pragma once
#include <memory>

#include "sound/LSoundBackend.h"

class LPulseConnection;

class LPulseBackend final : public LSoundBackend {
 public:
  LPulseBackend();

  std::string Name() const override { return "pulse"; }
  std::vector<LSoundDeviceInfo> OutputDevices() override;
  std::vector<LSoundDeviceInfo> InputDevices() override;
  std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                 LSoundRenderer& renderer) override;
  std::unique_ptr<LSoundInputStream> OpenInput(int device, const LSoundStreamFormat& format,
                                               LSoundInputReceiver& receiver) override;
  std::string TakeMessage() override;

 private:
  std::shared_ptr<LPulseConnection> connection_;  // the streams hold it too
};
