#include "platform/resample/LResampledOutput.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

extern "C" {
#include <libavutil/mem.h>
}

#include "support/AllocationGuard.h"

namespace {

constexpr double kAmplitude = 0x40000000;

// 1000 Hz and half as loud 8000 Hz on alternate channels.
double Tone(int channel, double seconds) {
  const double hz = channel % 2 ? 8000 : 1000;
  return kAmplitude / (1 + channel % 2) * std::sin(2 * std::numbers::pi * hz * seconds);
}

struct Tones final : LSoundRenderer {
  explicit Tones(int sampleRate) : rate(sampleRate) {}
  void RenderData(int* out, int frames, int channels) override {
    largest = std::max(largest, frames);
    for (int i = 0; i < frames; ++i, ++frame)
      for (int channel = 0; channel < channels; ++channel)
        *out++ = int(std::lround(Tone(channel, double(frame) / rate)));
  }
  int rate, frame = 0, largest = 0;
};

struct Case {
  int from, to, channels;
};

// How late the tone of channel 0 is, from its phase over whole periods; between 0 and one period of 1 ms.
double DelaySeconds(const std::vector<int>& out, int rate, int channels) {
  double sine = 0, cosine = 0;
  for (int frame = rate / 10; frame < rate / 2; ++frame) {
    const double angle = 2 * std::numbers::pi * 1000 * frame / rate;
    sine += out[std::size_t(frame * channels)] * std::sin(angle);
    cosine += out[std::size_t(frame * channels)] * std::cos(angle);
  }
  const double periods = -std::atan2(cosine, sine) / (2 * std::numbers::pi);
  return (periods < 0 ? periods + 1 : periods) / 1000;
}

// The converted tones are the same tones at their levels, later by the delay reported (whole frames of the source).
TEST(ResampledOutput, ToneKeepsLevelPitchAndIsLateByTheReportedDelay) {
  for (const Case& data :
       {Case{44100, 48000, 2}, Case{48000, 44100, 4}, Case{44100, 96000, 1}, Case{96000, 44100, 10}}) {
    Tones tones(data.from);
    LResampledOutput output(tones, data.from, data.to, data.channels);
    ASSERT_TRUE(output.IsOk());
    std::vector<int> out(std::size_t(data.to / 2) * std::size_t(data.channels));
    int allocations = 0;
    av_max_alloc(1);  // from here on the library is refused any memory
    for (int at = 0, block = 1; at < data.to / 2;
         at += block, block = std::min({block * 3 + 1, 512, data.to / 2 - at})) {
      const int before = tones.frame;
      const AllocationGuard guard;
      output.RenderData(&out[std::size_t(at) * std::size_t(data.channels)], block, data.channels);
      allocations += guard.Count();
      EXPECT_LE(tones.frame - before, output.SourceSliceFrames(block) + LResampledOutput::kChunkFrames);
    }
    av_max_alloc(0x7fffffff);
    EXPECT_EQ(allocations, 0);
    EXPECT_GT(output.DelayFrames(), 0);
    const double delay = DelaySeconds(out, data.to, data.channels);
    EXPECT_NEAR(delay * data.from, output.DelayFrames(), 1);
    double worst = 0;
    for (int frame = data.to / 100; frame < data.to / 2; ++frame)
      for (int channel = 0; channel < data.channels; ++channel) {
        const double expected = Tone(channel, double(frame) / data.to - delay);
        worst = std::max(worst, std::abs(out[std::size_t(frame * data.channels + channel)] - expected));
      }
    EXPECT_LT(worst, kAmplitude / 2000) << data.from << " to " << data.to;
  }
}

TEST(ResampledOutput, DiscardForgetsWhatWasTaken) {
  Tones tones(44100);
  LResampledOutput output(tones, 44100, 48000, 1);
  std::vector<int> out(1000);
  output.RenderData(out.data(), 1000, 1);
  tones.frame = 0;
  output.Discard();
  output.RenderData(out.data(), 1000, 1);
  // Of the earlier tone half a period would stand here; of the new one the filter's forerun alone.
  for (int i = 0; i < 25; ++i) EXPECT_LT(std::abs(out[std::size_t(i)]), kAmplitude / 20) << i;
}

TEST(ResampledOutput, ImpossibleFormatsGiveSilence) {
  Tones tones(44100);
  for (const Case& data : {Case{44100, 0, 2}, Case{-1, 44100, 2}, Case{44100, 48000, 0}, Case{44100, 2000000000, 2}}) {
    LResampledOutput output(tones, data.from, data.to, data.channels);
    EXPECT_FALSE(output.IsOk());
    int out[4] = {1, 1, 1, 1};
    output.RenderData(out, 2, 2);
    EXPECT_EQ(out[0] | out[1] | out[2] | out[3], 0);
  }
}

}  // namespace
