#include "sound/LCARingBuffer.h"

#include <algorithm>

#include "sound/LSampleFormats.h"
#include "sound/LSoundLevel.h"

void LCARingBuffer::SetChannels(int channels) {
  Clear();
  if (channels == channels_) return;
  channels_ = channels;
  capacityFrames_ = kCapacitySamples / channels;
  capacitySamples_ = capacityFrames_ * channels;
  inBlock_.assign(std::size_t(kMaxBlockFrames) * std::size_t(channels), 0);
  outBlock_.assign(inBlock_.size(), 0);
}

void LCARingBuffer::Clear() {
  read_.store(0, std::memory_order_relaxed);
  write_.store(0, std::memory_order_release);
}

int LCARingBuffer::FilledSamples() const {
  const int filled = write_.load(std::memory_order_acquire) - read_.load(std::memory_order_acquire);
  return filled < 0 ? filled + capacitySamples_ : filled;
}

int LCARingBuffer::FilledFrames() const { return FilledSamples() / channels_; }

int LCARingBuffer::FreeFrames() const { return (capacitySamples_ - 1 - FilledSamples()) / channels_; }

void LCARingBuffer::CopyIn(const int* samples, int count) {
  const int at = write_.load(std::memory_order_relaxed);
  const int first = std::min(count, capacitySamples_ - at);
  std::copy_n(samples, first, ring_.data() + at);
  std::copy_n(samples + first, count - first, ring_.data());
  const int next = at + count;
  write_.store(next < capacitySamples_ ? next : next - capacitySamples_, std::memory_order_release);
}

void LCARingBuffer::CopyOut(int* samples, int count) {
  const int at = read_.load(std::memory_order_relaxed);
  const int first = std::min(count, capacitySamples_ - at);
  std::copy_n(ring_.data() + at, first, samples);
  std::copy_n(ring_.data(), count - first, samples + first);
  const int next = at + count;
  read_.store(next < capacitySamples_ ? next : next - capacitySamples_, std::memory_order_release);
}

void LCARingBuffer::Write(LSoundSource& source, int frames) {
  frames = std::min(frames, source.GetEndSample() - source.GetPositionSample());
  while (frames > 0) {
    const int block = std::min(frames, kMaxBlockFrames);
    source.Read(inBlock_.data(), block);
    CopyIn(inBlock_.data(), block * channels_);
    dataReady.Signal();
    frames -= block;
  }
}

void LCARingBuffer::Read(int* out, int frames, int gain9, LLevel& left, LLevel& right) {
  const auto channels = static_cast<unsigned char>(channels_);
  while (frames > 0) {
    const int block = std::min(frames, kMaxBlockFrames);
    const int samples = block * channels_;
    CopyOut(outBlock_.data(), samples);
    spaceFreed.Signal();
    left = LevelFromMeanSquare(GetBufferMeanSquareChan(0, outBlock_.data(), block, channels));
    if (channels_ > 1) right = LevelFromMeanSquare(GetBufferMeanSquareChan(1, outBlock_.data(), block, channels));
    GainAudioBufferQuick(gain9, outBlock_.data(), samples);
    ConvertSamplesToDevice(out, outBlock_.data(), samples);
    out += samples;
    frames -= block;
  }
}

void LCARingBuffer::KeepFrames(int frames) {
  const int next = read_.load(std::memory_order_relaxed) + frames * channels_;
  write_.store(next < capacitySamples_ ? next : next - capacitySamples_, std::memory_order_release);
}
