#include "foundation/LSignalObject.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

void LSignalObjectRef::Signal() const {
  if (writeEnd_ < 0) return;
  const char byte = 1;
  // A full pipe is signalled already; nothing is lost when the byte does not fit.
  while (::write(writeEnd_, &byte, 1) < 0 && errno == EINTR) {
  }
}

bool LSignalObjectRef::WaitSignal(unsigned ms) const {
  pollfd end{readEnd_, POLLIN, 0};
  return LWait::Poll(&end, 1, ms);
}

void LSignalObjectRef::Reset() const {
  if (readEnd_ < 0) return;
  char bytes[256];
  while (true) {
    const auto got = ::read(readEnd_, bytes, sizeof bytes);
    if (got > 0 || (got < 0 && errno == EINTR)) continue;
    return;
  }
}

LSignalObject::LSignalObject() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_NONBLOCK | O_CLOEXEC) == 0) ref_ = LSignalObjectRef(ends[0], ends[1]);
}

LSignalObject::~LSignalObject() {
  if (ref_.ReadEnd() < 0) return;
  ::close(ref_.ReadEnd());
  ::close(ref_.WriteEnd());
}

void LSignalObjectGroup::Add(LSignalObjectRef signal) { ends_.push_back({signal.ReadEnd(), POLLIN, 0}); }

bool LSignalObjectGroup::Select(unsigned ms) { return LWait::Poll(ends_.data(), unsigned(ends_.size()), ms); }

bool LWait::Poll(pollfd* ends, unsigned count, unsigned ms) {
  using Clock = std::chrono::steady_clock;
  const auto until = Clock::now() + std::chrono::milliseconds(ms);
  while (true) {
    int left = -1;
    if (ms == 0)
      left = 0;
    else if (ms != kWaitForever) {
      const auto rest = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
      left = rest > 0 ? int(rest < 0x7fffffff ? rest : 0x7fffffff) : 0;
    }
    const int ready = ::poll(ends, count, left);
    if (ready > 0) return true;
    if (ready == 0) {
      if (ms == kWaitForever || (ms != 0 && Clock::now() < until)) continue;
      return false;
    }
    if (errno != EINTR) return false;
  }
}
