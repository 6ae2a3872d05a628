#include "effects/LSPChorus.h"

#include "sound/LWrap.h"

LSoundSource LSPChorus::OpenSource(LSoundSource& input) {
  const int rate = input.GetSampleRate();
  const int centre = int((long long)rate * Value(Delay) / 1000);
  const double swing = centre * Percent(Depth), hz = Decimal(Frequency);
  return LSoundSource::Make<LSRCChorus>(input, LSwing(centre, swing, LSwing::StepOf(0.75 * hz, rate)),
                                        LSwing(centre, swing, LSwing::StepOf(hz, rate)), Percent(Gain));
}

LSRCChorus::LSRCChorus(const LSoundSource& input, const LSwing& first, const LSwing& second, double gain)
    : LSoundProcessBase(input),
      first_(first),
      second_(second),
      gains_{gain, gain / 2},
      ring_(std::max(first.MostFrames(), second.MostFrames()), input.GetChannels()) {
  SetPeak(SaturateToInt((1 + gains_[0] + gains_[1]) * GetPeak()));
}

void LSRCChorus::Read(int* out, int frames) {
  input_.Read(out, frames);
  const int channels = GetChannels();
  for (int* const end = out + std::ptrdiff_t(frames) * channels; out < end; out += channels) {
    ring_.Push(out);
    const LModulatedRing::Tap first = ring_.At(first_.NextDelay()), second = ring_.At(second_.NextDelay());
    for (int channel = 0; channel < channels; ++channel) {
      const bool odd = channel % 2 != 0;
      const double voices = first[channel] * gains_[odd] + second[channel] * gains_[!odd];
      out[channel] = SaturateToInt(out[channel] + std::trunc(voices));
    }
  }
}

void LSRCChorus::Seek(int frame) {
  ring_.ClearForSeek(frame);
  input_.Seek(frame);
}
