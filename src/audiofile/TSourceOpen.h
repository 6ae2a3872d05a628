// Opens any sound file for those who want the source and nothing else: no questions, no dialogs.
// Threads  [main, worker]; a type that has to be decoded takes as long as decoding it.
// Failure  `out` is then an error source; GenSourceErrorText says why.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"
#include "sound/LSoundSource.h"

class LRawSettingsAsker;

LProcessResult TGenSourceOpen(LSoundSource& out, const std::string& path);
// As stereo at kDeckRate, the form that decks play.
bool TSourceOpenWithConvert(LSoundSource& out, const std::string& path);
// Asks for the settings of a file without a header before it is opened in the background, once: `prompt` is cleared.
// lprStopped: cancelled.
LProcessResult LGenSourceOpenPrompt(const std::string& path, bool& prompt, LRawSettingsAsker& asker);
