#include "sound/LSoundRecorder.h"

#include <algorithm>
#include <cmath>

#include "foundation/LClock.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "sound/LSampleFormats.h"
#include "sound/LSinkConvertRate.h"
#include "sound/LSoundLevel.h"
#include "sound/LSoundSource.h"

namespace {

constexpr unsigned kStartWaitMs = 1500;
constexpr unsigned kSilentDeviceMs = 3000;
constexpr int kStopBelowStartDb = 4;
constexpr int kSkippedBlocks = 5;                    // a device's first blocks carry the click of its start
constexpr LSoundTime kTailMs = 450;                  // kept behind the last sound
constexpr double kPeakToUnit = 1.9073486328125e-06;  // 1 / full scale

LLevel LevelFromPeak(int peak) {
  if (peak == 0) return LLevel::kMuted;
  const double half = peak < kFullScale ? -0.5 : 0.5;
  return std::clamp(int(20 * std::log10(peak * kPeakToUnit) + half), -127, 127);
}

}  // namespace

template <class Device>
LSoundRecorderTemplate<Device>::LSoundRecorderTemplate() : LStepThread("LSoundRecorder<T>", LThreadRole::Worker) {}

template <class Device>
LSoundRecorderTemplate<Device>::~LSoundRecorderTemplate() {
  ThreadQueuedNotifyDestroy();
  StopSteps();
}

template <class Device>
bool LSoundRecorderTemplate<Device>::Start(LSoundSink& sink, LSoundTime maxLength, LLevel threshold,
                                           LSoundTime silenceLimit, unsigned short flags) {
  Stop();
  if (sink.HasError()) return false;
  sink_ = sink;
  maxLength_ = maxLength;
  silenceLimit_ = silenceLimit;
  startThreshold_ = threshold;
  stopThreshold_ = std::clamp(threshold.Get() - kStopBelowStartDb, -127, 127);
  flags_ = flags;
  mode_ = flags & kRecorderRecordAtOnce ? Recording : Waiting;
  lastQuiet_ = lastSound_ = 0;
  timeMs_ = 0;
  stopRequest_ = reportPending_ = modeChangePending_ = false;
  started_.Reset();
  resume_.Reset();
  if (!(flags & kRecorderHoldUntilResume)) resume_.Signal();
  if (!StartSteps(kPriorityWorking) || !started_.WaitSignal(kStartWaitMs) || mode_ == Idle) {
    Stop();
    return false;
  }
  if (target_) mode_ == Recording ? target_->srntfRecord(id_) : target_->srntfWait(id_);
  return true;
}

template <class Device>
void LSoundRecorderTemplate<Device>::Stop() {
  const bool wasOn = mode_ != Idle;
  StopSteps();
  mode_ = Idle;
  stopRequest_ = reportPending_ = modeChangePending_ = false;
  sink_.Close();
  if (wasOn && target_) target_->srntfStop(id_);
}

template <class Device>
bool LSoundRecorderTemplate<Device>::OpenDevice() {
  auto result = device_.Open(sink_.GetSampleRate(), sink_.GetChannels());
  if (result == Device::OpenResult::OtherRate) {
    const int rate = device_.GetSupportedSampleRate(sink_.GetSampleRate());
    sink_ = LSinkConvertRate::OpenSink(sink_, rate, true);
    result = device_.Open(sink_.GetSampleRate(), sink_.GetChannels());
  }
  return result == Device::OpenResult::Ok;
}

template <class Device>
void LSoundRecorderTemplate<Device>::StepsBegin() {
  deviceRuns_ = false;
  previousFrames_ = 0;
  skipBlocks_ = flags_ & kRecorderRecordAtOnce ? 0 : kSkippedBlocks;
  if (!OpenDevice()) {
    mode_ = Idle;
    started_.Signal();
    StopThreadSoon();
    return;
  }
  block_.assign(std::size_t(device_.BlockFrames()) * sink_.GetChannels(), 0);
  previous_ = block_;
  if (flags_ & kRecorderHoldUntilResume)
    started_.Signal();
  else
    StartDevice();
}

template <class Device>
void LSoundRecorderTemplate<Device>::StartDevice() {
  SetPriority(kPriorityRecording);
  deviceRuns_ = device_.StartDevice();
  if (!deviceRuns_) mode_ = Idle;
  lastBlockMs_ = LPlatform::Clock().NowMs();
  started_.Signal();
}

template <class Device>
LStepResult LSoundRecorderTemplate<Device>::Step() {
  if (mode_ == Idle) return LStepResult::End();
  if (!deviceRuns_) {
    if (!resume_.IsSignaled()) return LStepResult::WaitFor(resume_, kWaitForever);
    StartDevice();
    return LStepResult::GoOn();
  }
  device_.Filled().Reset();
  if (!TakeBlock()) {
    if (LPlatform::Clock().NowMs() - lastBlockMs_ >= kSilentDeviceMs) return LStepResult::End();
    return LStepResult::WaitFor(device_.Filled(), kSilentDeviceMs);
  }
  lastBlockMs_ = LPlatform::Clock().NowMs();
  if (skipBlocks_ > 0)
    --skipBlocks_;
  else
    HandleBlock();
  return LStepResult::GoOn();
}

template <class Device>
bool LSoundRecorderTemplate<Device>::TakeBlock() {
  int frames = 0;
  const float* samples = device_.FilledBlock(frames);
  if (!samples) return false;
  const int channels = sink_.GetChannels();
  blockFrames_ = frames;
  const int count = frames * channels;
  ConvertSamplesIn<LSFF32>(block_.data(), reinterpret_cast<const unsigned char*>(samples), count);
  device_.ReleaseBlock();
  const LSoundRecordDevice& device = device_.GetDevice();
  const LLevel volume = LSoundRecordDeviceVolumes::Get(device_.DeviceName(), device.channel);
  if (volume != LLevel(0)) GainAudioBufferQuick(volume.AmplitudeGain24() >> 15, block_.data(), count);
  if (device_.CopiesFirstChannel())
    for (int frame = 0; frame < frames; ++frame)
      block_[std::size_t(frame * channels + 1)] = block_[std::size_t(frame * channels)];
  return true;
}

template <class Device>
LLevel LSoundRecorderTemplate<Device>::LoudestOf(const int* samples, int frames) const {
  int loudest = -127;
  for (int channel = 0; channel < std::min<int>(sink_.GetChannels(), 2); ++channel)
    loudest = std::max(loudest, LevelFromPeak(GetBufferPeakChan(channel, samples, frames, sink_.GetChannels())).Get());
  return loudest;
}

template <class Device>
LLevel LSoundRecorderTemplate<Device>::MeasureBlock() {
  const int frames = std::min(blockFrames_, kMaxBlockFrames);
  const unsigned char channels = sink_.GetChannels();
  const LLevel left = LevelFromPeak(GetBufferPeakChan(0, block_.data(), frames, channels));
  const LLevel right = channels > 1 ? LevelFromPeak(GetBufferPeakChan(1, block_.data(), frames, channels)) : left;
  levelLeft_ = static_cast<signed char>(left.Get());
  levelRight_ = static_cast<signed char>(right.Get());
  return std::max(left.Get(), right.Get());
}

template <class Device>
void LSoundRecorderTemplate<Device>::HandleBlock() {
  const LLevel loudest = MeasureBlock();
  mode_ == Waiting ? WaitForSound(loudest) : RecordBlock(loudest);
  timeMs_ = LSoundTimeFromFrames(sink_.GetPositionSample(), sink_.GetSampleRate());
  reportPending_ = true;
  PostQueueNotify();
}

template <class Device>
void LSoundRecorderTemplate<Device>::WaitForSound(LLevel loudest) {
  if (loudest.Get() < startThreshold_.Get()) {
    previous_.swap(block_);
    previousFrames_ = blockFrames_;
    return;
  }
  // Sound that is there from the block's first half on began before it: the half block in front belongs to it.
  const int half = blockFrames_ / 2;
  if (previousFrames_ > 0 && LoudestOf(block_.data(), half).Get() >= startThreshold_.Get()) {
    const int from = previousFrames_ / 2;
    sink_.Write(previous_.data() + std::ptrdiff_t(from) * sink_.GetChannels(), previousFrames_ - from);
  }
  previousFrames_ = 0;
  sink_.Write(block_.data(), blockFrames_);
  mode_ = Recording;
  modeChangePending_ = true;
}

template <class Device>
void LSoundRecorderTemplate<Device>::RecordBlock(LLevel loudest) {
  sink_.Write(block_.data(), blockFrames_);
  const LSoundTime now = LSoundTimeFromFrames(sink_.GetPositionSample(), sink_.GetSampleRate());
  if (loudest.Get() >= stopThreshold_.Get()) {
    lastSound_ = lastQuiet_ = now;
  } else if (now - lastSound_ > silenceLimit_) {
    sink_->Truncate(LFramesFromSoundTime(lastQuiet_ + kTailMs, sink_.GetSampleRate()));
    mode_ = Waiting;
    previous_.swap(block_);
    previousFrames_ = blockFrames_;
    modeChangePending_ = true;
  } else {
    lastQuiet_ = now;
  }
  if (maxLength_ > 0 && now > maxLength_) stopRequest_ = true;
}

template <class Device>
void LSoundRecorderTemplate<Device>::StepsEnd() {
  device_.StopDevice();
  if (mode_ == Recording) {
    while (TakeBlock()) sink_.Write(block_.data(), blockFrames_);
    if (LUserSettingGetBool("Recorder", "Autotrim", false))
      sink_->Truncate(LFramesFromSoundTime(lastSound_ + kTailMs, sink_.GetSampleRate()));
  }
  device_.Close();
  reportPending_ = modeChangePending_ = false;
  if (IsToStop()) return;
  stopRequest_ = true;  // ended by itself
  PostQueueNotify();
}

template <class Device>
void LSoundRecorderTemplate<Device>::EvNotify() {
  if (stopRequest_) {
    Stop();
    return;
  }
  if (reportPending_.exchange(false) && target_) {
    LLevels levels = LLevels::Silent();
    levels.levels[0] = LLevel(levelLeft_.load());
    levels.levels[1] = LLevel(levelRight_.load());
    target_->srntfTime(timeMs_, id_);
    target_->srntfLevel(levels, id_);
  }
  if (modeChangePending_.exchange(false) && target_)
    mode_ == Waiting ? target_->srntfWait(id_) : target_->srntfRecord(id_);
}

template class LSoundRecorderTemplate<LSoundRecLLCA>;
