// Waits on the main thread that keep the windows alive.
// Units    ms; kWaitForever has no limit.
// Threads  [main]
#pragma once
#include "foundation/LSignalObject.h"

namespace LProcessEventsHandler {

// True: signalled; false: the time is over, or the loop has ended.
bool ProcessWaitSignalAndProcessEvents(LSignalObjectRef signal, unsigned ms);
bool ProcessWaitSignalObjectGroupAndProcessEvents(LSignalObjectGroup& group, unsigned ms);
void ClearEventQueue();  // drops clicks and keys made meanwhile

}  // namespace LProcessEventsHandler
