#include "effects/LSPTremolo.h"

#include <cmath>
#include <numbers>

#include "sound/LWrap.h"

LSoundSource LSPTremolo::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCTremolo>(input, Percent(Depth), Decimal(Frequency));
}

LSRCTremolo::LSRCTremolo(const LSoundSource& input, double depth, double frequencyHz)
    : LSoundProcessBase(input),
      depth_(depth),
      turns_(frequencyHz / input.GetSampleRate()),
      frame_(input.GetPositionSample()) {
  SetPeak(SaturateToInt((1 + depth) * GetPeak()));
}

void LSRCTremolo::Read(int* out, int frames) {
  input_.Read(out, frames);
  for (const long long end = frame_ + frames; frame_ < end; ++frame_) {
    const double gain = std::sin(double(frame_) * turns_ * 2 * std::numbers::pi) * depth_ + 1;
    for (int channel = 0; channel < GetChannels(); ++channel, ++out) *out = SaturateToInt(*out * gain);
  }
}

void LSRCTremolo::Seek(int frame) {
  input_.Seek(frame);
  frame_ = input_.GetPositionSample();
}
