#include "audiofile/mp3/LMP3FrameCache.h"

#include <algorithm>
#include <new>

void LMP3FrameCache::Init(std::int64_t frames, int step) {
  highest_ = -1;
  step_ = int(std::max<std::int64_t>(step, frames / (kMaxEntries - 1) + 1));
  size_ = int(frames / step_) + 1;
  table_.reset(new (std::nothrow) std::int64_t[std::size_t(size_)]);
  if (table_) {
    std::fill_n(table_.get(), size_, kEmpty);
  } else {
    size_ = 0;
    step_ = 1;
  }
}

void LMP3FrameCache::Set(int frame, std::int64_t offset) {
  if (frame < 0 || frame % step_ != 0 || frame / step_ >= size_) return;
  table_[frame / step_] = offset;
  highest_ = std::max(highest_, frame);
}

bool LMP3FrameCache::GetNearestPreviousFrame(int& frame, std::int64_t& offset) const {
  if (frame < 0 || highest_ < 0) return false;
  for (int slot = std::min(frame, highest_) / step_; slot >= 0; --slot)
    if (table_[slot] != kEmpty) {
      frame = slot * step_;
      offset = table_[slot];
      return true;
    }
  return false;
}
