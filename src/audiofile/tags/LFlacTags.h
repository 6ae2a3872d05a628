// The tags of a FLAC file: the comment and picture blocks in front of its sound.
// Units    bytes
// Threads  [any], one at a time
// Failure  false: no FLAC file, or a block that reaches beyond the file; those before it stay.
#pragma once
#include <optional>

#include "audiofile/tags/LAudioTagData.h"

bool ReadTagsFLAC(LAudioTagData& tags, const LTagBlock& file);

// In ms, from the stream information; nothing if the writer did not know it.
std::optional<std::int64_t> GetFlacAudioLength(const LTagBlock& streamInfo);
