#include "sound/LSPConvertRate.h"

#include <algorithm>

#include "sound/LSoundLevel.h"
#include "sound/LWrap.h"
#include "sound/kernels/LSoundKernels.h"

namespace {

constexpr int kOverlapFrames = kRateTaps;
constexpr int kLastFill = 32511;                                    // beyond it the fill count starts again
constexpr int kStreamingFrames = 64;                                // asked of a streaming input that has none
constexpr int kStreamingTail = 33;                                  // frames of a streaming input that are not played
constexpr int kPlaneFrames = kOverlapFrames + kMaxBlockFrames + 1;  // the last row tap is read, but is 0
constexpr int kMaxSampleMagnitude = 32767, kMaxShift = 15;
constexpr int kHalfTaps = 32;

long long FloorDivide(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }
long long FloorRest(long long a, long long b) { return a - FloorDivide(a, b) * b; }

int Held(long long frames) { return int(std::clamp<long long>(frames, INT32_MIN, INT32_MAX)); }

}  // namespace

LSoundSource LSPConvertRate::OpenSource(LSoundSource& input) {
  if (!input.IsOk() || input.GetSampleRate() == targetRate_) return input;
  LSoundSource stage = input;
  if (targetRate_ > 0 && input.GetSampleRate() > 4LL * targetRate_)
    stage = LSoundSource::Make<LSRCConvertRate>(input, 2 * targetRate_, false, fast_);
  return LSoundSource::Make<LSRCConvertRate>(stage, targetRate_, false, fast_);
}

LSRCConvertRate::LSRCConvertRate(const LSoundSource& input, int targetRate, bool wideTransition, bool approximate)
    : LSoundProcessBase(input),
      LConvertRateBase(input.GetSampleRate(), targetRate < 1 ? kDeckRate : targetRate, kRateTaps, wideTransition,
                       approximate, Rows::OnRequest),
      rows_(*this),
      block_(std::size_t(kOverlapFrames + kMaxBlockFrames) * GetChannels()),
      planes_(std::size_t(kPlaneFrames) * GetChannels()) {
  SetSampleRate(targetRate < 1 ? kDeckRate : targetRate);
  if (targetRate < 1 || !rows_.IsOk()) SetError(lseDamaged);
  if (input.GetPeak() <= 0x100000) SetPeak(2 * input.GetPeak());
}

void LSRCConvertRate::Read(int* out, int frames) {
  if (!rows_.IsOk()) std::fill_n(out, frames * GetChannels(), 0);
  while (frames > 0 && rows_.IsOk()) {
    const int made = Convert(out, frames);
    out += made * GetChannels();
    frames -= made;
    if (frames > 0) ReadBuffer();
  }
}

int LSRCConvertRate::Convert(int* out, int frames) {
  if (!narrow_) return ConvertWide(out, frames);
  const LRateRun run{&rows_, Phases(), Step(), blockFrames_, kMaxShift - shift_};
  const LRateKernels& kernels = *Kernels().rate;
  const int channels = GetChannels();
  if (channels == 2) return kernels.stereo(run, cursor_, planes_.data(), planes_.data() + kPlaneFrames, out, frames);
  const LRateCursor start = cursor_;
  int made = 0;
  for (int channel = 0; channel < channels; ++channel) {
    cursor_ = start;
    made = kernels.mono(run, cursor_, planes_.data() + channel * kPlaneFrames, out + channel, channels, frames);
  }
  return made;
}

// The law as it stands, for the rare block whose rounded samples just miss 16 bits.
int LSRCConvertRate::ConvertWide(int* out, int frames) {
  const int channels = GetChannels();
  const int outShift = kMaxShift - shift_;
  const int rounding = (1 << outShift) >> 1;
  for (int made = 0; made < frames; ++made) {
    cursor_.index += cursor_.phase / Phases();
    cursor_.phase %= Phases();
    if (cursor_.index >= blockFrames_) return made;
    const LRateRow& row = rows_.Row(cursor_.row);
    for (int channel = 0; channel < channels; ++channel) {
      const int* in = block_.data() + std::size_t(cursor_.index) * std::size_t(channels) + channel;
      long long sums[2] = {0, 0};
      for (int tap = 0; tap < kRateTaps; ++tap) sums[tap / kHalfTaps] += (long long)row.Tap(tap) * in[tap * channels];
      *out++ = int(((sums[0] >> 1) + (sums[1] >> 1) + rounding) >> outShift);
    }
    cursor_.phase += Step();
    cursor_.row = (cursor_.row + 1) % Phases();
  }
  return frames;
}

int LSRCConvertRate::FramesToRead() const {
  int frames = kBufferFrames - fill_;
  if (input_.IsStreaming()) {
    const int waiting = Held((long long)input_.GetEndSample() - input_.GetPositionSample());
    frames = std::min(frames, waiting > 0 ? waiting : kStreamingFrames);
  }
  return std::min(frames, kMaxBlockFrames);
}

void LSRCConvertRate::ReadBuffer() {
  KeepOverlap();
  cursor_.index -= blockFrames_;
  if (fill_ > kLastFill) fill_ = 0;
  blockFrames_ = FramesToRead();
  input_.Read(block_.data() + kOverlapFrames * GetChannels(), blockFrames_);
  fill_ += blockFrames_;
  ScaleBlock(kOverlapFrames + blockFrames_);
}

// The last frames of the block go in front of the next one, as coarse as the block's scale has made them.
void LSRCConvertRate::KeepOverlap() {
  const int half = narrow_ ? (1 << shift_) / 2 : 0;
  const int* from = block_.data() + blockFrames_ * GetChannels();
  for (int i = 0; i < kOverlapFrames * GetChannels(); ++i) {
    const int scaled = narrow_ ? WrapAdd32(from[i], half) >> shift_ : from[i];
    block_[std::size_t(i)] = int(unsigned(scaled) << shift_);
  }
}

void LSRCConvertRate::ScaleBlock(int frames) {
  const int channels = GetChannels();
  const int peak = GetBufferPeak(block_.data(), frames, GetChannels());
  shift_ = 0;
  while (shift_ < kMaxShift && peak >> shift_ > kMaxSampleMagnitude) ++shift_;
  const long long half = (1 << shift_) / 2;
  narrow_ = (peak + half) >> shift_ <= kMaxSampleMagnitude;
  if (narrow_) {
    for (int channel = 0; channel < channels; ++channel)
      Kernels().rate->split(planes_.data() + channel * kPlaneFrames, block_.data() + channel, channels, frames, shift_);
    return;
  }
  for (int i = 0; i < frames * channels; ++i) block_[std::size_t(i)] = int((block_[std::size_t(i)] + half) >> shift_);
}

void LSRCConvertRate::Seek(int frame) {
  const long long inPhases = (long long)frame * Step();
  long long inputFrame = FloorDivide(inPhases, Phases()) - (kCentre - 1);
  cursor_ = {kCentre, int(FloorRest(inPhases, Phases())), int(FloorRest(frame, Phases()))};
  if (inputFrame < 0) {
    --inputFrame;
    cursor_.phase += Phases();
  }
  input_.Seek(Held(inputFrame));
  fill_ = blockFrames_ = shift_ = 0;
  narrow_ = true;
  std::fill_n(block_.begin(), kOverlapFrames * GetChannels(), 0);
  input_.Read(block_.data() + kCentre * GetChannels(), kOverlapFrames - kCentre);
}

int LSRCConvertRate::GetPositionSample() const {
  const long long frame = (long long)cursor_.index - blockFrames_ + input_.GetPositionSample() - kCentre;
  return Held(FloorDivide(frame * Phases() + cursor_.phase, Step()));
}

int LSRCConvertRate::GetEndSample() const {
  const int end = input_.GetEndSample();
  if (end == kEndless) return kEndless;
  const bool streaming = input_.IsStreaming();
  const long long frames = streaming ? (long long)end - kStreamingTail : end;
  return Held(frames * Phases() / Step() - (streaming ? 1 : 0));
}

bool LSRCConvertRate::ControlMessage(int code, long* value) {
  if (!value) return false;
  if (code == lccInputPosition) {
    *value = input_.GetPositionSample();
    return true;
  }
  if (code == lccSeekInput) {
    input_.Seek(int(*value));
    return true;
  }
  return input_.ControlMessage(code, value);
}
