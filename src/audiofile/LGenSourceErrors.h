// Why a sound file could not be opened, in the user's words.
// Law      the error chooses a text, the extension may have a better one.
// Threads  [any]; the codec's name is read from the file.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"
#include "sound/LSoundSource.h"

// `tempPath` is the temporary wave that a decoder was to write; may be empty.
std::string GenSourceErrorText(LSoundError error, const std::string& path, const std::string& tempPath = "");
// Hands the text to the process; gives lprDone.
LProcessResult ProcessGenSourceGetError(LProcessInterface& process, const LSoundSource& source, const std::string& path,
                                        const std::string& tempPath);
// That the decoder program for a type is missing, or that there is none.
std::string GenSourceComponentText(const std::string& extension);
