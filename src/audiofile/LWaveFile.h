// Wave files: PCM of 8 to 32 bits, 32 and 64 bit floats, G.711, IMA ADPCM, GSM and MPEG Layer III are read; PCM, 32 bit
// floats, G.711 and GSM are written.
// Units    rates in Hz, bits of a sample, startFrame in frames
// Threads  [main, worker] to open; then as sources and sinks.
// Failure  an error source with the reason, an error sink.
#pragma once
#include <string>

#include "audiofile/LWaveHeader.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundSource.h"

struct LWaveFileFormat {
  std::uint16_t tag;
  unsigned char channels;
  int rate;
  int bits;
};

namespace LWaveFile {

LSoundSource OpenSource(const std::string& path);
// The file goes when the last handle does, or at once if it could not be opened.
LSoundSource OpenSourceDeletingFileWhenClosed(const std::string& path);

LSoundSink OpenSink(const std::string& path, const LWaveFileFormat& format);
// Goes on behind frame `startFrame` of an existing file, or behind its last one.
LSoundSink OpenSinkPCM(const std::string& path, int rate, unsigned char channels, int bits, int startFrame);
// Always begins anew.
LSoundSink OpenSinkG711(const std::string& path, int rate, unsigned char channels, std::uint16_t tag, int startFrame);

}  // namespace LWaveFile
