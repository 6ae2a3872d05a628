// The comment block that Ogg and FLAC files share: a vendor, then texts "NAME=value" that name their fields themselves.
// Units    bytes
// Threads  [any], one at a time
// Failure  false: a text reached beyond the block, or too many of them; those before it stay.
#pragma once
#include <span>

#include "audiofile/tags/LAudioTagData.h"

struct LVorbisName {
  const char *name, *field;
};

// Names of the list become our fields, the others stay as they are in capitals. The vendor is COMMENT until there is one.
bool ReadVorbisComment(LAudioTagData& tags, const LTagBlock& block, std::span<const LVorbisName> names);
