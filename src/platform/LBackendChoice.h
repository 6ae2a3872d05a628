// Which sound system the program plays on: PulseAudio or PipeWire through libpulse, then ALSA; JACK on request
// ("jack:NAME" or the setting); the null device where nothing else is. The first system with an output device gives the
// whole list.
// Threads  [main]
#pragma once
#include <memory>
#include <string>

#include "sound/LSoundBackend.h"

// wanted: a device of the command line, "null", "jack:NAME", or empty.
// api: the setting, "pulse", "alsa", "jack" or empty. It is tried first; without a device there, the order holds.
std::unique_ptr<LSoundBackend> ChooseSoundBackend(const std::string& wanted, const std::string& api = "");
