#include "console/LLoopSaveSource.h"

#include <algorithm>

LLoopSaveSource::LLoopSaveSource(const LSoundSource& input, int start, int end)
    : LSoundProcessBase(input), range_(LLoopRange::Fit(start, end, input.GetEndSample())) {
  Seek(0);
}

void LLoopSaveSource::Read(int* out, int frames) {
  const int part = std::clamp(GetEndSample() - GetPositionSample(), 0, frames);
  if (part > 0) input_.Read(out, part);
  std::fill_n(out + std::ptrdiff_t(part) * GetChannels(), std::ptrdiff_t(frames - part) * GetChannels(), 0);
}

void LLoopSaveSource::Seek(int frame) { input_.Seek(range_.start + std::clamp(frame, 0, range_.Length())); }

int LLoopSaveSource::GetPositionSample() const {
  return std::clamp(input_.GetPositionSample(), range_.start, range_.end) - range_.start;
}
