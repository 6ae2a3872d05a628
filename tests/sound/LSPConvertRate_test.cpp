#include "sound/LSPConvertRate.h"

#include <gtest/gtest.h>

#include <sstream>

#include "sound/LSPConvChannels.h"
#include "sound/LSPConvertSourceRateChannels.h"
#include "sound/LSinkConvertRate.h"
#include "support/TestSource.h"

namespace {

class RateTable final : public LConvertRateBase {
 public:
  using LConvertRateBase::LConvertRateBase;
};

class CollectingSink final : public LSoundSinkBase {
 public:
  using LSoundSinkBase::LSoundSinkBase;
  void Write(const int* in, int frames) override { samples.insert(samples.end(), in, in + frames * GetChannels()); }
  void Seek(int frame) override { soughtTo = frame; }
  std::vector<int> samples;
  int soughtTo = -1;
};

// The data keeps the sum of half the taps in 32 bits, where noise at full scale wraps now and then; the converters keep
// it whole. Such a sample is off by 2^31 >> shift, here by one of two steps; all others are equal.
void ExpectEqualButForWraps(const std::vector<int>& got, const std::vector<int>& data, const std::string& id) {
  ASSERT_EQ(got.size(), data.size()) << id;
  std::size_t wraps = 0;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const int difference = std::abs(got[i] - data[i]);
    ASSERT_TRUE(difference == 0 || difference == 1 << 20 || difference == 1 << 16) << id << " at " << i;
    wraps += difference != 0;
  }
  EXPECT_LE(wraps, data.size() / 100) << id;
}

void ExpectScript(const EngineCase& data, LSoundSource source) {
  const ScriptResult result = RunSourceScript(data, source);
  ExpectEqualButForWraps(result.samples, data.Out("samples"), data.id);
  EXPECT_EQ(result.ints, data.HasOut("ints") ? data.Out("ints") : std::vector<int>{}) << data.id;
}

}  // namespace

TEST(LConvertRateBase, BuildsTheComputedTables) {
  for (const EngineCase* data : Engine::CasesBelow("rate/table/")) {
    const RateTable table(data->Int("source"), data->Int("target"), data->Int("taps"), data->Int("wide") != 0,
                          data->Int("approximate") != 0);
    EXPECT_EQ((std::vector<int>{table.Phases(), table.Step()}), data->Out("phases")) << data->id;
    EXPECT_EQ(table.Table(), data->Out("table")) << data->id;
  }
}

TEST(LRateRows, AreTheTableToTheBitHoweverTheyAreReached) {
  for (const auto& [from, to] : {std::pair{44100, 40833}, std::pair{44100, 47934}, std::pair{44100, 48000},
                                 std::pair{48000, 44100}, std::pair{44100, 29989}, std::pair{96000, 6000}}) {
    const RateTable table(from, to, kRateTaps, false, false);
    for (const int stride : {1, 7}) {
      LRateRows rows(table);
      ASSERT_TRUE(rows.IsOk());
      for (long long i = 0; i < table.Phases(); i += stride) {
        const int number = int(i * 1009 % table.Phases());
        const int* wanted = table.Row(int((long long)number * table.Step() % table.Phases()));
        for (int tap = 0; tap < kRateTaps; ++tap)
          ASSERT_EQ(rows.Row(number).Tap(tap), wanted[tap])
              << from << " to " << to << ", row " << number << " tap " << tap;
        ASSERT_EQ(rows.Row(number).taps[kRateTaps], 0);
      }
    }
  }
}

TEST(LRateRows, MemoryThatIsNotThereGivesASilentSourceWithAnError) {
  LSoundSource input(new TestSource(Engine::Noise(3, 300000, 2000), 44100, 2));
  LSoundSource source = LSPConvertRate(2147483647).OpenSource(input);  // 256 GiB of rows
  if (source.IsOk()) GTEST_SKIP() << "this machine has the memory";
  std::vector<int> out(200, 7);
  source.Read(out.data(), 100);
  EXPECT_EQ(out, std::vector<int>(200, 0));
  EXPECT_EQ(source.GetError(), lseDamaged);
}

TEST(LConvertRateBase, FindsApproximateRatios) {
  const EngineCase& data = Engine::Case("rate/phases/approximate");
  const std::vector<int> pairs = data.In("pairs");
  std::vector<int> ratios;
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    const RateTable table(pairs[i], pairs[i + 1], 1, false, true);
    ratios.insert(ratios.end(), {table.Phases(), table.Step()});
  }
  EXPECT_EQ(ratios, data.Out("LM"));
}

TEST(LSPConvertRate, RunsTheComputedScripts) {
  for (const EngineCase* data : Engine::CasesBelow("rate/convert/")) {
    LSoundSource input(NewTestSource(*data));
    const bool twoStage = data->id == "rate/convert/two_stage";
    ExpectScript(*data, twoStage
                            ? LSPConvertRate(data->Int("target")).OpenSource(input)
                            : LSoundSource::Make<LSRCConvertRate>(input, data->Int("target"), data->Int("wide") != 0,
                                                                  data->Int("approximate") != 0));
    if (!data->HasOut("shift")) continue;
    LSRCConvertRate converter(LSoundSource(NewTestSource(*data)), data->Int("target"), false, false);
    std::vector<int> out(20);
    converter.Read(out.data(), 10);
    EXPECT_EQ(converter.BlockShift(), data->Out("shift")[0]) << data->id;
  }
}

TEST(LSPConvertRate, AnyNumberOfChannelsGivesWhatStereoGives) {
  const std::vector<int> mono = Engine::Noise(5, 524272, 3000);
  std::vector<int> wanted;
  for (const int channels : {2, 1, 5}) {
    std::vector<int> samples;
    for (const int sample : mono) samples.insert(samples.end(), std::size_t(channels), sample);
    LSoundSource source(new TestSource(samples, 44100, static_cast<unsigned char>(channels)));
    source = LSPConvertRate(48000).OpenSource(source);
    std::vector<int> all, first;
    ReadInto(all, source, 2000);
    for (std::size_t i = 0; i < all.size(); i += std::size_t(channels)) {
      first.push_back(all[i]);
      for (std::size_t c = 1; c < std::size_t(channels); ++c) ASSERT_EQ(all[i + c], all[i]) << i << " of " << channels;
    }
    if (channels == 2) wanted = first;
    EXPECT_EQ(first, wanted) << channels;
  }
}

TEST(LSPConvertRate, ARoundedSampleBeyond16BitsIsExact) {
  // A peak of 65535 is halved to 32768, which a 16-bit sample cannot hold; 65534 is halved to 32767.
  const auto converted = [](int level) {
    std::vector<int> samples(2000, 0);
    for (std::size_t i = 400; i < 500; ++i) samples[i] = level;
    LSoundSource source(new TestSource(samples, 44100, 2));
    source = LSPConvertRate(48000).OpenSource(source);
    std::vector<int> out;
    ReadInto(out, source, 1000);
    return out;
  };
  const std::vector<int> beyond = converted(65535), within = converted(65534);
  for (std::size_t i = 0; i < beyond.size(); ++i) ASSERT_NEAR(beyond[i], within[i], 4) << i;
}

TEST(LSPConvertRate, SeekAfterALoudBlockIsLikeSeekInAFreshOne) {
  std::vector<int> samples = Engine::Noise(9, 0x1fffff, 2 * 9000);
  const std::vector<int> quiet = Engine::Noise(10, 200, 2 * 9000);
  samples.insert(samples.end(), quiet.begin(), quiet.end());
  std::vector<int> heard, wanted, dropped;
  for (std::vector<int>* out : {&heard, &wanted}) {
    LSoundSource source(new TestSource(samples, 44100, 2, kPeakHeadroom));
    source = LSPConvertRate(48000).OpenSource(source);
    if (out == &heard) ReadInto(dropped, source, 9000);
    source.Seek(12000);
    EXPECT_EQ(source.GetPositionSample(), 12000);
    ReadInto(*out, source, 3000);
  }
  EXPECT_EQ(heard, wanted);
}

TEST(LSPConvertRate, NegativePositionsAreSilenceBeforeTheSameSignal) {
  const std::vector<int> samples = Engine::Noise(11, 300000, 2 * 2000);
  for (const int rate : {48000, 32000}) {
    LSoundSource fromZero(new TestSource(samples, 44100, 2)), before(new TestSource(samples, 44100, 2));
    fromZero = LSPConvertRate(rate).OpenSource(fromZero);
    before = LSPConvertRate(rate).OpenSource(before);
    fromZero.Seek(0);
    before.Seek(-500);
    EXPECT_EQ(before.GetPositionSample(), -500);
    std::vector<int> wanted, heard;
    ReadInto(wanted, fromZero, 600);
    ReadInto(heard, before, 1100);
    EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), heard.begin() + 2 * 500)) << rate;
    EXPECT_EQ(std::count(heard.begin(), heard.begin() + 2 * 400, 0), 2 * 400);
  }
}

TEST(LSPConvertRate, OpensWhatIsNeededOnly) {
  LSoundSource same(new TestSource({}, 44100, 2)), failed(lseCannotOpen);
  EXPECT_EQ(&*LSPConvertRate(44100).OpenSource(same), &*same);
  EXPECT_EQ(&*LSPConvertRate(48000).OpenSource(failed), &*failed);
  const LSoundSource bad = LSPConvertRate(0).OpenSource(same);
  EXPECT_EQ(bad.GetError(), lseDamaged);
  EXPECT_EQ(bad.GetSampleRate(), 44100);
  EXPECT_EQ(LSPConvertRate(48000).OpenSource(same).GetPeak(), 2 * kPeak16);
  LSoundSource loud(new TestSource({}, 44100, 2, kPeakHeadroom));
  EXPECT_EQ(LSPConvertRate(48000).OpenSource(loud).GetPeak(), kPeakHeadroom);
}

TEST(LSinkConvertRate, WritesTheComputedSamples) {
  for (const EngineCase* data : Engine::CasesBelow("rate/sink/")) {
    const std::vector<int> samples = data->In("source");
    auto* collecting = new CollectingSink(data->Int("inner_rate"), static_cast<unsigned char>(data->Int("channels")));
    const LSoundSink inner(collecting);
    {
      LSinkConvertRateBase sink(inner, data->Int("writer_rate"), data->Int("wide") != 0, data->Int("approximate") != 0);
      std::stringstream writes(data->Text("writes"));
      const int* at = samples.data();
      for (int frames; writes >> frames; at += frames * sink.GetChannels()) sink.Write(at, frames);
      ExpectEqualButForWraps(collecting->samples, data->Out("samples"), data->id);
      EXPECT_EQ(sink.GetPositionSample(), 1500);
    }
    // Seven frames more come out at the end.
    const auto more = collecting->samples.size() - data->Out("samples").size();
    EXPECT_NEAR(double(more) / 2, 7.0 * data->Int("inner_rate") / data->Int("writer_rate"), 1.01) << data->id;
  }
}

TEST(LSinkConvertRate, LongStepsBigWritesAndSeeks) {
  auto* collecting = new CollectingSink(1000, 1);
  LSoundSink inner(collecting);
  LSoundSink sink = LSinkConvertRate::OpenSink(inner, 48000, false);  // 48 frames a step, more than the filter holds
  const std::vector<int> constant(48000, 0);
  sink.Write(constant.data(), 48000);
  EXPECT_NEAR(int(collecting->samples.size()), 1000, 1);
  sink.Seek(24000);
  EXPECT_EQ(collecting->soughtTo, 500);
  EXPECT_EQ(sink.GetPositionSample(), 24000);
  EXPECT_EQ(&*LSinkConvertRate::OpenSink(inner, 1000, false), &*inner);
}

TEST(LSPConvChannels, ConvertsAsComputed) {
  for (const EngineCase* data : Engine::CasesBelow("rate/channels/")) {
    LSoundSource input(NewTestSource(*data));
    ExpectScript(*data, LSPConvChannels(static_cast<unsigned char>(data->Int("target"))).OpenSource(input));
  }
  const EngineCase& both = Engine::Case("rate/both/22050_1_to_44100_2");
  LSoundSource source(NewTestSource(both));
  LSPConvertSourceRateChannels(44100, 2, source);
  EXPECT_EQ(source.GetChannels(), 2);
  ExpectScript(both, source);
}
