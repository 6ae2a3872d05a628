// The tags of an MP4 file: the items in the list moov/udta/meta/ilst.
// Units    bytes
// Threads  [any], one at a time
// Failure  false: no MP4 file, or no list in it. An atom that does not fit into its parent ends the walk.
#pragma once
#include <optional>
#include <string_view>

#include "audiofile/tags/LAudioTagData.h"

bool ReadTagsM4A(LAudioTagData& tags, const LTagBlock& file);

// The content of the first atom of this name.
std::optional<LTagBlock> FindM4AAtom(std::string_view name, const LTagBlock& parent);

// "" for those that tell us nothing, and for those that hold a number or a picture.
std::string_view MapiTunesTagToHashTag(std::string_view atom);
