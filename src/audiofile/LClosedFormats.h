// Formats that are known by name and not decoded here: their openers answer with the reason, and the ladder goes on.
// Threads  [any]
// Failure  always.
#pragma once
#include <string>

#include "sound/LSoundSource.h"

namespace LMOHSource {  // ".moh"
inline LSoundSource OpenSource(const std::string& /*path*/) { return LSoundSource(lseCodecMissing); }
}  // namespace LMOHSource

namespace LMIDIFile {  // ".mid", ".smf": notes, not sound
inline LSoundSource OpenSource(const std::string& /*path*/) { return LSoundSource(lseNoSource); }
}  // namespace LMIDIFile

namespace LDCTSoundSource {  // ".dct"
inline LSoundSource OpenSource(const std::string& /*path*/) { return LSoundSource(lseCodecMissing); }
}  // namespace LDCTSoundSource
