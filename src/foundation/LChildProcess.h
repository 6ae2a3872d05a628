// A program run as a child: its arguments go as they are, no shell looks at them. It may be fed and read by pipes.
// Law      standard input, output and errors of the child are /dev/null unless a pipe is asked for; no other descriptor
//          of ours reaches it. Dropping the object ends a child that still runs and waits for it.
// Units    waits in ms
// Threads  one thread at a time; a wait for the end uses a thread of its own, which is gone when the wait is.
// Failure  a program that cannot be started gives IsRunning() false; a pipe whose other end has gone closes.
#pragma once
#include <sys/types.h>

#include <string>
#include <vector>

#include "foundation/LFile.h"
#include "foundation/LProcessInterface.h"

class LChildProcess {
 public:
  enum Pipes { NoPipes = 0, ToChild = 1, FromChild = 2 };

  LChildProcess() = default;
  ~LChildProcess() { Kill(); }
  LChildProcess(const LChildProcess&) = delete;
  LChildProcess& operator=(const LChildProcess&) = delete;

  bool Start(const std::vector<std::string>& arguments, int pipes = NoPipes);  // arguments[0]: the program's path
  bool IsRunning() const { return id_ > 0; }

  bool Write(const void* bytes, std::size_t count);   // to its input; false closes that pipe
  std::int64_t Read(void* bytes, std::size_t count);  // from its output, whole count unless it ends
  bool CanRead(unsigned ms) const;                    // something is there, or the end
  void CloseInput() { toChild_.Close(); }             // the child sees the end of its input

  // Waits for the end. lprStopped: asked to stop, the child was ended; lprDone: see ExitStatus.
  LProcessResult Wait(LProcessInterface& process);
  int ExitStatus() const { return exitStatus_; }  // -1: it did not end by itself
  void Kill();

 private:
  bool Spawn(const std::vector<std::string>& arguments, int input, int output);
  void Reap();

  pid_t id_ = -1;
  int exitStatus_ = -1;
  LFileHandle toChild_, fromChild_;
};

// One program from start to end: lprDone only if it ended with status 0.
LProcessResult RunProgram(LProcessInterface& process, const std::vector<std::string>& arguments);
