#include "console/TRecorder.h"

#include <algorithm>

#include "console/TStreamSender.h"
#include "sound/LFixedPoint.h"
#include "sound/LSPConvertSourceRateChannels.h"
#include "sound/LSPPeakLimit.h"
#include "sound/LWrap.h"

namespace {

constexpr unsigned kWaitMs = 10000;
constexpr int kLookAheadFrames = 4096;  // more than the limiter's two blocks and the converter's taps

}  // namespace

TRecorder::TRecorder(int ringSamples, int retainedSamples)
    : LStepThread("TRecorder", LThreadRole::Worker),
      ring_(std::size_t(ringSamples) + 1),
      capacity_(ringSamples + 1),
      retained_(retainedSamples),
      oldTail_(kFadeSamples),
      stereo_(std::size_t(kMaxBlockFrames) * kRingChannels) {}

TRecorder::~TRecorder() { StopSteps(); }

void TRecorder::SetRecordingSink(const LSoundSink& sink) {
  if (enabled_) return;
  std::lock_guard lock(lock_);
  sink_ = sink;
}

void TRecorder::SetChannelPick(int left, int right) {
  const bool none = left < 0 && right < 0;
  pickLeft_ = none ? 0 : std::max(left, 0);
  pickRight_ = none ? 1 : std::max(right, 0);
}

bool TRecorder::Enable(bool on) {
  if (on == enabled_) return true;
  if (!on) {
    enabled_ = false;
    StopSteps();
    return true;
  }
  read_ = write_.load();
  fadePending_ = false;
  framesIn_ = framesOut_ = 0;
  LSoundSource mix = LSoundSource::Make<TRingBufferSource>(*this);
  LSPConvertSourceRateChannels(sink_.GetSampleRate(), sink_.GetChannels(), mix);
  source_ = LSPPeakLimit(kPeak16).OpenSource(mix);
  block_.assign(std::size_t(kMaxBlockFrames) * sink_.GetChannels(), 0);
  // Converters take whole blocks: one more than the ratio needs.
  const int inputBlocks =
      (kDeckRate + sink_.GetSampleRate() - 1) / sink_.GetSampleRate() + (sink_.GetSampleRate() != kDeckRate);
  neededSamples_ =
      std::min((inputBlocks * kMaxBlockFrames + kLookAheadFrames) * kRingChannels, capacity_ - 1 - retained_);
  enabled_ = true;
  if (StartSteps(kPriorityWorking)) return true;
  enabled_ = false;
  return false;
}

int TRecorder::Available() const {
  const int filled = write_.load(std::memory_order_acquire) - read_.load(std::memory_order_acquire);
  return filled < 0 ? filled + capacity_ : filled;
}

int TRecorder::PickStereo(const int* samples, int frames, unsigned char channels) {
  const int left = channels > 2 ? std::min<int>(pickLeft_, channels - 1) : 0;
  const int right = channels > 2 ? std::min<int>(pickRight_, channels - 1) : channels - 1;
  for (int frame = 0; frame < frames; ++frame) {
    stereo_[std::size_t(2 * frame)] = samples[frame * channels + std::max(left, 0)];
    stereo_[std::size_t(2 * frame + 1)] = samples[frame * channels + std::max(right, 0)];
  }
  return frames * kRingChannels;
}

void TRecorder::FadeFromOldTail(int count) {
  const int step = kUnityGain24 / count;
  int up = 0, down = kUnityGain24;
  for (int i = 0; i < count; ++i, up += step, down -= step) {
    const int old = i < kFadeSamples ? oldTail_[std::size_t(i)] : 0;
    stereo_[std::size_t(i)] = WrapAdd32(MulGain24(stereo_[std::size_t(i)], up), MulGain24(old, down));
  }
}

void TRecorder::Write(const int* samples, int frames, unsigned char channels) {
  if (!enabled_ || frames < 1) return;
  const int count = PickStereo(samples, std::min(frames, kMaxBlockFrames), channels);
  if (fadePending_.exchange(false)) FadeFromOldTail(count);
  const int at = write_.load(std::memory_order_relaxed);
  int free = read_.load(std::memory_order_acquire) - 1 - at;
  if (free < 0) free += capacity_;
  if (count >= free) return;
  const int first = std::min(count, capacity_ - at);
  std::copy_n(stereo_.data(), first, ring_.data() + at);
  std::copy_n(stereo_.data() + first, count - first, ring_.data());
  write_.store(Wrapped(at + count), std::memory_order_release);
  written_.Signal();
}

void TRecorder::Resync(int lagFrames) {
  std::lock_guard lock(lock_);
  // No further back than what has not been taken yet: a longer lag empties the ring.
  const int back = int(std::min<long long>((long long)std::max(lagFrames, 0) * kRingChannels, Available()));
  int at = write_ - back;
  if (at < 0) at += capacity_;
  write_ = at;
  if (!enabled_) return;
  for (int i = 0; i < kFadeSamples; ++i) oldTail_[std::size_t(i)] = i < back ? ring_[std::size_t(Wrapped(at + i))] : 0;
  fadePending_ = true;
}

int TRecorder::ReadRing(int* out, int samples) {
  const int taken = std::min(samples, Available());
  const int at = read_.load(std::memory_order_relaxed);
  const int first = std::min(taken, capacity_ - at);
  std::copy_n(ring_.data() + at, first, out);
  std::copy_n(ring_.data(), taken - first, out + first);
  read_.store(Wrapped(at + taken), std::memory_order_release);
  framesIn_ += taken / kRingChannels;
  return taken;
}

void TRecorder::StepsBegin() { written_.Reset(); }

LStepResult TRecorder::Step() {
  written_.Reset();
  std::lock_guard lock(lock_);
  if (neededSamples_ > Available() - retained_) return LStepResult::WaitFor(written_, kWaitMs);
  WriteBlock(kMaxBlockFrames);
  return LStepResult::GoOn();
}

void TRecorder::WriteBlock(int frames) {
  source_.Read(block_.data(), frames);
  sink_.Write(block_.data(), frames);
  framesOut_ += frames;
  if (sender_) sender_->Send(block_.data(), frames * sink_.GetChannels());
}

void TRecorder::Flush() {
  const long long mixFrames = framesIn_ + Available() / kRingChannels;
  const long long end = mixFrames * sink_.GetSampleRate() / kDeckRate;
  while (framesOut_ < end) WriteBlock(int(std::min<long long>(end - framesOut_, kMaxBlockFrames)));
}

void TRecorder::Stop() {
  if (enabled_) Enable(false);
  std::lock_guard lock(lock_);
  if (source_.IsOk()) Flush();
  source_.Close();
  sink_.Close();
  read_ = write_.load();
}

TRingBufferSource::TRingBufferSource(TRecorder& recorder)
    : LSoundSourceBase(kDeckRate, TRecorder::kRingChannels, kPeakHeadroom), recorder_(recorder) {}

void TRingBufferSource::Read(int* out, int frames) {
  const int wanted = frames * TRecorder::kRingChannels;
  const int taken = recorder_.ReadRing(out, wanted);
  std::fill_n(out + taken, wanted - taken, 0);
}
