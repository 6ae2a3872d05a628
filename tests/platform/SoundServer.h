// A sound server of a test's own: a child process on private folders, started and ended within bounds of time. While it
// lives, the environment points clients of this process at it. Without a program to start, servers are merely hidden.
#pragma once
#include <sys/types.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

class SoundServer {
 public:
  SoundServer();  // private folders, no server
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  // "" once `ready` holds, else why it does not run.
  std::string Start(const std::vector<std::string>& command, const std::function<bool()>& ready);
  std::string StartJack();
  std::string StartPulse();  // sinks "Rohr" (a pipe, four channels) and "Vierkanal" (default, four channels)
  void Kill();               // SIGKILL, and waits for the end
  const std::string& Folder() const { return folder_; }
  std::string PipePath() const { return folder_ + "/pipe"; }

 private:
  void End(int signal);
  void SetVariable(const char* name, const std::string& value);

  std::string folder_;
  std::map<std::string, std::optional<std::string>> environment_;  // as it was
  pid_t process_ = -1;
  std::string jackName_;
  int jackLock_ = -1;
};

bool WaitFor(const std::function<bool()>& condition, int limitMs, int everyMs = 5);
