#include "console/LLoopSource.h"

#include <algorithm>

namespace {

int ClampToInt(long long value) { return int(std::clamp<long long>(value, INT32_MIN, INT32_MAX)); }

}  // namespace

LLoopRange LLoopRange::Fit(int start, int end, int inputEnd) {
  const long long last = std::max(inputEnd, 0);
  long long from = std::max(start, 0), to = end;
  if (from > last) from -= to - from;
  to = std::clamp(to, 0LL, last);
  from = std::clamp(from, 0LL, last);
  return {int(from), int(std::max(from, to))};
}

int LLoopRange::Wrap(long long frame) const {
  if (Length() == 0) return start;
  if (frame < start) return int(end - (start - frame) % Length());
  if (frame > end) return int(start + (frame - end) % Length());
  return int(frame);
}

LSoundSource LLoopSource::OpenSource(const LSoundSource& source, int start, int end) {
  return LSoundSource::Make<LLoopSourceBase>(source, start, end);
}

LLoopSourceBase::LLoopSourceBase(const LSoundSource& input, int start, int end)
    : LSoundProcessBase(input), range_(LLoopRange::Fit(start, end, input.GetEndSample())) {
  SetPeak(kPeakHeadroom);
}

void LLoopSourceBase::Read(int* out, int frames) {
  while (frames > 0 && range_.Length() > 0) {
    if (input_.GetPositionSample() >= range_.end) input_.Seek(range_.start);
    const long long toEnd = (long long)range_.end - input_.GetPositionSample();
    if (toEnd <= 0) break;  // the input does not follow a seek
    const int part = int(std::min<long long>(frames, toEnd));
    input_.Read(out, part);
    out += std::ptrdiff_t(part) * GetChannels();
    frames -= part;
  }
  std::fill_n(out, std::ptrdiff_t(frames) * GetChannels(), 0);
}

// What is buffered in front of the device may have been read before the jump: it is traced back through it.
int LLoopSourceBase::AdjustRelativeOffset(int offset, int position) {
  const long long at = position + (long long)input_.AdjustRelativeOffset(offset, position);
  return ClampToInt((long long)range_.Wrap(at) - position);
}

bool LLoopSourceBase::ControlMessage(int code, long* value) {
  const auto clamped = ClampToInt(*value);
  switch (code) {
    case lccWrapPosition:
      if (clamped < range_.start) *value = range_.Wrap(clamped);
      return true;
    case lccRelativeOffset: {
      const long long position = input_.GetPositionSample();
      *value = long(range_.Wrap(position + clamped) - position);
      return true;
    }
    default:
      return input_.ControlMessage(code, value);
  }
}
