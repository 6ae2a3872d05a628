#include "effects/LSPFlanger.h"

#include "sound/LWrap.h"

LSoundSource LSPFlanger::OpenSource(LSoundSource& input) {
  const int rate = input.GetSampleRate();
  const int centre = int((long long)rate * Value(Delay) / 1000);
  const LSwing swing(centre, centre * Percent(Depth), LSwing::StepOf(Decimal(Frequency), rate));
  return LSoundSource::Make<LSRCFlanger>(input, swing, Percent(Gain));
}

LSRCFlanger::LSRCFlanger(const LSoundSource& input, const LSwing& swing, double wet)
    : LSoundProcessBase(input), swing_(swing), wet_(wet), ring_(swing.MostFrames(), input.GetChannels()) {
  SetPeak(SaturateToInt((1 + wet) * GetPeak()));
}

void LSRCFlanger::Read(int* out, int frames) {
  input_.Read(out, frames);
  const int channels = GetChannels();
  for (int* const end = out + std::ptrdiff_t(frames) * channels; out < end; out += channels) {
    ring_.Push(out);
    const LModulatedRing::Tap tap = ring_.At(swing_.NextDelay());
    for (int channel = 0; channel < channels; ++channel)
      out[channel] = SaturateToInt(out[channel] + std::trunc(tap[channel] * wet_));
  }
}

void LSRCFlanger::Seek(int frame) {
  ring_.ClearForSeek(frame);
  input_.Seek(frame);
}
