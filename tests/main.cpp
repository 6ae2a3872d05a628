#include <gtest/gtest.h>

#include "foundation/LThreadRole.h"

int main(int argc, char** argv) {
  tlThreadRole = LThreadRole::Main;
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
