// Opens any sound file by its extension, and says in the user's words why one could not be opened.
// Threads  [main, worker]
// Failure  `out` is then an error source; its error byte chooses the text.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"
#include "sound/LSoundSource.h"

LProcessResult TGenSourceOpen(LSoundSource& out, const std::string& path);
// As stereo at kDeckRate, the form that decks play.
bool TSourceOpenWithConvert(LSoundSource& out, const std::string& path);

std::string GenSourceErrorText(const LSoundSource& source, const std::string& path);
