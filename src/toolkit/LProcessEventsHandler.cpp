#include "toolkit/LProcessEventsHandler.h"

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

bool LProcessEventsHandler::ProcessWaitSignalAndProcessEvents(LSignalObjectRef signal, unsigned ms) {
  LSignalObjectGroup group;
  group.Add(signal);
  return ProcessWaitSignalObjectGroupAndProcessEvents(group, ms);
}

bool LProcessEventsHandler::ProcessWaitSignalObjectGroupAndProcessEvents(LSignalObjectGroup& group, unsigned ms) {
  return LPlatform::Toolkit().RunUntil(group, ms);
}

void LProcessEventsHandler::ClearEventQueue() { LPlatform::Toolkit().ClearEventQueue(); }
