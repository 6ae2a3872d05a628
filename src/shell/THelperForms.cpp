#include "shell/THelperForms.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

extern char** environ;

namespace {

// Runs a program without arguments and waits for its end.
void RunAndWait(const std::string& program) {
  std::string name = program;
  char* arguments[] = {name.data(), nullptr};
  pid_t child = 0;
  if (::posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0) return;
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::optional<int> RunHelperForm(const std::vector<std::string>& arguments) {
  if (arguments.size() > 1 && arguments[0] == "-exe") {
    RunAndWait(arguments[1]);
    return 0;
  }
  if (arguments.size() > 1 && arguments[0] == "-elevated") return 1;  // nothing here ever elevates
  if (!arguments.empty() && arguments[0] == "-installer") return 1;   // there is none
  return std::nullopt;
}
