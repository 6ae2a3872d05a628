#include "WindowRig.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "audiofile/LWaveFile.h"
#include "foundation/LText.h"

namespace fs = std::filesystem;

namespace {

constexpr double kServerSeconds = 10, kPollSeconds = 0.02;

bool HasTool(const char* name) { return std::system(LText::Format("command -v %s >/dev/null", name).c_str()) == 0; }

// Asks every few milliseconds until the condition holds; false after the time limit.
template <class Condition>
bool WaitUntil(Condition condition, double seconds) {
  const int steps = int(seconds / kPollSeconds) + 1;
  for (int i = 0; i < steps; ++i) {
    if (condition()) return true;
    Sleep(kPollSeconds);
  }
  return false;
}

}  // namespace

void Sleep(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

Child::Child(const std::vector<std::string>& command, const std::vector<std::string>& environment) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& part : command) arguments.push_back(const_cast<char*>(part.c_str()));
  arguments.push_back(nullptr);
  pid_ = ::fork();
  if (pid_ != 0) return;
  for (const std::string& entry : environment) {
    const std::size_t equals = entry.find('=');
    if (equals == std::string::npos)
      ::unsetenv(entry.c_str());
    else
      ::setenv(entry.substr(0, equals).c_str(), entry.c_str() + equals + 1, 1);
  }
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

void Child::Kill(int signal) {
  if (pid_ <= 0) return;
  ::kill(pid_, signal);
  if (signal == SIGKILL) Wait(5);
}

int Child::Wait(double seconds) {
  if (pid_ <= 0) return -1;
  int status = 0;
  if (!WaitUntil([&] { return ::waitpid(pid_, &status, WNOHANG) == pid_; }, seconds)) return -1;
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void WindowTest::SetUp() {
  for (const char* tool : {"Xvfb", "xdotool"})
    if (!HasTool(tool)) GTEST_SKIP() << tool << " is not installed";
  std::string name = (fs::temp_directory_path() / "tavi_window_XXXXXX").string();
  folder_ = ::mkdtemp(name.data()) ? name : "";
  ASSERT_FALSE(folder_.empty());
  // The server takes a free number and tells it when it is ready.
  int told[2];
  ASSERT_EQ(::pipe(told), 0);
  server_ = ::fork();
  if (server_ == 0) {
    ::close(told[0]);  // first: it may be 3 itself
    ::dup2(told[1], 3);
    const int nothing = ::open("/dev/null", O_WRONLY);
    ::dup2(nothing, 2);
    // Without -noreset the server starts anew when its last client is killed, and refuses the next one meanwhile.
    ::execlp("Xvfb", "Xvfb", "-noreset", "-displayfd", "3", "-screen", "0", "2560x1440x24", "-nolisten", "tcp",
             nullptr);
    ::_exit(127);
  }
  ::close(told[1]);
  ::fcntl(told[0], F_SETFL, O_NONBLOCK);
  std::string number;
  WaitUntil(
      [&] {
        char byte;
        while (::read(told[0], &byte, 1) == 1) number += byte;
        return number.find('\n') != std::string::npos;
      },
      kServerSeconds);
  ::close(told[0]);
  ASSERT_NE(number.find('\n'), std::string::npos) << "Xvfb does not start";
  display_ = ":" + number.substr(0, number.find('\n'));
}

void WindowTest::TearDown() {
  if (server_ > 0) {
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
  }
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

std::vector<std::string> WindowTest::Program(const std::vector<std::string>& arguments) const {
  std::vector<std::string> command{TAVI_PROGRAM, "--device", "null", "--data", folder_};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

std::string WindowTest::Track(const std::string& name, double hz, int seconds) const {
  std::string path = folder_ + "/" + name;
  LSoundSink sink = LWaveFile::OpenSinkPCM(path, 44100, 2, 16, 0);
  std::vector<int> block(2 * 4410);
  for (int at = 0; at < seconds * 44100; at += 4410) {
    for (int i = 0; i < 4410; ++i)
      block[2 * i] = block[2 * i + 1] = int(200000 * std::sin(2 * M_PI * hz * (at + i) / 44100));
    sink.Write(block.data(), 4410);
  }
  return path;
}

std::string WindowTest::Recording() const {
  std::string newest;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder_ + "/music/Tavi", ignored))
    newest = std::max(newest, entry.path().string());
  return newest;
}

std::string WindowTest::Shell(const std::string& command) const {
  std::string output;
  FILE* pipe = ::popen(("DISPLAY=" + display_ + " " + command + " 2>/dev/null").c_str(), "r");
  if (!pipe) return output;
  char buffer[4096];
  while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, got);
  ::pclose(pipe);
  while (!output.empty() && output.back() == '\n') output.pop_back();
  return output;
}

std::string WindowTest::FindWindow(const Child& program, double seconds) const {
  std::string found;
  const std::string search = LText::Format("xdotool search --onlyvisible --pid %d --name Tavi", int(program.Pid()));
  WaitUntil([&] { return !(found = Shell(search)).empty(); }, seconds);
  found = found.substr(0, found.find('\n'));
  if (!found.empty()) Shell("xdotool windowfocus --sync " + found);
  return found;
}

std::string WindowTest::Keep(const std::string& name) const {
  fs::create_directories(TAVI_ARTEFACTS);
  return std::string(TAVI_ARTEFACTS) + "/" + name;
}

double WindowTest::DifferentColours(const std::string& picture) const {
  return std::atof(Shell("identify -format %k '" + picture + "'").c_str());
}

double WindowTest::DurationByFfprobe(const std::string& path) const {
  return std::atof(Shell("ffprobe -v error -show_entries format=duration -of csv=p=0 '" + path + "'").c_str());
}
