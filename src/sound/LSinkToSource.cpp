#include "sound/LSinkToSource.h"

#include <algorithm>
#include <mutex>

namespace {

constexpr unsigned kWriterWaitMs = 200, kReaderWaitMs = 1000;

// Waits for the signal or the stop signal; true: stopped.
bool WaitOrStop(LSignalObjectRef signal, LSignalObjectRef stop, unsigned ms) {
  pollfd ends[] = {{signal.ReadEnd(), POLLIN, 0}, {stop.ReadEnd(), POLLIN, 0}};  // poll passes over a descriptor of -1
  LWait::Poll(ends, 2, ms);
  return (ends[1].revents & POLLIN) != 0;
}

}  // namespace

LSoundSink LSinkToSourceBase::OpenSink() { return LSoundSink::Make<LSinkToSourceSink>(*this); }

LSoundSource LSinkToSourceBase::OpenSource() { return LSoundSource::Make<LSinkToSourceSource>(*this); }

void LSinkToSourceBase::Reset() {
  std::lock_guard lock(mutex_);
  readFrame_ = filledFrames_ = 0;
  dataReady_.Reset();
  spaceFreed_.Reset();
}

void LSinkToSourceBase::SetStopSignals(LSignalObjectRef writerStop, LSignalObjectRef readerStop) {
  std::lock_guard lock(mutex_);
  writerStop_ = writerStop;
  readerStop_ = readerStop;
}

LSinkToSourceBase::State LSinkToSourceBase::GetState() const {
  std::lock_guard lock(mutex_);
  return {filledFrames_, writer_, reader_};
}

void LSinkToSourceBase::SetWriter(bool attached) {
  std::lock_guard lock(mutex_);
  writer_ = attached;
  dataReady_.Signal();  // a waiting reader looks again
}

void LSinkToSourceBase::SetReader(bool attached) {
  std::lock_guard lock(mutex_);
  reader_ = attached;
  spaceFreed_.Signal();  // a waiting writer looks again
}

int LSinkToSourceBase::Put(const int* samples, int frames) {
  std::lock_guard lock(mutex_);
  spaceFreed_.Reset();
  const int count = std::min(frames, kCapacityFrames - filledFrames_);
  if (count < 1) return 0;
  const int at = (readFrame_ + filledFrames_) % kCapacityFrames;
  const int first = std::min(count, kCapacityFrames - at);
  std::copy_n(samples, first * kChannels, ring_.begin() + at * kChannels);
  std::copy_n(samples + first * kChannels, (count - first) * kChannels, ring_.begin());
  filledFrames_ += count;
  dataReady_.Signal();
  return count;
}

int LSinkToSourceBase::Take(int* samples, int frames) {
  std::lock_guard lock(mutex_);
  dataReady_.Reset();
  const int count = std::min(frames, filledFrames_);
  if (count < 1) return 0;
  const int first = std::min(count, kCapacityFrames - readFrame_);
  std::copy_n(ring_.begin() + readFrame_ * kChannels, first * kChannels, samples);
  std::copy_n(ring_.begin(), (count - first) * kChannels, samples + first * kChannels);
  readFrame_ = (readFrame_ + count) % kCapacityFrames;
  filledFrames_ -= count;
  spaceFreed_.Signal();
  return count;
}

LSinkToSourceSink::LSinkToSourceSink(LSinkToSourceBase& joint)
    : LSoundSinkBase(kDeckRate, LSinkToSourceBase::kChannels), joint_(joint) {
  joint_.SetWriter(true);
}

LSinkToSourceSink::~LSinkToSourceSink() { joint_.SetWriter(false); }

void LSinkToSourceSink::Write(const int* samples, int frames) {
  position_ += frames;
  while (true) {
    const int put = joint_.Put(samples, frames);
    samples += put * LSinkToSourceBase::kChannels;
    frames -= put;
    if (frames < 1 || !joint_.GetState().reader) return;
    if (WaitOrStop(joint_.spaceFreed_, joint_.writerStop_, kWriterWaitMs)) return;
  }
}

LSinkToSourceSource::LSinkToSourceSource(LSinkToSourceBase& joint)
    : LSoundSourceBase(kDeckRate, LSinkToSourceBase::kChannels, kPeakHeadroom), joint_(joint) {
  joint_.SetReader(true);
}

LSinkToSourceSource::~LSinkToSourceSource() { joint_.SetReader(false); }

void LSinkToSourceSource::Read(int* out, int frames) {
  while (frames > 0) {
    const int taken = joint_.Take(out, frames);
    out += taken * LSinkToSourceBase::kChannels;
    frames -= taken;
    if (frames < 1) return;
    if (taken > 0) continue;
    if (!joint_.GetState().writer || WaitOrStop(joint_.dataReady_, joint_.readerStop_, kReaderWaitMs)) break;
  }
  std::fill_n(out, frames * LSinkToSourceBase::kChannels, 0);
}

int LSinkToSourceSource::GetEndSample() const { return joint_.GetState().filled; }

bool LSinkToSourceSource::IsStreaming() const { return joint_.GetState().writer; }

void LSinkToSourceSource::WaitForStreamingData(int ms) {
  if (joint_.GetState().filled > 0) return;
  WaitOrStop(joint_.dataReady_, joint_.readerStop_, unsigned(std::max(ms, 0)));
}
