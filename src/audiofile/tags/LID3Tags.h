// The tags of an MP3 file: ID3v2 (versions 2, 3 and 4) at its start, ID3v1 in its last 128 bytes. The newer tag wins.
// Units    bytes; TLEN is in ms
// Threads  [any], one at a time
// Failure  false: there is none, or a frame that does not fit into its tag ended the walk. Compressed and encrypted
//          frames are passed over.
#pragma once
#include <string_view>

#include "audiofile/tags/LAudioTagData.h"

bool ReadTagsMP3(LAudioTagData& tags, const LTagBlock& file);
bool ReadTagsID3v1(LAudioTagData& tags, const LTagBlock& file);
bool ReadTagsID3v2(LAudioTagData& tags, const LTagBlock& file);

// Frame names of version 2 to those of version 3, and these to our fields; "" for those that tell us nothing.
std::string_view MapHashTagToID3v2Minor2ToMinor3Tag(std::string_view id);
std::string_view MapID3v2TagToHashTag(std::string_view id);
