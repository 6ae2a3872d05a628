#include <gtest/gtest.h>

#include <csignal>

#include "foundation/LThreadRole.h"

int main(int argc, char** argv) {
  tlThreadRole = LThreadRole::Main;
  // As the program: a closed pipe and a file grown too large are failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
