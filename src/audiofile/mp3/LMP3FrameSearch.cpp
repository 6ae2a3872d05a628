#include "audiofile/mp3/LMP3FrameSearch.h"

#include <cstring>

namespace {

bool HeaderAt(LMP3ReadFile& file, std::int64_t offset, LMP3Header& header) {
  const unsigned char* const bytes = file.PeekAt(offset, LMP3Header::kBytes);
  return bytes && LMP3Header::Parse(bytes, header);
}

// True if `count` headers of the same kind follow one another from here, or as many as there is room for: the audio may
// end behind a frame, and if one has followed already, within the next one.
bool IsFollowed(LMP3ReadFile& file, std::int64_t offset, const LMP3Header& header, int count) {
  std::int64_t next = offset + header.FrameBytes();
  for (int agreed = 0; agreed < count; ++agreed) {
    if (next == file.AudioEnd()) return true;
    if (next + LMP3Header::kBytes > file.AudioEnd()) return agreed > 0 || next < file.AudioEnd();
    LMP3Header following;
    if (!HeaderAt(file, next, following) || !following.IsSameStream(header)) return false;
    next += following.FrameBytes();
  }
  return true;
}

// Moves the position to the next byte that may begin a header or a tag. False at the end.
bool SkipToCandidate(LMP3ReadFile& file) {
  const unsigned char* bytes;
  while (const int count = file.Peek(bytes)) {
    for (int i = 0; i < count; ++i)
      if (bytes[i] == 255 || bytes[i] == 'I') {
        file.Seek(file.Position() + i);
        return true;
      }
    file.Seek(file.Position() + count);
  }
  return false;
}

std::int64_t TagBytesAt(LMP3ReadFile& file, std::int64_t offset) {
  const unsigned char* const bytes = file.PeekAt(offset, kId3HeaderBytes);
  const std::int64_t size = bytes ? LId3TagBytes(bytes) : 0;
  return size <= file.AudioEnd() - offset ? size : 0;
}

// `accepts(header, offset, skipped)` decides about each header.
template <class Accepts>
bool Search(LMP3ReadFile& file, LMP3FoundFrame& frame, std::int64_t limit, Accepts accepts) {
  frame.skipped = 0;
  for (std::int64_t from = file.Position(); frame.skipped <= limit && SkipToCandidate(file);) {
    const std::int64_t offset = file.Position();
    frame.skipped += offset - from;
    from = offset;
    if (HeaderAt(file, offset, frame.header) && accepts(frame.header, offset, frame.skipped)) {
      frame.offset = offset;
      return true;
    }
    const std::int64_t tag = TagBytesAt(file, offset);
    file.Seek(offset + (tag > 0 ? tag : 1));
    if (tag > 0) from += tag;
  }
  return false;
}

}  // namespace

bool LMP3FrameSearch::First(LMP3ReadFile& file, LMP3FoundFrame& frame) {
  constexpr int kFollowing = 2;
  return Search(file, frame, file.AudioEnd(), [&file](const LMP3Header& header, std::int64_t offset, std::int64_t) {
    return IsFollowed(file, offset, header, kFollowing);
  });
}

bool LMP3FrameSearch::Next(LMP3ReadFile& file, const LMP3Header& stream, LMP3FoundFrame& frame) {
  return Search(file, frame, kMaxSearchBytes, [&](const LMP3Header& header, std::int64_t offset, std::int64_t skipped) {
    if (!header.IsSameStream(stream) || offset + header.FrameBytes() > file.AudioEnd()) return false;
    return skipped == 0 || IsFollowed(file, offset, header, 1);
  });
}
