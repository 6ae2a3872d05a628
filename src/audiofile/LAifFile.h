// AIFF and AIFC files: PCM of 8 to 32 bits in both byte orders, 32 bit floats and G.711 are read; PCM of both and G.711
// are written.
// Units    rates in Hz, bits of a sample
// Threads  [main, worker] to open; then as sources and sinks.
// Failure  an error source with the reason, an error sink.
#pragma once
#include <string>

#include "audiofile/LAifHeader.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundSource.h"

namespace LAifFile {

LSoundSource OpenSource(const std::string& path);

// Type 0 by bits; 1 is 16 bits whatever is asked; 2 and 3 take at most 8 bits.
LSoundSink OpenAIFFSink(const std::string& path, int rate, unsigned char channels, int bits, AIFFFormatType type);
LSoundSink OpenSinkAIFFC(const std::string& path, int rate, unsigned char channels, int bits, AIFFFormatType type);

}  // namespace LAifFile
