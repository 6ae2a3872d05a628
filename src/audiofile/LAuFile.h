// Files with the ".snd" header (".au"): u-law, A-law, 8 bits and 16 bits big-endian.
// Law      the samples begin right behind the 24 bytes of the header, so an annotation text is heard as sound.
// Threads  [main, worker] to open; then as sources.
// Failure  an error source with the reason.
#pragma once
#include <string>

#include "sound/LSoundSource.h"

namespace LAuFile {

LSoundSource OpenSource(const std::string& path);

}  // namespace LAuFile
