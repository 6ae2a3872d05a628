#include "platform/null/LNullBackend.h"

#include <algorithm>

#include "foundation/LClock.h"
#include "foundation/LThread.h"

namespace {

constexpr int kNullChannels = 4;
constexpr std::uint64_t kMaxBehindUs = 500000;  // a machine that slept does not render what it missed

class NullOutput final : public LSoundOutputStream, private LThread {
 public:
  NullOutput(const LSoundStreamFormat& format, LSoundRenderer& renderer)
      : LThread("LNullOutput", LThreadRole::Device),
        format_(format),
        renderer_(renderer),
        block_(std::size_t(format.sliceFrames) * std::size_t(format.channels)) {}
  ~NullOutput() override { NullOutput::Stop(); }

  bool Start() override { return LThread::Start(kPriorityRaised); }
  void Stop() override { LThread::Stop(); }
  void Reset() override {}
  int MaxSliceFrames() const override { return format_.sliceFrames; }
  int DeviceChannels() const override { return kNullChannels; }

 private:
  void ThreadFunction() override {
    const LRealClock clock;
    const auto frameUs = [&](std::uint64_t frames) { return frames * 1000000 / std::uint64_t(format_.sampleRate); };
    std::uint64_t startUs = clock.NowUs();
    for (std::uint64_t frames = 0; !IsToStop();) {
      renderer_.RenderData(block_.data(), format_.sliceFrames, format_.channels);
      frames += std::uint64_t(format_.sliceFrames);
      const std::uint64_t dueUs = startUs + frameUs(frames), nowUs = clock.NowUs();
      if (nowUs > dueUs + kMaxBehindUs)
        startUs = nowUs - frameUs(frames);
      else if (dueUs > nowUs)
        ProcessWait(unsigned((dueUs - nowUs + 999) / 1000));
    }
  }

  LSoundStreamFormat format_;
  LSoundRenderer& renderer_;
  std::vector<int> block_;
};

}  // namespace

std::vector<LSoundDeviceInfo> LNullBackend::OutputDevices() {
  LSoundDeviceInfo info;
  info.name = kDeviceName;
  info.channels = kNullChannels;
  info.isDefault = true;
  return {info};
}

std::unique_ptr<LSoundOutputStream> LNullBackend::OpenOutput(int, const LSoundStreamFormat& format,
                                                             LSoundRenderer& renderer) {
  return std::make_unique<NullOutput>(format, renderer);
}
