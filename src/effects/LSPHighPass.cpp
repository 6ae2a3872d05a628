#include "effects/LSPHighPass.h"

#include <algorithm>

#include "effects/LOnePole.h"
#include "sound/LWrap.h"

LSoundSource LSPHighPass::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCHighPass>(input, Value(Frequency), Value(Share));
}

LSRCHighPass::LSRCHighPass(const LSoundSource& input, int frequencyHz, int percent)
    : LSoundProcessBase(input),
      step8_(LOnePole::Step8(frequencyHz, input.GetSampleRate())),
      percent_(percent),
      accumulators_(input.GetChannels()),
      settling_(std::size_t(kSettleFrames) * input.GetChannels()) {
  SetPeak(LOnePole::RaisedPeak(GetPeak()));
}

void LSRCHighPass::Read(int* out, int frames) {
  input_.Read(out, frames);
  for (int frame = 0; frame < frames; ++frame)
    for (int& accumulator : accumulators_) {
      *out = WrapSub32(*out, (accumulator >> 8) * percent_ / 100);
      accumulator = WrapAdd32(accumulator, WrapMul32(*out, step8_));
      ++out;
    }
}

void LSRCHighPass::Seek(int frame) {
  input_.Seek(frame);
  const int reached = input_.GetPositionSample();
  const int settle = std::min(reached, kSettleFrames);
  if (settle <= 0) return;
  input_.Seek(reached - settle);
  Read(settling_.data(), settle);
}
