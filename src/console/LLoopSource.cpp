#include "console/LLoopSource.h"

#include <algorithm>

#include "sound/LWrap.h"

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
  if (range_.Length() <= kRepeatedFrames) kept_.resize(std::size_t(range_.Length()) * GetChannels());
}

void LLoopSourceBase::Seek(int frame) {
  repeatAt_ = range_.Wrap(frame);
  if (!repeating_) input_.Seek(repeatAt_);
}

void LLoopSourceBase::Read(int* out, int frames) {
  while (frames > 0 && range_.Length() > 0) {
    if (GetPositionSample() >= range_.end) Seek(range_.start);
    const long long toEnd = (long long)range_.end - GetPositionSample();
    if (toEnd <= 0) break;  // the input does not follow a seek
    const int part = int(std::min<long long>(frames, toEnd));
    repeating_ ? Repeat(out, part) : ReadInput(out, part);
    out += std::ptrdiff_t(part) * GetChannels();
    frames -= part;
  }
  std::fill_n(out, std::ptrdiff_t(frames) * GetChannels(), 0);
}

void LLoopSourceBase::ReadInput(int* out, int frames) {
  const int into = input_.GetPositionSample() - range_.start;
  input_.Read(out, frames);
  if (kept_.empty() || into != keptFrames_) return;
  std::copy_n(out, std::ptrdiff_t(frames) * GetChannels(), kept_.begin() + std::ptrdiff_t(into) * GetChannels());
  keptFrames_ += frames;
  repeating_ = keptFrames_ == range_.Length();
  repeatAt_ = range_.end;
}

void LLoopSourceBase::Repeat(int* out, int frames) {
  const auto from = kept_.begin() + std::ptrdiff_t(repeatAt_ - range_.start) * GetChannels();
  std::copy_n(from, std::ptrdiff_t(frames) * GetChannels(), out);
  repeatAt_ += frames;
}

// What is buffered in front of the device may have been read before the jump: it is traced back through it.
int LLoopSourceBase::AdjustRelativeOffset(int offset, int position) {
  const long long at = position + (long long)input_.AdjustRelativeOffset(offset, position);
  return SaturateToInt(double((long long)range_.Wrap(at) - position));
}

bool LLoopSourceBase::ControlMessage(int code, long* value) {
  const auto clamped = SaturateToInt(double(*value));
  switch (code) {
    case lccWrapPosition:
      if (clamped < range_.start) *value = range_.Wrap(clamped);
      return true;
    case lccRelativeOffset: {
      const long long position = GetPositionSample();
      *value = long(range_.Wrap(position + clamped) - position);
      return true;
    }
    default:
      return input_.ControlMessage(code, value);
  }
}
