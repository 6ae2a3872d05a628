// Sound devices without a machine: whoever runs the program asks for slices, and may keep what was rendered. The input
// is fed from a source, a file for instance.
// Units    frames
// Threads  [main]; rendering takes the device's role.
#pragma once
#include <functional>
#include <utility>
#include <vector>

#include "foundation/LMutex.h"
#include "sound/LSoundBackend.h"
#include "sound/LSoundSource.h"

class LOfflineBackend final : public LSoundBackend {
 public:
  using Capture = std::function<void(const int* samples, int frames, int channels)>;

  explicit LOfflineBackend(int deviceChannels = 4, int deviceCount = 2)
      : deviceChannels_(deviceChannels), deviceCount_(deviceCount) {}

  void SetCapture(int device, Capture capture);  // every rendered slice of that device
  void SetInput(const LSoundSource& source) { input_ = source; }
  void SetMessage(std::string message) { message_ = std::move(message); }  // about a lost device, for the user
  void RenderSlice(int frames);                                            // every running stream, in the order opened

  std::string Name() const override { return "offline"; }
  std::string TakeMessage() override { return std::exchange(message_, {}); }
  std::vector<LSoundDeviceInfo> OutputDevices() override;
  std::vector<LSoundDeviceInfo> InputDevices() override;
  std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                 LSoundRenderer& renderer) override;
  std::unique_ptr<LSoundInputStream> OpenInput(int device, const LSoundStreamFormat& format,
                                               LSoundInputReceiver& receiver) override;

 private:
  template <class Stream>
  class Switched;
  class Output;
  class Input;
  LMutex mutex_;  // the recorder opens and closes its input on its own thread
  int deviceChannels_, deviceCount_;
  std::vector<Output*> outputs_;
  std::vector<Input*> inputs_;
  std::vector<Capture> captures_;  // by device
  LSoundSource input_;
  std::string message_;
};
