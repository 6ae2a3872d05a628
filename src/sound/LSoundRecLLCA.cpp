#include "sound/LSoundRecLLCA.h"

#include <algorithm>

#include "foundation/LPlatform.h"

namespace {

constexpr int kBlocksPerSecond = 10, kMinBlockFrames = 512, kMaxRecordBlockFrames = 8192;
constexpr int kRingSeconds = 4;
constexpr int kLowestRate = 8000;

}  // namespace

LSoundRecLLCA::OpenResult LSoundRecLLCA::Open(int sampleRate, int channels) {
  Close();
  const LSoundDeviceInfo info = device_.Info();
  if (info.channels < 1) return OpenResult::Failed;
  deviceName_ = info.name;

  LSoundStreamFormat format;
  format.sampleRate = sampleRate;
  format.channels = channels_ = channels;
  format.sliceFrames = std::clamp(sampleRate / kBlocksPerSecond, kMinBlockFrames, kMaxRecordBlockFrames);
  blockFrames_ = format.sliceFrames;
  const int count = (kRingSeconds * sampleRate + blockFrames_ - 1) / blockFrames_;
  for (int i = 0; i < count; ++i) {
    blocks_.push_back(std::make_unique<Block>());
    blocks_.back()->samples.assign(std::size_t(blockFrames_) * std::size_t(channels), 0.0f);
  }
  readBlock_ = writeBlock_ = 0;
  pendingFrames_ = 0;

  stream_ = LPlatform::SoundBackend().OpenInput(device_.BackendIndex(), format, *this);
  if (!stream_) return OpenResult::Failed;
  hardwareRate_ = stream_->SampleRate();
  if (hardwareRate_ != sampleRate) {
    stream_.reset();
    return OpenResult::OtherRate;
  }
  copyFirst_ = channels > 1 && (info.channels < 2 || !device_.hasSeveralChannels);
  return OpenResult::Ok;
}

bool LSoundRecLLCA::StartDevice() {
  filled_.Reset();
  return stream_ && stream_->Start();
}

void LSoundRecLLCA::StopDevice() {
  if (stream_) stream_->Stop();
}

void LSoundRecLLCA::Close() {
  StopDevice();
  stream_.reset();
  blocks_.clear();
}

int LSoundRecLLCA::GetSupportedSampleRate(int fallback) const {
  return std::max(hardwareRate_ > 0 ? hardwareRate_ : fallback, kLowestRate);
}

const float* LSoundRecLLCA::FilledBlock(int& frames) const {
  if (blocks_.empty()) return nullptr;
  const Block& block = *blocks_[readBlock_];
  frames = block.frames.load(std::memory_order_acquire);
  return frames > 0 ? block.samples.data() : nullptr;
}

void LSoundRecLLCA::ReleaseBlock() {
  blocks_[readBlock_]->frames.store(0, std::memory_order_release);
  readBlock_ = (readBlock_ + 1) % blocks_.size();
}

void LSoundRecLLCA::InputData(const float* in, int frames, int channels) {
  while (frames > 0) {
    Block& block = *blocks_[writeBlock_];
    if (block.frames.load(std::memory_order_acquire) != 0) return;  // four seconds behind: what comes now is lost
    const int taken = std::min(frames, blockFrames_ - pendingFrames_);
    std::copy_n(in, std::ptrdiff_t(taken) * channels, block.samples.data() + std::ptrdiff_t(pendingFrames_) * channels);
    in += std::ptrdiff_t(taken) * channels;
    frames -= taken;
    pendingFrames_ += taken;
    if (pendingFrames_ < blockFrames_) return;
    pendingFrames_ = 0;
    block.frames.store(blockFrames_, std::memory_order_release);
    writeBlock_ = (writeBlock_ + 1) % blocks_.size();
    filled_.Signal();
  }
}
