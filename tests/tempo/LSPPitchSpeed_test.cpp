#include "tempo/LSPPitchSpeed.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

LSoundSource Pitched(const std::vector<int>& samples, int channels, double ratio) {
  LSoundSource input(new TestSource(samples, 44100, static_cast<unsigned char>(channels)));
  return LSPPitchSpeed(ratio, true).OpenSource(input);
}

}  // namespace

TEST(LSPPitchSpeed, RunsTheComputedScripts) {
  for (const EngineCase* data : Engine::CasesBelow("speed/pitchspeed/")) {
    LSoundSource input(NewTestSource(*data));
    LSoundSource source = LSPPitchSpeed(data->Decimal("ratio"), data->Int("fast") != 0).OpenSource(input);
    const ScriptResult result = RunSourceScript(*data, source);
    EXPECT_EQ(result.samples, data->Out("samples")) << data->id;
    EXPECT_EQ(result.ints, data->Out("ints")) << data->id;
    EXPECT_EQ(source.GetSampleRate(), 44100) << data->id;
    EXPECT_EQ(source.GetChannels(), 2) << data->id;
  }
}

TEST(LSPPitchSpeed, CountsInFramesAsTheyAreHeard) {
  const std::vector<int> samples = Engine::Noise(21, 300000, 2 * 40000);
  for (const double ratio : {0.92, 1.08, 0.5, 1.5, 1.001}) {
    LSoundSource source = Pitched(samples, 2, ratio);
    // 40000 frames at 44100 Hz last 40000 / 44100 s; the converter makes trunc(44100 / ratio) frames of each second.
    EXPECT_EQ(source.GetEndSample(), int(40000LL * int(44100 / ratio) / 44100)) << ratio;
    std::vector<int> all;
    source.Seek(0);
    for (int at = 0, frames = 1; at < 20000; at += frames, frames = frames * 2 % 3001) {
      ASSERT_EQ(source.GetPositionSample(), at) << ratio;
      ReadInto(all, source, frames);
    }
    for (const int at : {17, 5000, 19000}) {
      source.Seek(at);
      ASSERT_EQ(source.GetPositionSample(), at) << ratio;
      std::vector<int> part;
      ReadInto(part, source, 800);
      EXPECT_TRUE(std::equal(part.begin(), part.end(), all.begin() + 2 * at)) << ratio << " from " << at;
    }
  }
}

TEST(LSPPitchSpeed, MovesATone) {
  for (const double ratio : {0.92, 1.08}) {
    std::vector<int> samples(20000);
    for (std::size_t i = 0; i < samples.size(); ++i)
      samples[i] = int(400000 * std::sin(2 * M_PI * 1000 * double(i) / 44100));
    LSoundSource source = Pitched(samples, 1, ratio);
    std::vector<int> out;
    source.Seek(0);
    ReadInto(out, source, 12000);
    const double step = 2 * M_PI * 1000 / int(44100 / ratio);  // 1000 Hz in the converter's frames
    for (int i = 1000; i < 12000; ++i)
      ASSERT_NEAR(out[std::size_t(i)], 400000 * std::sin(step * i), 1500) << ratio << " " << i;
  }
}

TEST(LSPPitchSpeed, OddRatiosAreHeld) {
  const double none = std::nan("");
  for (const double ratio : {0.1, 0.05, 0.0, -3.0, none}) EXPECT_EQ(PitchedRate(44100, ratio), 441000) << ratio;
  EXPECT_EQ(PitchedRate(2000000000, 0), 2147483647);
  LSoundSource input(new TestSource(Engine::Noise(4, 1000, 100), 44100, 1)), failed(lseCannotOpen);
  EXPECT_EQ(LSPPitchSpeed(50000).OpenSource(input).GetError(), lseInputError);
  EXPECT_EQ(LSPPitchSpeed(1.1).OpenSource(failed).GetError(), lseInputError);
  EXPECT_TRUE(LSPPitchSpeed(1).OpenSource(input).IsOk());
}

TEST(LSPPitchSpeed, ReadsWithoutAllocating) {
  LSoundSource source = Pitched(Engine::Noise(5, 300000, 2 * 30000), 2, 1.0777);
  std::vector<int> out(2 * kMaxBlockFrames);
  const AllocationGuard guard;
  for (int i = 0; i < 3; ++i) source.Read(out.data(), kMaxBlockFrames);
  source.Seek(100);
  source.Read(out.data(), kMaxBlockFrames);
  EXPECT_EQ(guard.Count(), 0);
}
