#include "platform/null/LNullBackend.h"

#include <gtest/gtest.h>

#include <chrono>

#include "Ramp.h"
#include "SoundServer.h"

TEST(NullBackend, RendersInRealTimeAndStopsAtOnce) {
  LNullBackend backend;
  RampRenderer ramp(0);
  const auto stream = backend.OpenOutput(kDefaultDevice, {}, ramp);
  const auto start = std::chrono::steady_clock::now();
  const auto seconds = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
  ASSERT_TRUE(stream->Start());
  ASSERT_TRUE(WaitFor([&] { return ramp.Frames() >= 22050; }, 5000));
  EXPECT_GT(seconds(), 0.4);
  EXPECT_LT(seconds(), 1.5);
  const double before = seconds();
  stream->Stop();
  EXPECT_LT(seconds() - before, 0.2);
  const int atStop = ramp.Frames();
  EXPECT_FALSE(WaitFor([&] { return ramp.Frames() != atStop; }, 50));
}
