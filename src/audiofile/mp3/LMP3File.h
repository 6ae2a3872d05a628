// Opens an MPEG Layer III file as a sound source.
// Units    positions in frames of the file's own rate, from the first sample that went into the encoder
// Threads  [main, worker] open; the source belongs to the thread that reads it
// Failure  lseDamaged where no stream is found, lseCannotOpen where the file is missing; the source then reads silence
#pragma once
#include <string>

#include "sound/LSoundSource.h"

namespace LMP3File {

// With `fullScan` the length of a file of variable bit rate is counted frame by frame, otherwise it may be an estimate.
LSoundSource OpenSource(const std::string& path, bool fullScan);

}  // namespace LMP3File
