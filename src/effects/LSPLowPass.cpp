#include "effects/LSPLowPass.h"

#include <algorithm>

#include "effects/LOnePole.h"
#include "sound/LWrap.h"

LSoundSource LSPLowPass::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCLowPass>(input, Value(Frequency));
}

LSRCLowPass::LSRCLowPass(const LSoundSource& input, int frequencyHz)
    : LSoundProcessBase(input),
      step8_(LOnePole::Step8(frequencyHz, input.GetSampleRate())),
      accumulators_(input.GetChannels()) {
  SetPeak(LOnePole::RaisedPeak(GetPeak()));
}

void LSRCLowPass::Read(int* out, int frames) {
  input_.Read(out, frames);
  for (int frame = 0; frame < frames; ++frame)
    for (int& accumulator : accumulators_) {
      accumulator = WrapAdd32(accumulator, WrapMul32(WrapSub32(*out, accumulator >> 8), step8_));
      *out++ = accumulator >> 8;
    }
}

void LSRCLowPass::Seek(int frame) {
  std::fill(accumulators_.begin(), accumulators_.end(), 0);
  input_.Seek(frame);
}
