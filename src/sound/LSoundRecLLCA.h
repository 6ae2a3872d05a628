// The device side of the recorder: an open input and a ring of blocks, four seconds of sound.
// Units    frames; floats of -1..1 from the device.
// Threads  InputData [device]: copies and signals, drops what finds no room; Open, Close and the blocks [worker].
// Failure  Open tells whether only the rate is wrong, so that the caller can convert and try again.
#pragma once
#include <atomic>
#include <memory>
#include <vector>

#include "foundation/LSignalObject.h"
#include "sound/LSoundBackend.h"
#include "sound/LSoundRecordDevice.h"

class LSoundRecLLCA final : private LSoundInputReceiver {
 public:
  enum class OpenResult { Ok, OtherRate, Failed };

  ~LSoundRecLLCA() { Close(); }
  void SetDevice(const LSoundRecordDevice& device) { device_ = device; }  // while closed
  const LSoundRecordDevice& GetDevice() const { return device_; }
  const std::string& DeviceName() const { return deviceName_; }

  OpenResult Open(int sampleRate, int channels);
  bool StartDevice();
  void StopDevice();
  void Close();

  int GetSupportedSampleRate(int fallback) const;  // of the hardware, at least 8000 Hz
  int BlockFrames() const { return blockFrames_; }
  bool CopiesFirstChannel() const { return copyFirst_; }

  const float* FilledBlock(int& frames) const;  // null: none is filled
  void ReleaseBlock();
  const LSignalObject& Filled() const { return filled_; }

 private:
  struct Block {
    std::vector<float> samples;
    std::atomic<int> frames{0};  // 0 while empty
  };
  void InputData(const float* in, int frames, int channels) override;

  LSoundRecordDevice device_;
  std::string deviceName_;  // of the open one
  std::unique_ptr<LSoundInputStream> stream_;
  std::vector<std::unique_ptr<Block>> blocks_;
  std::size_t readBlock_ = 0, writeBlock_ = 0;
  int blockFrames_ = 0, channels_ = 0;
  int pendingFrames_ = 0;  // [device] in the block being filled
  bool copyFirst_ = false;
  int hardwareRate_ = 0;
  LSignalObject filled_;
};
