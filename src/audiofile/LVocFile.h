// Creative Voice files (".voc"): 8 and 16 bits, G.711, and the ADPCM forms of 4, 2.6 and 2 bits that the sound cards of
// their time decode themselves. Other compressions need a program of their own.
// Law      rate and compression are those of the first block that tells them. An ADPCM block begins with one plain byte a
//          channel; then a code of sign and magnitude moves the sample by magnitude << (width + shift), in 8 bits, and
//          the width (0 to 3) grows with the largest magnitudes and shrinks with 0.
// Units    frames; offsets and lengths in bytes
// Threads  [main, worker] to open; then as a source.
// Failure  an error source with the reason. Blocks behind the 49th with sound or silence are not heard.
#pragma once
#include <string>

#include "sound/LSoundSource.h"

namespace LVocFile {

LSoundSource OpenSource(const std::string& path);

}  // namespace LVocFile
