// Finds frame headers in a file: the next one, over whatever lies between.
// Law      where bytes had to be skipped, a header counts only if another of its kind follows at the distance it gives, or
//          the audio ends there. A tag with a size in the middle of a file is stepped over whole.
// Units    bytes; offsets from the start of the file
// Threads  one thread at a time; no allocation. A search ends after kMaxSearchBytes without a header
// Failure  Next is false at the end of the audio
#pragma once
#include "audiofile/mp3/LMP3Header.h"
#include "audiofile/mp3/LMP3ReadFile.h"

struct LMP3FoundFrame {
  LMP3Header header;
  std::int64_t offset = 0;
  std::int64_t skipped = 0;  // bytes in front of it that belong to no frame; those of tags do not count
};

namespace LMP3FrameSearch {

inline constexpr std::int64_t kMaxSearchBytes = 4 << 20;

// The first header at or behind the read position that begins a stream: two more of its kind follow. Leaves the position
// in front of it. Only the end of the file ends this search.
bool First(LMP3ReadFile& file, LMP3FoundFrame& frame);

// The next frame of the stream that is wholly there. Leaves the position in front of it.
bool Next(LMP3ReadFile& file, const LMP3Header& stream, LMP3FoundFrame& frame);

}  // namespace LMP3FrameSearch
