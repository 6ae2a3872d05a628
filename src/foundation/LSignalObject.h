// A signal that can be waited on together with others: one byte in a pipe. It counts; Reset takes all of it back.
// Units    waits in milliseconds; kWaitForever never times out.
// Threads  [any], [device] included: a signal is one write, takes no lock and allocates nothing.
// Failure  without a pipe the descriptors are -1: signals are lost and waits run into their time-out.
#pragma once
#include <poll.h>

#include <vector>

inline constexpr unsigned kWaitForever = 0xffffffff;

// The two ends of a signal's pipe, copied freely and not owned.
class LSignalObjectRef {
 public:
  LSignalObjectRef() = default;
  LSignalObjectRef(int readEnd, int writeEnd) : readEnd_(readEnd), writeEnd_(writeEnd) {}

  void Signal() const;
  bool IsSignaled() const { return WaitSignal(0); }
  bool WaitSignal(unsigned ms) const;  // true: signalled; false: timed out
  void Reset() const;
  int ReadEnd() const { return readEnd_; }
  int WriteEnd() const { return writeEnd_; }

 private:
  int readEnd_ = -1, writeEnd_ = -1;
};

class LSignalObject {
 public:
  LSignalObject();
  ~LSignalObject();
  LSignalObject(const LSignalObject&) = delete;
  LSignalObject& operator=(const LSignalObject&) = delete;

  void Signal() const { ref_.Signal(); }
  bool IsSignaled() const { return ref_.IsSignaled(); }
  bool WaitSignal(unsigned ms) const { return ref_.WaitSignal(ms); }
  void Reset() const { ref_.Reset(); }
  LSignalObjectRef Ref() const { return ref_; }
  operator LSignalObjectRef() const { return ref_; }

 private:
  LSignalObjectRef ref_;
};

// Several signals waited on at once. poll, not select: descriptors above 1023 are usual here.
class LSignalObjectGroup {
 public:
  void Add(LSignalObjectRef signal);
  bool Select(unsigned ms);  // true: at least one is signalled
  bool IsSignaled() { return Select(0); }
  const std::vector<pollfd>& Ends() const { return ends_; }  // for a host loop that watches them itself

 private:
  std::vector<pollfd> ends_;
};

namespace LWait {
// Waits on the given ends until one is readable. Restarts after an interruption with what is left of the time.
bool Poll(pollfd* ends, unsigned count, unsigned ms);
}  // namespace LWait
