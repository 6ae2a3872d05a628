// Writes an MP3 file while it is recorded.
// Signal   a frame goes into the file as soon as it is encoded, so that a file whose writer died plays to its last
//          block. At the end the first frame becomes a tag that tells length, delay and padding: players that read it
//          give back exactly the frames that were written. (The frames of the lowest bit rates are too small for it.)
//          At constant bit rates below 256 the library lowers the level by 3 to 5 %, lest decoders clip.
// Units    frames; rates in Hz
// Threads  opening [main]; the sink one thread at a time, Write allocates nothing once it has had its first block.
// Failure  a folder or file that cannot be written gives an error sink. A block that could not be written sets the error
//          bit and ends the file there; so does the largest position. What is encoded cannot be taken back: Seek and
//          Truncate are ignored.
#pragma once
#include <string>

#include "audiofile/encode/LMp3EncodeSettings.h"
#include "sound/LSoundSink.h"

// The sink's rate and channels follow from the settings: write to it through converters. By the encoder's library, or
// by the program "mp3el2" in a build without it.
LSoundSink OpenMp3Sink(const std::string& path, const LMp3EncodeSettings& settings, int rate, int channels);
