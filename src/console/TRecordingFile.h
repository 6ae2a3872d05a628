// Where a recording goes: its name and its sink, by the settings of the moment.
// Threads  [main]
// Failure  an extension that is not known, or a file that cannot be made, gives an error sink.
#pragma once
#include <string>

#include "sound/LSoundSink.h"

namespace TRecordingFile {

std::string NewPath();                         // folder, automatic or numbered fixed name, extension
LSoundSink OpenSink(const std::string& path);  // by the path's extension

bool IsKnownExtension(const std::string& extension);
std::string KnownExtensions();  // for a message: ".wav, .mp3, .aiff, .aif"

// "YYYY-MM-DD HH-MM-SS" of the local time.
std::string AutomaticName();

}  // namespace TRecordingFile
