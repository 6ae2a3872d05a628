#include "foundation/LProcessInterface.h"

#include <cstdarg>

#include "foundation/LText.h"

void LProcessInterface::SetStatusF(int line, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  SetStatus(LText::FormatV(format, arguments).c_str(), line);
  va_end(arguments);
}

void LProcessInterface::SetErrorF(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  SetError(LText::FormatV(format, arguments).c_str());
  va_end(arguments);
}

LProcessWaitResult LProcessInterfaceVoid::ProcessWait(unsigned ms) {
  LWait::Poll(nullptr, 0, ms);
  return lpwTimedOut;
}

LProcessWaitResult LProcessInterfaceVoid::ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) {
  return signal.WaitSignal(ms) ? lpwSignalled : lpwTimedOut;
}

LProcessWaitResult LProcessInterfaceVoid::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) {
  return group.Select(ms) ? lpwSignalled : lpwTimedOut;
}
