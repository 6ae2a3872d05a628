#include "sound/LSPConvChannels.h"

#include <algorithm>

LSoundSource LSPConvChannels::OpenSource(LSoundSource& input) {
  const int from = input.GetChannels();
  if (!input.IsOk() || channels_ == 0 || from == channels_) return input;
  if (from == 2 && channels_ == 1) return LSoundSource::Make<LSRCConvStereoMono>(input);
  if (from == 1 && channels_ == 2) return LSoundSource::Make<LSRCConvMonoStereo>(input);
  return LSoundSource::Make<LSRCConvChannelsN>(input, channels_);
}

LSRCConvChannels::LSRCConvChannels(const LSoundSource& input, unsigned char channels)
    : LSoundProcessBase(input), work_(std::size_t(kMaxBlockFrames) * input.GetChannels()) {
  SetChannels(std::max<unsigned char>(channels, 1));
  if (channels == 0) SetError(lseDamaged);
}

void LSRCConvChannels::Read(int* out, int frames) {
  while (frames > 0) {
    const int part = std::min(frames, kMaxBlockFrames);
    input_.Read(work_.data(), part);
    Convert(work_.data(), out, part);
    out += part * GetChannels();
    frames -= part;
  }
}

void LSRCConvStereoMono::Convert(const int* in, int* out, int frames) {
  for (int frame = 0; frame < frames; ++frame) out[frame] = int(((long long)in[2 * frame] + in[2 * frame + 1]) / 2);
}

void LSRCConvMonoStereo::Convert(const int* in, int* out, int frames) {
  for (int frame = 0; frame < frames; ++frame) out[2 * frame] = out[2 * frame + 1] = in[frame];
}

void LSRCConvChannelsN::Convert(const int* in, int* out, int frames) {
  const int from = input_.GetChannels(), to = GetChannels();
  for (int frame = 0; frame < frames; ++frame, in += from, out += to)
    for (int channel = 0; channel < to; ++channel) out[channel] = in[channel % from];
}
