#include "effects/LSPDRCSimple.h"

#include <algorithm>
#include <cmath>

#include "sound/LFixedPoint.h"
#include "sound/LSoundLevel.h"

namespace {

constexpr int kBlockMs = 20, kMostBlockFrames = 4096;
constexpr double kPeakScale = 5.960464477539063e-8;  // 2^-24

LLevel LevelOfPeak(int peak) {
  if (peak < 1) return LLevel::kMuted;
  return std::clamp(int(20 * std::log10(peak * kPeakScale)), -127, 127);
}

int BlockFrames(int rate) { return int(std::clamp<long long>((long long)rate * kBlockMs / 1000, 1, kMostBlockFrames)); }

}  // namespace

LSoundSource LSPDRCSimple::OpenSource(LSoundSource& input) {
  const LCompressorTableGain table(Value(Threshold), std::pow(10, -Decimal(Ratio) / 20), Value(Limit));
  const LCompressorTiming timing{Value(Attack), Value(Release), Value(ByPeak) != 0};
  return LSoundSource::Make<LSRCCompressorSimple>(input, table, timing);
}

LSoundSource LSPDRCPointLine::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCCompressorSimple>(input, LCompressorTableGain(line_), timing_);
}

LSRCCompressorSimple::LSRCCompressorSimple(const LSoundSource& input, const LCompressorTableGain& table,
                                           const LCompressorTiming& timing)
    : LSoundProcessBase(input),
      table_(table),
      timing_(timing),
      blockFrames_(BlockFrames(input.GetSampleRate())),
      current_(std::size_t(blockFrames_) * input.GetChannels()),
      next_(current_.size()) {
  SetPeak(SaturateToInt(std::max(1.0, table_.Greatest24() / double(kUnityGain24)) * GetPeak()));
}

int LSRCCompressorSimple::GetEndSample() const {
  const int end = input_.GetEndSample();
  if (!input_.IsStreaming()) return end;
  const int position = input_.GetPositionSample();
  const int wholeBlocks = std::max(end - position, 0) / blockFrames_ * blockFrames_;
  return std::max(position + wholeBlocks - blockFrames_, GetPositionSample());
}

void LSRCCompressorSimple::Seek(int frame) {
  input_.Seek(frame);
  filled_ = false;
  played_ = 0;
}

bool LSRCCompressorSimple::ControlMessage(int code, long* value) {
  if (value && code == lccPullBack) *value += HeldFrames();
  return input_.ControlMessage(code, value) || (value && code == lccPullBack);
}

void LSRCCompressorSimple::Read(int* out, int frames) {
  while (frames > 0) {
    if (!filled_)
      Fill();
    else if (played_ == blockFrames_)
      Advance();
    const int part = std::min(frames, blockFrames_ - played_);
    Play(out, part);
    played_ += part;
    out += std::ptrdiff_t(part) * GetChannels();
    frames -= part;
  }
}

int LSRCCompressorSimple::ReadNext() {
  input_.Read(next_.data(), blockFrames_);
  const LLevel level = timing_.byPeak
                           ? LevelOfPeak(GetBufferPeak(next_.data(), blockFrames_, GetChannels()))
                           : LevelFromMeanSquare(GetBufferMeanSquare(next_.data(), blockFrames_, GetChannels()));
  return table_.Gain24(level);
}

void LSRCCompressorSimple::Fill() {
  endGain24_ = ReadNext();
  filled_ = true;
  Advance();
}

void LSRCCompressorSimple::Advance() {
  std::swap(current_, next_);
  played_ = 0;
  gain24_ = endGain24_;
  const int distance = ReadNext() - gain24_;
  const int time = std::max(distance < 0 ? timing_.attack : timing_.release, 1);
  const double blockMs = blockFrames_ * 1000.0 / GetSampleRate();
  endGain24_ = gain24_ + int(distance * std::min(1.0, blockMs / time));
}

void LSRCCompressorSimple::Play(int* out, int frames) {
  const int channels = GetChannels();
  const int* in = current_.data() + std::ptrdiff_t(played_) * channels;
  if (gain24_ == kUnityGain24 && endGain24_ == kUnityGain24) {
    std::copy_n(in, std::ptrdiff_t(frames) * channels, out);
    return;
  }
  const long long distance = endGain24_ - gain24_;
  for (int frame = played_ + 1; frame <= played_ + frames; ++frame) {
    const int gain = gain24_ + int(distance * frame / blockFrames_);
    for (int channel = 0; channel < channels; ++channel) *out++ = MulGain24(*in++, gain);
  }
}
