// The tags of an Ogg file with Vorbis or Opus: the second packet of its first such stream. Names of fields are the file's.
// Units    bytes; positions of pages in frames of the stream, of Opus always at 48000 Hz
// Threads  [any], one at a time
// Failure  false: no such stream, or a comment packet that is damaged.
#pragma once
#include <optional>

#include "audiofile/tags/LAudioTagData.h"

struct LOggStream {
  std::uint32_t serial;
  std::uint32_t rate;        // Hz
  std::uint32_t skipFrames;  // in front of the first that is heard
  int commentHeaderBytes;    // of the comment packet
  const char* commentHeader;
};

bool ReadTagsOGG(LAudioTagData& tags, const LTagBlock& file);

// In ms, from the position that the stream's last page tells.
std::optional<std::int64_t> GetOGGAudioLength(const LTagBlock& file, const LOggStream& stream);
