// The state of decks, levels and recording as JSON, for scripts and tests.
// Units    as the names say; a muted level is null.
// Threads  [main]
#pragma once
#include <string>

class DJConsole;
class TSafeLive;
class TSoundProcessChain;

namespace TStateWriter {
std::string ToJson(const DJConsole& console, const TSafeLive& safeLive, const TSoundProcessChain& chain);
}
