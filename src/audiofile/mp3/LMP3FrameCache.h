// Where frames lie in a file, by their number: every `step`th frame has an entry.
// Units    file offsets in bytes
// Threads  one thread at a time; allocates in Init alone
// Failure  without memory it is empty and remembers nothing
#pragma once
#include <cstdint>
#include <memory>

class LMP3FrameCache {
 public:
  static constexpr int kMaxEntries = 7456540;

  // Wide enough for `frames`; the step is widened where that would take more entries than there may be.
  void Init(std::int64_t frames, int step);
  void Set(int frame, std::int64_t offset);
  // The last entry at or before `frame`; false if there is none.
  bool GetNearestPreviousFrame(int& frame, std::int64_t& offset) const;

 private:
  static constexpr std::int64_t kEmpty = -1;
  std::unique_ptr<std::int64_t[]> table_;
  int size_ = 0;  // entries
  int step_ = 1;
  int highest_ = -1;  // frame filled
};
