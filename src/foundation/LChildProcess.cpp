#include "foundation/LChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

extern char** environ;

namespace {

struct PipeEnds {
  LFileHandle reader, writer;

  bool Open() {
    int ends[2];
    if (::pipe(ends) != 0) return false;
    for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    reader = LFileHandle(ends[0]);
    writer = LFileHandle(ends[1]);
    return true;
  }
};

// The descriptors of the child, one after the other; none is close-on-exec after adddup2.
class ChildFiles {
 public:
  ChildFiles() { ::posix_spawn_file_actions_init(&actions_); }
  ~ChildFiles() { ::posix_spawn_file_actions_destroy(&actions_); }
  ChildFiles(const ChildFiles&) = delete;
  ChildFiles& operator=(const ChildFiles&) = delete;

  void Use(int descriptor, int as, int modeOfNull) {
    if (descriptor >= 0)
      ::posix_spawn_file_actions_adddup2(&actions_, descriptor, as);
    else
      ::posix_spawn_file_actions_addopen(&actions_, as, "/dev/null", modeOfNull, 0);
  }
  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// The program ignores SIGPIPE and others; a child begins with the usual answers.
class ChildSignals {
 public:
  ChildSignals() {
    ::posix_spawnattr_init(&attributes_);
    sigset_t usual, none;
    ::sigemptyset(&usual);
    for (const int number : {SIGPIPE, SIGXFSZ, SIGINT, SIGTERM}) ::sigaddset(&usual, number);
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigdefault(&attributes_, &usual);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~ChildSignals() { ::posix_spawnattr_destroy(&attributes_); }
  ChildSignals(const ChildSignals&) = delete;
  ChildSignals& operator=(const ChildSignals&) = delete;
  const posix_spawnattr_t* Get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

}  // namespace

bool LChildProcess::Start(const std::vector<std::string>& arguments, int pipes) {
  Kill();
  PipeEnds input, output;
  if (((pipes & ToChild) && !input.Open()) || ((pipes & FromChild) && !output.Open())) return false;
  if (!Spawn(arguments, input.reader.Get(), output.writer.Get())) return false;
  toChild_ = std::move(input.writer);
  fromChild_ = std::move(output.reader);
  return true;
}

bool LChildProcess::Spawn(const std::vector<std::string>& arguments, int input, int output) {
  if (arguments.empty()) return false;
  ChildFiles files;
  files.Use(input, STDIN_FILENO, O_RDONLY);
  files.Use(output, STDOUT_FILENO, O_WRONLY);
  files.Use(-1, STDERR_FILENO, O_WRONLY);
  const ChildSignals signals;
  std::vector<char*> list;
  for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));  // NOLINT
  list.push_back(nullptr);
  exitStatus_ = -1;
  if (::posix_spawn(&id_, list[0], files.Get(), signals.Get(), list.data(), environ) == 0) return true;
  id_ = -1;
  return false;
}

bool LChildProcess::Write(const void* bytes, std::size_t count) {
  if (!toChild_.IsOpen()) return false;
  if (toChild_.Write(bytes, count)) return true;
  toChild_.Close();
  return false;
}

std::int64_t LChildProcess::Read(void* bytes, std::size_t count) {
  return fromChild_.IsOpen() ? fromChild_.Read(bytes, count) : -1;
}

bool LChildProcess::CanRead(unsigned ms) const {
  pollfd end{fromChild_.Get(), POLLIN, 0};
  return fromChild_.IsOpen() && LWait::Poll(&end, 1, ms);
}

void LChildProcess::Reap() {
  int status = 0;
  pid_t got = 0;
  do got = ::waitpid(id_, &status, 0);
  while (got < 0 && errno == EINTR);
  exitStatus_ = got == id_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  id_ = -1;
}

LProcessResult LChildProcess::Wait(LProcessInterface& process) {
  if (!IsRunning()) return lprDone;
  LSignalObject ended;
  const pid_t child = id_;
  std::thread waiter([&ended, child] {
    siginfo_t info{};
    while (::waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
    ended.Signal();
  });
  const bool stopped = process.ProcessWaitSignal(ended, kWaitForever) == lpwStopped;
  if (stopped) ::kill(child, SIGKILL);
  waiter.join();
  Reap();
  return stopped ? lprStopped : lprDone;
}

void LChildProcess::Kill() {
  toChild_.Close();
  fromChild_.Close();
  if (!IsRunning()) return;
  ::kill(id_, SIGKILL);
  Reap();
}

LProcessResult RunProgram(LProcessInterface& process, const std::vector<std::string>& arguments) {
  LChildProcess child;
  if (!child.Start(arguments)) return lprFailed;
  const LProcessResult result = child.Wait(process);
  if (result != lprDone) return result;
  return child.ExitStatus() == 0 ? lprDone : lprFailed;
}
