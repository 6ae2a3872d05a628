// The real program in its window, on an X server of the test's own: started, touched with xdotool, looked at, ended.
// Units    seconds
#pragma once
#include <gtest/gtest.h>
#include <sys/types.h>

#include <string>
#include <vector>

// A child process; killed if it is still there at the end.
class Child {
 public:
  explicit Child(const std::vector<std::string>& command, const std::vector<std::string>& environment = {});
  ~Child() { Kill(9); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  void Kill(int signal);
  int Wait(double seconds);  // exit status, 128 + signal, or -1: it still runs
  pid_t Pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
};

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  std::vector<std::string> Program(const std::vector<std::string>& arguments) const;  // with the null device
  std::string Track(const std::string& name, double hz, int seconds) const;
  std::string Recording() const;                        // the newest of the folder, or ""
  std::string Shell(const std::string& command) const;  // its output, on the test's display
  std::string FindWindow(const Child& program, double seconds) const;
  void Key(const std::string& keys) const { Shell("xdotool key " + keys); }
  std::string Keep(const std::string& name) const;  // where that picture is kept
  double DifferentColours(const std::string& picture) const;
  double DurationByFfprobe(const std::string& path) const;

  std::string folder_, display_;
  pid_t server_ = -1;
};

void Sleep(double seconds);
