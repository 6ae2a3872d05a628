// Asks the desktop's RealtimeKit service, over D-Bus, to give a thread of this process real-time scheduling.
// Units    milliseconds, microseconds of processor time
// Threads  [any]; may block beyond the limit while the bus is being reached, so callers use RunBounded.
// Failure  Missing: no bus, no such service, or built without D-Bus. Refused: it is there and says no.
#pragma once

namespace LRealtimeKit {

enum class Answer { Granted, Refused, Missing };
inline constexpr unsigned kLongestUs = 200000;  // the service's default limit for a thread without a pause

Answer MakeRealTime(long systemThreadId, int priority, int limitMs);

}  // namespace LRealtimeKit
