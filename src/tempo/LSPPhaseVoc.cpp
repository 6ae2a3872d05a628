#include "tempo/LSPPhaseVoc.h"

#include <cmath>

#include "sound/LWrap.h"
#include "tempo/LSPReverse.h"
#include "tempo/LSPSpeed.h"

namespace {

constexpr int kBufferFrames = 5;   // in transforms
constexpr std::size_t kSpare = 4;  // behind the last bin: one more bin, to a whole vector

}  // namespace

LSoundSource LSPPhaseVoc::OpenSource(LSoundSource& input) {
  const double magnitude = std::abs(ratio_);
  if (magnitude > kMaxRatio) return LSPSpeed(ratio_, 1.0, 0, outputTime_).OpenSource(input);
  LSoundSource source = ratio_ < 0 ? LSPReverse().OpenSource(input) : input;
  return LSoundSource::Make<LSRCPhaseVoc>(source, magnitude, outputTime_, LPhaseVocGeometry::kHopShift, 50);
}

LPhaseVocGeometry::LPhaseVocGeometry(int sampleRate, double ratio, int hopShift)
    : bits(std::min(int(LFFT::GetBits(static_cast<unsigned long>(std::max(sampleRate, 1)) >> 5)), kMaxBits)),
      size(1 << bits),
      synthesisHop(size >> std::clamp(hopShift, 3, bits)),
      exactHop(std::clamp(synthesisHop * (ratio > 0 ? ratio : 0), 1.0, double(size))),
      analysisHop(int(std::lround(exactHop))) {}

LSRCPhaseVoc::LSRCPhaseVoc(const LSoundSource& input, double ratio, bool outputTime, int hopShift, int /*unused*/)
    : LSoundProcessBase(input),
      outputTime_(outputTime),
      geometry_(input.GetSampleRate(), ratio, hopShift),
      ratio_(geometry_.exactHop / geometry_.synthesisHop),
      bins_(geometry_.size / 2),
      transform_(static_cast<unsigned long>(geometry_.bits)),
      window_(std::size_t(geometry_.size)),
      laterWindow_(window_.size()),
      heardGain_(2 * std::size_t(geometry_.synthesisHop)),
      inputBuffer_(std::size_t(kBufferFrames * geometry_.size) * GetChannels()),
      cursor_(bins_),
      frame_(bins_),
      complex_(window_.size() + kSpare),
      left_(std::size_t(bins_) + kSpare),
      right_(left_.size()) {
  SetPeak(std::max(GetPeak(), kPeakHeadroom));  // turned phases may add up beyond the input's peak
  const double size = geometry_.size;
  for (std::size_t i = 0; i < window_.size(); ++i) laterWindow_[i] = window_[i] * (double(i) / size);
  // Twice windowed and faded, a frame is heard at 0.7 of its level; this makes up for it: within 0.6 dB from half to
  // one and a half times the speed.
  const double level = 1 / std::sqrt(2 * size / geometry_.analysisHop) + 1.2;
  for (std::size_t i = 0; i < heardGain_.size(); ++i) heardGain_[i] = level * window_[std::size_t(bins_) + i] / size;
  for (int channel = 0; channel < GetChannels(); ++channel) {
    channels_.emplace_back(bins_);
    heard_.emplace_back(heardGain_.size());
  }
}

void LSRCPhaseVoc::Read(int* out, int frames) {
  if (restartPending_) Restart();
  while (frames > 0) {
    while (cursor_ >= bins_) {
      NextBuffer(NextHop());
      cursor_ -= geometry_.synthesisHop;
    }
    const int now = std::min(frames, bins_ - cursor_);
    for (int channel = 0; channel < GetChannels(); ++channel) FadeOut(out + channel, now, channel);
    out += now * GetChannels();
    cursor_ += now;
    frames -= now;
  }
}

int LSRCPhaseVoc::ToOwnTime(int inputFrames) const {
  return outputTime_ ? SaturateToInt(inputFrames / ratio_) : inputFrames;
}

int LSRCPhaseVoc::GetPositionSample() const {
  const int offset = ToOwnTime(-(bins_ - cursor_ + readCount_)), position = ToOwnTime(input_.GetPositionSample());
  return std::max(WrapAdd32(position, input_.AdjustRelativeOffset(offset, position)), 0);
}

int LSRCPhaseVoc::GetEndSample() const {
  if (IsStreaming()) return WrapSub32(input_.GetEndSample(), geometry_.size);
  return ToOwnTime(input_.GetEndSample());
}

void LSRCPhaseVoc::Seek(int frame) {
  input_.Seek(outputTime_ ? SaturateToInt(frame * ratio_) : frame);
  Restart();
}

int LSRCPhaseVoc::AdjustRelativeOffset(int offset, int position) {
  return input_.AdjustRelativeOffset(outputTime_ ? offset : SaturateToInt(offset * ratio_), position);
}

bool LSRCPhaseVoc::ControlMessage(int code, long* value) {
  if (code != lccRelativeOffset || outputTime_) return false;
  *value = SaturateToInt(double(*value) * ratio_);
  LSoundProcessBase::ControlMessage(code, value);
  return true;
}

void LSRCPhaseVoc::Restart() {
  readOffset_ = 0;
  hopRest_ = 0;
  cursor_ = bins_;
  const int before = bins_ + geometry_.analysisHop, behind = geometry_.size - before;
  std::fill_n(InputAt(geometry_.analysisHop), bins_ * GetChannels(), 0);
  if (behind > 0) {
    FillBefore(before);
    ReadInput(before, behind);
  }
  for (LPhaseVocChannel& channel : channels_) channel.Reset();
  NextBuffer(geometry_.analysisHop);
  restartPending_ = false;
  readCount_ = behind + geometry_.analysisHop;
}

// The first frame is centred on the position: what lies in front of it is heard of too.
void LSRCPhaseVoc::FillBefore(int frames) {
  const int position = input_.GetPositionSample(), held = std::min(position, frames);
  if (held <= 0) return;
  input_.Seek(position - held);
  ReadInput(frames - held, held);
  if (input_.GetPositionSample() != position) input_.Seek(position);  // a source that plays backward
}

void LSRCPhaseVoc::ReadInput(int atFrame, int frames) {
  while (frames > 0) {
    const int now = std::min(frames, kMaxBlockFrames);
    input_.Read(InputAt(atFrame), now);
    atFrame += now;
    frames -= now;
  }
}

int LSRCPhaseVoc::NextHop() {
  hopRest_ += geometry_.exactHop;
  const int hop = int(hopRest_);
  hopRest_ -= hop;
  return hop;
}

void LSRCPhaseVoc::NextBuffer(int hop) {
  readOffset_ += hop;
  const int kept = geometry_.size - hop;
  if (readOffset_ + geometry_.size > kBufferFrames * geometry_.size) {
    std::copy_n(InputAt(readOffset_), kept * GetChannels(), InputAt(0));
    readOffset_ = 0;
  }
  ReadInput(readOffset_ + kept, hop);
  const LPhaseVocHops hops{hop, geometry_.synthesisHop};
  for (int channel = 0; channel < GetChannels(); channel += 2) {  // two rebuilt channels share one transform
    const bool pair = channel + 1 < GetChannels();
    RebuildSpectrum(channel, hops, left_);
    if (pair)
      RebuildSpectrum(channel + 1, hops, right_);
    else
      right_.Clear();
    TempoKernels().joinReal(complex_.Span(), left_.Span(), right_.Span(), bins_);
    transform_.DoInverseQuarter(complex_.re.data(), complex_.im.data());
    Hear(channel, complex_.re.data());
    if (pair) Hear(channel + 1, complex_.im.data());
  }
}

void LSRCPhaseVoc::RebuildSpectrum(int channel, LPhaseVocHops hops, LComplexArrays& spectrum) {
  const auto size = std::size_t(geometry_.size), bins = std::size_t(bins_);
  TempoKernels().loadWindowed(complex_.Span(), InputAt(readOffset_) + channel, GetChannels(), geometry_.size,
                              window_.data(), laterWindow_.data());
  transform_.DoFFT(complex_.re.data(), complex_.im.data());
  complex_.re[size] = complex_.re[0];
  complex_.im[size] = complex_.im[0];
  TempoKernels().polar(complex_.Span(), bins_, frame_.Analysis());
  channels_[std::size_t(channel)].Step(frame_, hops, spectrum.Span());
  spectrum.re[0] = complex_.re[0];  // the two real bins stay as they are
  spectrum.re[bins] = complex_.re[bins];
  spectrum.im[0] = 0;
}

void LSRCPhaseVoc::Hear(int channel, const double* rebuilt) {
  LHeard& heard = heard_[std::size_t(channel)];
  std::swap(heard.newest, heard.older);
  for (std::size_t i = 0; i < heardGain_.size(); ++i) heard.newest[i] = rebuilt[i] * heardGain_[i];
}

void LSRCPhaseVoc::FadeOut(int* out, int frames, int channel) const {
  const LHeard& heard = heard_[std::size_t(channel)];
  const int hop = geometry_.synthesisHop, start = hop - (bins_ - cursor_);
  const double* const newest = heard.newest.data() + start;
  const double* const older = heard.older.data() + hop + start;
  for (int i = 0; i < frames; ++i, out += GetChannels()) {
    const double weight = double(hop - start - i) / hop;
    *out = SaturateToInt(weight * older[i] + (1 - weight) * newest[i]);
  }
}
