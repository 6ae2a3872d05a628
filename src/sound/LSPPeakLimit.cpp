#include "sound/LSPPeakLimit.h"

#include <algorithm>
#include <utility>

#include "sound/LFixedPoint.h"
#include "sound/LSoundLevel.h"

int LimitTargetGain24(int peak, int limit) {
  if (peak <= limit) return kUnityGain24;
  const long long scaledPeak = ((long long)peak + 64) >> 6;
  return int((((long long)limit << 9) / scaledPeak) << 9);
}

LSoundSource LSPPeakLimit::OpenSource(LSoundSource& input) { return LSoundSource::Make<LSRCPeakLimit>(input, limit_); }

LSoundSource LSPPeakLimitNoBuffer::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCPeakLimitNoBuffer>(input, limit_);
}

LSRCPeakLimit::LSRCPeakLimit(const LSoundSource& input, int limit) : LSoundProcessBase(input), limit_(limit) {
  SetPeak(std::min(input.GetPeak(), limit));
  for (auto& block : blocks_) block.resize(std::size_t(kBlockFrames) * GetChannels());
}

int LSRCPeakLimit::HeldFrames() const { return filled_ ? kBuffers * kBlockFrames - played_ : 0; }

int LSRCPeakLimit::GetEndSample() const {
  const int end = input_.GetEndSample();
  if (!input_.IsStreaming()) return end;
  const int position = input_.GetPositionSample();
  const int wholeBlocks = std::max(end - position, 0) / kBlockFrames * kBlockFrames;
  return std::max(position + wholeBlocks - kLookAheadFrames, GetPositionSample());
}

void LSRCPeakLimit::Seek(int frame) {
  input_.Seek(frame);
  filled_ = false;
  played_ = 0;
}

bool LSRCPeakLimit::ControlMessage(int code, long* value) {
  if (value && code == lccLookAhead) {
    *value = HeldFrames();
    return true;
  }
  if (value && code == lccPullBack) {
    *value += HeldFrames();
    input_.ControlMessage(code, value);
    return true;
  }
  return input_.ControlMessage(code, value);
}

void LSRCPeakLimit::Read(int* out, int frames) {
  while (frames > 0) {
    if (!filled_)
      Fill();
    else if (played_ == kBlockFrames)
      Rotate();
    const int part = std::min(frames, kBlockFrames - played_);
    Play(out, part);
    played_ += part;
    out += part * GetChannels();
    frames -= part;
  }
}

int LSRCPeakLimit::ReadBlock(std::vector<int>& block) {
  input_.Read(block.data(), kBlockFrames);
  return LimitTargetGain24(GetBufferPeak(block.data(), kBlockFrames, GetChannels()), limit_);
}

void LSRCPeakLimit::Fill() {
  gains_[Previous] = gains_[Current] = kUnityGain24;
  gains_[Next] = ReadBlock(blocks_[1]);
  gains_[AfterNext] = ReadBlock(blocks_[2]);
  gain_ = gains_[Next];  // the first block to be played: it has nothing before it to come down over
  filled_ = true;
  Rotate();
}

void LSRCPeakLimit::Rotate() {
  std::swap(blocks_[0], blocks_[1]);
  std::swap(blocks_[1], blocks_[2]);
  std::copy(gains_ + Current, gains_ + kGains, gains_);
  gains_[AfterNext] = ReadBlock(blocks_[2]);
  played_ = 0;

  int sum = 0;
  for (const int gain : gains_) sum += gain;
  const int distance = std::min(std::min(gains_[Current], gains_[Next]), sum / kGains) - gain_;
  step_ = distance / kBlockFrames;
  gain_ += distance % kBlockFrames;
}

void LSRCPeakLimit::Play(int* out, int frames) {
  const int channels = GetChannels();
  const int* in = blocks_[0].data() + played_ * channels;
  if (gain_ >= kUnityGain24 && step_ == 0) {
    std::copy_n(in, frames * channels, out);
    return;
  }
  for (int frame = 0; frame < frames; ++frame, gain_ += step_)
    for (int channel = 0; channel < channels; ++channel) *out++ = MulGain24(*in++, gain_);
}

LSRCPeakLimitNoBuffer::LSRCPeakLimitNoBuffer(const LSoundSource& input, int limit)
    : LSoundProcessBase(input), limit_(limit) {
  SetPeak(std::min(input.GetPeak(), limit));
}

bool LSRCPeakLimitNoBuffer::ControlMessage(int code, long* value) {
  if (input_.ControlMessage(code, value)) return true;
  if (!value || code != lccLookAhead) return false;
  *value = 0;
  return true;
}

void LSRCPeakLimitNoBuffer::Read(int* out, int frames) {
  while (frames > 0) {
    const int block = std::min(frames, kMaxBlockFrames);
    input_.Read(out, block);
    Limit(out, block);
    out += block * GetChannels();
    frames -= block;
  }
}

void LSRCPeakLimitNoBuffer::Limit(int* samples, int frames) {
  const int channels = GetChannels();
  const int wanted = LimitTargetGain24(GetBufferPeak(samples, frames, GetChannels()), limit_);
  if (wanted == kUnityGain24 && gain_ == kUnityGain24) return;

  const bool down = wanted < gain_;
  const int start = gain_;
  const int target = down ? wanted : std::min(wanted, start + std::max((kUnityGain24 - start) / 8, 1));
  const int ramp = down ? std::min(kAttackFrames, frames) : frames;
  for (int frame = 0; frame < frames; ++frame) {
    const int gone = std::min(frame + 1, ramp);
    gain_ = start + int((long long)(target - start) * gone / ramp);
    for (int channel = 0; channel < channels; ++channel, ++samples)
      *samples = std::clamp(MulGain24(*samples, gain_), -limit_, limit_);
  }
}
