#include "audiofile/ffmpeg/LSoundBucket.h"

#include <algorithm>
#include <mutex>

int LSoundBucket::HeldLocked() const {
  const int held = write_ - read_;
  return held < 0 ? held + int(ring_.size()) : held;
}

int LSoundBucket::Held() const {
  const std::lock_guard lock(mutex_);
  return HeldLocked();
}

int LSoundBucket::Put(const int* samples, int count) {
  const std::lock_guard lock(mutex_);
  const int dropped = std::min(count, owed_);
  owed_ -= dropped;
  const int taken = std::min(count - dropped, kCapacity - HeldLocked());
  for (int done = 0; done < taken;) {
    const int part = std::min(taken - done, int(ring_.size()) - write_);
    if (samples)
      std::copy_n(samples + dropped + done, part, ring_.begin() + write_);
    else
      std::fill_n(ring_.begin() + write_, part, 0);
    write_ = (write_ + part) % int(ring_.size());
    done += part;
  }
  return dropped + taken;
}

void LSoundBucket::Read(int* out, int count) {
  const std::lock_guard lock(mutex_);
  const int given = std::min(count, HeldLocked());
  for (int done = 0; done < given;) {
    const int part = std::min(given - done, int(ring_.size()) - read_);
    std::copy_n(ring_.begin() + read_, part, out + done);
    read_ = (read_ + part) % int(ring_.size());
    done += part;
  }
  std::fill_n(out + given, count - given, 0);
  owed_ = int(std::min<long long>(0x7fffffff, static_cast<long long>(owed_) + count - given));
}
