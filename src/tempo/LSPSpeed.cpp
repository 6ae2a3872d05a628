#include "tempo/LSPSpeed.h"

#include <algorithm>
#include <cmath>

#include "sound/LFixedPoint.h"
#include "sound/LWrap.h"

namespace {

constexpr int kGrainsPerSecond = 90, kMinGrainFrames = 20, kMaxGrainFrames = 2730;
constexpr int kBufferGrains = 8;
constexpr int kMaxStep = 1 << 26;  // samples a grain, far beyond any track's use; sums of a few stay within 32 bits

double NumberOrZero(double value) { return std::isnan(value) ? 0 : value; }

int StepOf(double speed, int grain) { return std::clamp(SaturateToInt(speed * grain), -kMaxStep, kMaxStep); }

int RampSamples(int rate, LSoundTime ms, int channels) {
  const int seconds = ms / 1000, rest = ms % 1000;
  const long long frames = (long long)rate * seconds + (long long)rate * rest / 1000;
  return int(std::clamp<long long>(frames * channels, 0, INT32_MAX));
}

}  // namespace

LSoundSource LSPSpeed::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCSpeed>(input, speed_, finalSpeed_, rampMs_, outputTime_);
}

LSRCSpeed::LSRCSpeed(const LSoundSource& input, double speed, double finalSpeed, LSoundTime rampMs, bool outputTime)
    : LSoundProcessBase(input),
      channels_(GetChannels()),
      grain_(std::clamp(GetSampleRate() / kGrainsPerSecond, kMinGrainFrames, kMaxGrainFrames) * channels_),
      length_(kBufferGrains * grain_),
      outputTime_(outputTime),
      speed_(NumberOrZero(speed)),
      step_(StepOf(speed_, grain_)),
      finalStep_(StepOf(NumberOrZero(finalSpeed), grain_)),
      rampLeft_(RampSamples(GetSampleRate(), rampMs, channels_)),
      buffer_(std::size_t(length_)),
      fade_(FadeTable(grain_)) {
  outputTime_ ? LSRCSpeed::Seek(0) : Restart();
}

std::vector<int> LSRCSpeed::FadeTable(int grainSamples) {
  std::vector<int> fade(std::size_t(grainSamples), kUnityGain24);
  const int start = grainSamples / 2, length = grainSamples - start;
  for (int i = 0; i < length; ++i)
    fade[std::size_t(start + i)] = int(std::lround((std::cos(M_PI * i / length) * 0.5 + 0.5) * kUnityGain24));
  return fade;
}

void LSRCSpeed::Read(int* out, int frames) {
  const int* const buffer = buffer_.data();
  for (int missing = frames * channels_; missing > 0;) {
    if (inGrain_ == grain_) ReBuffer();
    const int count = std::min(grain_ - inGrain_, missing);
    const int countFrames = count / channels_;
    const long long moved = (long long)countFrames * step_;
    map_.Push(countFrames, int((moved + (moved < 0 ? -grain_ / 2 : grain_ / 2)) / grain_));
    for (int i = 0; i < count; ++i) {
      const int gain = fade_[std::size_t(inGrain_ + i)];
      *out++ = WrapAdd32(MulGain24(buffer[outgoing_ + i], gain), MulGain24(buffer[incoming_ + i], kUnityGain24 - gain));
    }
    inGrain_ += count;
    outgoing_ += count;
    incoming_ += count;
    missing -= count;
  }
}

void LSRCSpeed::Restart() {
  map_.Clear();
  outgoing_ = 0;
  if (step_ < 0) {
    outgoing_ = length_ - 2 * grain_;
    SeekRelative(-(outgoing_ + grain_));
  }
  incoming_ = ideal_ = outgoing_;
  fill_ = 0;
  FillTo(length_);
  whole_ = true;
  inGrain_ = 0;
}

// The next grain goes on with what came in last and fades to where the input should stand. Both need to lie in the buffer,
// the outgoing with one grain and the ideal with two.
void LSRCSpeed::ReBuffer() {
  outgoing_ = incoming_;
  ideal_ += step_;
  const int low = std::min(outgoing_, ideal_);
  const int high = std::max(ideal_ + 2 * grain_, outgoing_ + grain_);
  if (high - low >= length_ || low < -2 * grain_)
    Jump();
  else if (!whole_)
    FillAgain(step_ < 0 ? high - length_ : low);
  else if (low < 0)
    MoveUp(length_ - high);
  else if (high > length_)
    MoveDown(low);
  incoming_ = ideal_;
  AdvanceRamp();
  inGrain_ = 0;
}

// Too far for one buffer: two grains of the far place are put beside the grain that goes out.
void LSRCSpeed::Jump() {
  SeekRelative(ideal_ - fill_);
  ideal_ = outgoing_ < 2 * grain_ ? outgoing_ + grain_ : 0;
  fill_ = ideal_;
  FillTo(ideal_ + 2 * grain_);
  whole_ = false;
}

void LSRCSpeed::MoveUp(int samples) {
  std::copy_backward(buffer_.begin(), buffer_.end() - samples, buffer_.end());
  outgoing_ += samples;
  ideal_ += samples;
  SeekRelative(-samples - fill_);
  fill_ = 0;
  FillTo(samples);
}

void LSRCSpeed::MoveDown(int samples) {
  std::copy(buffer_.begin() + samples, buffer_.end(), buffer_.begin());
  outgoing_ -= samples;
  ideal_ -= samples;
  if (fill_ != length_) SeekRelative(length_ - fill_);
  fill_ = length_ - samples;
  FillTo(length_);
}

void LSRCSpeed::FillAgain(int from) {
  SeekRelative(from - fill_);
  outgoing_ -= from;
  ideal_ -= from;
  fill_ = 0;
  FillTo(length_);
  whole_ = true;
}

void LSRCSpeed::AdvanceRamp() {
  if (rampLeft_ <= 0) return;
  if (rampLeft_ <= grain_) {
    step_ = finalStep_;
  } else {
    step_ += int((long long)(finalStep_ - step_) * grain_ / rampLeft_);
    step_ += step_ % channels_;
  }
  rampLeft_ -= grain_;
}

void LSRCSpeed::SeekRelative(int samples) {
  const int frames = samples / channels_;
  input_.Seek(SaturateToInt(double(input_.GetPositionSample()) + frames));
}

void LSRCSpeed::FillTo(int index) {
  while (fill_ < index) {
    const int samples = std::min(index - fill_, kMaxBlockFrames * channels_);
    input_.Read(buffer_.data() + fill_, samples / channels_);
    fill_ += samples;
  }
}

int LSRCSpeed::FramesAhead() const { return (fill_ - (speed_ < 0 ? ideal_ : incoming_)) / channels_; }

int LSRCSpeed::GetPositionSample() const {
  double position = input_.GetPositionSample();
  if (outputTime_)
    position = speed_ > 0 ? position / speed_ : (input_.GetEndSample() - position - 1) / std::fabs(speed_);
  return std::max(SaturateToInt(position - FramesAhead()), 0);
}

int LSRCSpeed::GetEndSample() const {
  const int end = input_.GetEndSample();
  if (outputTime_) return end == kEndless ? kEndless : SaturateToInt(end / std::fabs(speed_));
  return step_ < 0 ? SaturateToInt(2.0 * GetPositionSample()) : end;
}

void LSRCSpeed::Seek(int frame) {
  double place = frame;
  if (outputTime_ && speed_ >= 0) place = std::trunc(speed_ * frame);
  if (outputTime_ && speed_ < 0) place = double(input_.GetEndSample()) - std::trunc(frame * -speed_) - 1;
  input_.Seek(SaturateToInt(place));
  Restart();
}

int LSRCSpeed::AdjustOffsetFromPosition(int offset, int position) const {
  if (offset >= 0 || speed_ == 0) return offset;
  return map_.ToInput(offset, (long long)GetPositionSample() - position, speed_);
}

int LSRCSpeed::AdjustRelativeOffset(int offset, int position) {
  return input_.AdjustRelativeOffset(AdjustOffsetFromPosition(offset, position), position);
}

bool LSRCSpeed::ControlMessage(int code, long* value) {
  if (value && code == lccRelativeOffset)
    *value = AdjustOffsetFromPosition(SaturateToInt(double(*value)), GetPositionSample());
  if (value && code == lccPullBack)
    *value += AdjustOffsetFromPosition((fill_ - incoming_) / channels_, GetPositionSample());
  return input_.ControlMessage(code, value);
}
