#include "platform/resample/LResampledOutput.h"

#include <algorithm>
#include <cstdint>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace {

constexpr int kFilterTaps =
    64;  // twice the library's default: steeper below the band edge, 0.7 ms of delay at 44100 Hz
constexpr int kMaxChannels = 64;  // of the library
constexpr int kPrimeFrames = 4096;
constexpr int kLowestRate = 1000, kHighestRate = 1000000;  // keeps the buffers small

bool IsRate(int rate) { return rate >= kLowestRate && rate <= kHighestRate; }

}  // namespace

void LResampledOutput::SwrFree::operator()(SwrContext* swr) const { swr_free(&swr); }

LResampledOutput::LResampledOutput(LSoundRenderer& source, int sourceRate, int deviceRate, int channels)
    : source_(source), sourceRate_(sourceRate), deviceRate_(deviceRate), channels_(channels) {
  if (!IsRate(sourceRate) || !IsRate(deviceRate) || channels < 1 || channels > kMaxChannels) return;
  // A chunk can set free a little more than its own share: the library holds back what it cannot place yet.
  convertedCapacity_ = int(std::int64_t(2 * kChunkFrames) * deviceRate / sourceRate) + 2 * kFilterTaps;
  chunk_.assign(std::size_t(kChunkFrames) * std::size_t(channels), 0);
  converted_.assign(std::size_t(convertedCapacity_) * std::size_t(channels), 0);
  if (!Configure()) {
    swr_.reset();
    return;
  }
  Prime();
  delayFrames_ = int(swr_get_delay(swr_.get(), sourceRate_));
}

bool LResampledOutput::Configure() {
  AVChannelLayout layout{};
  av_channel_layout_default(&layout, channels_);
  SwrContext* swr = nullptr;
  const int result = swr_alloc_set_opts2(&swr, &layout, AV_SAMPLE_FMT_S32, deviceRate_, &layout, AV_SAMPLE_FMT_S32,
                                         sourceRate_, 0, nullptr);
  av_channel_layout_uninit(&layout);
  swr_.reset(swr);
  if (result < 0 || !swr) return false;
  av_opt_set_int(swr, "filter_size", kFilterTaps, 0);
  av_opt_set_int(swr, "exact_rational", 1, 0);
  return swr_init(swr) >= 0;
}

// Silence through the filter: the library's inner buffers reach the size they keep, and nothing is left of earlier
// sound.
void LResampledOutput::Prime() {
  std::fill(chunk_.begin(), chunk_.end(), 0);
  for (int frames = 0; frames < kPrimeFrames; frames += kChunkFrames) ConvertChunk();
  convertedFrames_ = takenFrames_ = 0;
}

void LResampledOutput::Discard() {
  if (IsOk()) Prime();
}

int LResampledOutput::SourceSliceFrames(int deviceFrames) const {
  return int(std::int64_t(deviceFrames) * sourceRate_ / deviceRate_) + kChunkFrames + 1;
}

void LResampledOutput::ConvertChunk() {
  auto* out = reinterpret_cast<std::uint8_t*>(converted_.data());
  const auto* in = reinterpret_cast<const std::uint8_t*>(chunk_.data());
  convertedFrames_ = std::max(swr_convert(swr_.get(), &out, convertedCapacity_, &in, kChunkFrames), 0);
  takenFrames_ = 0;
}

void LResampledOutput::RenderData(int* out, int frames, int channels) {
  // More chunks than this are never needed; a filter that gives nothing must not hold the device.
  int chunksLeft = IsOk() && channels == channels_ ? SourceSliceFrames(frames) / kChunkFrames + 2 : 0;
  while (frames > 0) {
    if (takenFrames_ == convertedFrames_) {
      if (chunksLeft-- == 0) {
        std::fill_n(out, std::ptrdiff_t(frames) * channels, 0);
        return;
      }
      source_.RenderData(chunk_.data(), kChunkFrames, channels_);
      ConvertChunk();
    }
    const int taken = std::min(frames, convertedFrames_ - takenFrames_);
    std::copy_n(converted_.data() + std::ptrdiff_t(takenFrames_) * channels, std::ptrdiff_t(taken) * channels, out);
    takenFrames_ += taken;
    frames -= taken;
    out += std::ptrdiff_t(taken) * channels;
  }
}
