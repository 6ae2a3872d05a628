#include "effects/LSPVibrato.h"

#include "sound/LWrap.h"

namespace {
constexpr int kSpareFrames = 2;     // between the latest frame and the nearest the delay comes to it
constexpr double kNothing = 1e-20;  // far below the last bit of any sample; smaller doubles would slow the processor
}  // namespace

LSoundSource LSPVibrato::OpenSource(LSoundSource& input) {
  const double step = LSwing::StepOf(Value(Frequency), input.GetSampleRate());
  // Not cut to whole frames: a soft and fast vibrato swings by less than one.
  const double swing = (std::exp2(Decimal(Depth) / 12) - 1) / step;
  return LSoundSource::Make<LSRCVibrato>(input, LSwing(int(swing) + kSpareFrames, swing, step));
}

LSRCVibrato::LSRCVibrato(const LSoundSource& input, const LSwing& swing)
    : LSoundProcessBase(input),
      swing_(swing),
      ring_(swing.MostFrames(), input.GetChannels()),
      last_(input.GetChannels()) {
  SetPeak(SaturateToInt(3.0 * GetPeak()));  // what an all-pass of first order adds up to at most
}

void LSRCVibrato::Read(int* out, int frames) {
  input_.Read(out, frames);
  const int channels = GetChannels();
  for (int* const end = out + std::ptrdiff_t(frames) * channels; out < end; out += channels) {
    ring_.Push(out);
    const LModulatedRing::Tap tap = ring_.At(swing_.NextDelay());
    for (int channel = 0; channel < channels; ++channel) {
      double& last = last_[std::size_t(channel)];
      last = tap.far[channel] + tap.near[channel] * (1 - tap.share) + (tap.share - 1) * last;
      if (std::abs(last) < kNothing) last = 0;
      out[channel] = SaturateToInt(last);
    }
  }
}

void LSRCVibrato::Seek(int frame) {
  ring_.ClearForSeek(frame);
  std::fill(last_.begin(), last_.end(), 0.0);
  input_.Seek(frame);
}
