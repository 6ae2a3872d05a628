#include "effects/LSPEcho.h"

#include <gtest/gtest.h>

#include "support/TestSource.h"

TEST(LSPEcho, RepeatsByItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("delay/echo/")) {
    LSoundSource input(NewTestSource(*data));
    LSPEcho echo;
    echo.SetParameterByIndex(LSPEcho::Gain, data->Int("gain"));
    echo.SetParameterByIndex(LSPEcho::Time, data->Int("ms"));
    LSoundSource source = echo.OpenSource(input);
    EXPECT_EQ(RunSourceScript(*data, source).samples, data->Out("samples")) << data->id;
  }
}
