// IMA ADPCM in a wave file (format tag 17): four bits a sample, each block with a start of its own.
// Law      IMA's recommended practices of 1992: 89 step widths, a difference of (2 m + 1) / 8 steps for the magnitude m
//          cut bit by bit, held at 16 bits. A block has 4 bytes a channel to begin with (sample, step, 0), which give the
//          first frame, and then 8 samples in 4 bytes, channel after channel.
// Units    frames; block align in bytes
// Threads  [main, worker] to open; then as a source.
// Failure  a block align that holds no frame is lseDamaged.
#pragma once
#include "audiofile/LRawFileDataSoundSource.h"

LSoundSource LIMAWaveOpenSource(LPCMData&& data, int blockAlign);
