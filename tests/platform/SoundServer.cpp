#include "SoundServer.h"

#include <fcntl.h>
#include <jack/jack.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/pulse/LPulseBackend.h"

namespace {

constexpr int kReadyLimitMs = 5000, kEndLimitMs = 2000;
constexpr const char* kQuad = "front-left,front-right,rear-left,rear-right";

// JACK keeps the names of servers in a table of eight for the whole machine, and one that was killed keeps its place
// until its name is used again. So there are four names, each held by a lock on a file.
std::string TakeJackName(int& lock) {
  for (int number = 0; number < 4; ++number) {
    const std::string name = "tavi_test_" + std::to_string(number);
    lock =
        ::open((std::filesystem::temp_directory_path() / (name + ".lock")).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) == 0) return name;
    if (lock >= 0) ::close(lock);
  }
  lock = -1;
  return "tavi_test";
}

bool JackAnswers() {
  jack_set_error_function([](const char*) {});
  jack_client_t* client = jack_client_open("probe", JackNoStartServer, nullptr);
  if (client) jack_client_close(client);
  return client != nullptr;
}

}  // namespace

bool WaitFor(const std::function<bool()>& condition, int limitMs, int everyMs) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(everyMs));
  }
  return true;
}

SoundServer::SoundServer() {
  std::string path = (std::filesystem::temp_directory_path() / "tavi_server_XXXXXX").string();
  folder_ = ::mkdtemp(path.data()) ? path : "/nonexistent";
  signal(SIGPIPE, SIG_IGN);
  for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "PULSE_RUNTIME_PATH"})
    SetVariable(name, folder_);
  SetVariable("PULSE_SERVER", "unix:" + folder_ + "/native");
  SetVariable("JACK_DEFAULT_SERVER", "tavi_test_none");
  SetVariable("JACK_NO_AUDIO_RESERVATION", "1");
}

SoundServer::~SoundServer() {
  End(SIGTERM);
  if (jackLock_ >= 0) ::close(jackLock_);
  for (const auto& [name, value] : environment_)
    if (value)
      ::setenv(name.c_str(), value->c_str(), 1);
    else
      ::unsetenv(name.c_str());
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void SoundServer::SetVariable(const char* name, const std::string& value) {
  const char* old = std::getenv(name);
  environment_.emplace(name, old ? std::optional<std::string>(old) : std::nullopt);
  ::setenv(name, value.c_str(), 1);
}

std::string SoundServer::Start(const std::vector<std::string>& command, const std::function<bool()>& ready) {
  // A test program that dies takes its server along.
  std::vector<std::string> words{"setpriv", "--pdeathsig", "KILL"};
  words.insert(words.end(), command.begin(), command.end());
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const std::string log = folder_ + "/log";
  for (const int fd : {1, 2})
    posix_spawn_file_actions_addopen(&actions, fd, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  const int error = ::posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    process_ = -1;
    return command[0] + " cannot be started";
  }
  return WaitFor(ready, kReadyLimitMs) ? "" : command[0] + " does not answer";
}

std::string SoundServer::StartJack() {
  if (jackName_.empty()) {
    jackName_ = TakeJackName(jackLock_);
    ::setenv("JACK_DEFAULT_SERVER", jackName_.c_str(), 1);
  }
  // Synchronous: a period waits for a client that a busy machine keeps from running, instead of losing what it played.
  return Start({"jackd", "-n", jackName_, "--no-realtime", "--sync", "-t", "3000", "-d", "dummy", "-r", "44100", "-p",
                "256", "-P", "4"},
               JackAnswers);
}

std::string SoundServer::StartPulse() {
  std::ofstream script(folder_ + "/test.pa");
  const std::string quad = std::string(" rate=44100 channels=4 channel_map=") + kQuad;
  script << "load-module module-native-protocol-unix socket=" << folder_ << "/native auth-anonymous=1\n"
         << "load-module module-pipe-sink sink_name=pipe format=s32le file=" << PipePath() << quad
         << " sink_properties=device.description=Rohr\n"
         << "load-module module-null-sink sink_name=quad" << quad << " sink_properties=device.description=Vierkanal\n"
         << "load-module module-null-sink sink_name=quad2" << quad << " sink_properties=device.description=Vierkanal\n"
         << "set-default-sink quad\n";
  script.close();
  return Start({"pulseaudio", "-n", "-F", folder_ + "/test.pa", "--daemonize=no", "--exit-idle-time=-1",
                "--system=false", "--use-pid-file=no"},
               [] { return LPulseBackend().OutputDevices().size() == 3; });
}

void SoundServer::Kill() { End(SIGKILL); }

void SoundServer::End(int signal) {
  if (process_ <= 0) return;
  ::kill(process_, signal);
  if (!WaitFor([&] { return ::waitpid(process_, nullptr, WNOHANG) != 0; }, kEndLimitMs)) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  process_ = -1;
}
