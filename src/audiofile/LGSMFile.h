// GSM 06.10: files of bare frames (".gsm"), and wave files with two frames in a block (format tag 49).
// Signal   mono, 13 bits. Decoding depends on all that came before, so states of the decoder are kept every two seconds
//          as they are reached, and reading from anywhere gives the same samples. Only a jump more than a minute ahead of
//          all that has been heard begins with a new decoder one second in front of its target; a sustained tone may
//          then come in more softly.
// Units    frames; rates in Hz
// Threads  [main, worker] to open; then as sources and sinks.
// Failure  an error source with the reason, an error sink. A frame without its mark is silence.
#pragma once
#include <string>

#include "audiofile/LRawFileDataSoundSource.h"
#include "sound/LSoundSink.h"

namespace LGSMFile {

LSoundSource OpenSource(const std::string& path);  // at 8000 Hz

}  // namespace LGSMFile

LSoundSource LGSMWaveOpenSource(LPCMData&& data);
LSoundSink LGSMWaveOpenSink(const std::string& path, int rate, unsigned char channels);  // one channel only
