#include "tempo/LSPReverse.h"

#include <algorithm>

LSoundSource LSPReverse::OpenSource(LSoundSource& input) { return LSoundSource::Make<LSRCReverse>(input); }

void LSRCReverse::Read(int* out, int frames) {
  const int channels = GetChannels();
  const int taken = std::clamp(input_.GetPositionSample(), 0, frames);
  const int start = std::max(input_.GetPositionSample() - taken, 0);
  if (taken > 0) {
    input_.Seek(start);
    input_.Read(out, taken);
    for (int low = 0, high = taken - 1; low < high; ++low, --high)
      std::swap_ranges(out + low * channels, out + (low + 1) * channels, out + high * channels);
    input_.Seek(start);
  }
  std::fill(out + taken * channels, out + frames * channels, 0);
}
