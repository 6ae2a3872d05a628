#include <gtest/gtest.h>

#include <cstdlib>

#include "QtFixture.h"
#include "foundation/LThreadRole.h"

int main(int argumentCount, char** arguments) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  tlThreadRole = LThreadRole::Main;
  ::testing::InitGoogleTest(&argumentCount, arguments);
  const int failed = RUN_ALL_TESTS();
  QtTest::End();
  return failed;
}
