#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "effects/LEffectTypes.h"
#include "effects/LSPChorus.h"
#include "effects/LSPDoppler.h"
#include "effects/LSPFlanger.h"
#include "effects/LSPReverb3.h"
#include "effects/LSPVibrato.h"
#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

void ExpectWithin(const EngineCase& data, LSoundSource source) {
  const ScriptResult result = RunSourceScript(data, source);
  const std::vector<int> wanted = data.Out("samples");
  ASSERT_EQ(result.samples.size(), wanted.size()) << data.id;
  for (std::size_t i = 0; i < wanted.size(); ++i)
    ASSERT_NEAR(result.samples[i], wanted[i], data.Tolerance("samples").second) << data.id << " at " << i;
  if (data.HasOut("ints")) {
    EXPECT_EQ(result.ints, data.Out("ints")) << data.id;
  }
}

}  // namespace

TEST(LSPFlanger, MixesInWhatItsLawSays) {
  const EngineCase& data = Engine::Case("delay/flanger/default");
  LSoundSource input(NewTestSource(data));
  LSPFlanger flanger;
  flanger.SetParameterByIndex(LSPFlanger::Delay, data.Int("ms"));
  flanger.SetParameterByIndex(LSPFlanger::Depth, data.Int("depth"));
  flanger.SetParameterByIndex(LSPFlanger::Gain, data.Int("gain"));
  flanger.SetParameterByIndex(LSPFlanger::Frequency, int(data.Decimal("hz") * 1000));
  LSoundSource source = flanger.OpenSource(input);
  EXPECT_EQ(source.GetPeak(), 786408);  // 524272 * 1.5
  ExpectWithin(data, source);
}

TEST(LSPChorus, AddsTwoVoicesByItsLaw) {
  const EngineCase& data = Engine::Case("delay/chorus/default");
  LSoundSource input(NewTestSource(data));
  LSPChorus chorus;
  chorus.SetParameterByIndex(LSPChorus::Delay, data.Int("ms"));
  chorus.SetParameterByIndex(LSPChorus::Depth, data.Int("depth"));
  chorus.SetParameterByIndex(LSPChorus::Gain, data.Int("gain"));
  chorus.SetParameterByIndex(LSPChorus::Frequency, int(data.Decimal("hz") * 1000));
  ExpectWithin(data, chorus.OpenSource(input));
}

TEST(LSPVibrato, BendsByItsLaw) {
  const EngineCase& data = Engine::Case("delay/vibrato_core/a");
  LSoundSource input(NewTestSource(data));
  const LSwing swing(data.Int("centre"), data.Int("swing"), LSwing::StepOf(data.Decimal("hz"), 44100));
  ExpectWithin(data, LSoundSource::Make<LSRCVibrato>(input, swing));
}

TEST(LSPDoppler, PassesByItsLaw) {
  for (const EngineCase* data : Engine::CasesBelow("delay/doppler/")) {
    LSoundSource input(NewTestSource(*data));
    LSPDoppler doppler;
    doppler.SetParameterByIndex(LSPDoppler::Horizontal, data->Int("horizontal"));
    doppler.SetParameterByIndex(LSPDoppler::Vertical, data->Int("vertical"));
    doppler.SetParameterByIndex(LSPDoppler::Speed, data->Int("speed"));
    doppler.SetParameterByIndex(LSPDoppler::ChangeVolume, data->Int("volume"));
    ExpectWithin(*data, doppler.OpenSource(input));
  }
}

TEST(LSPDoppler, OpensWhatNeverEnds) {
  LSoundSource input = LSoundSource::Make<LSilenceSourceBase>(44100, static_cast<unsigned char>(2), kEndless);
  LSoundSource source = LSPDoppler().OpenSource(input);
  EXPECT_EQ(source.GetEndSample(), kEndless);
  std::vector<int> out;
  ReadInto(out, source, 100);
  EXPECT_EQ(out, std::vector<int>(200));
}

TEST(Delays, PassToTheBitWithoutGain) {
  std::vector<int> noise = Engine::Noise(5, kPeak16, 4000);
  noise[7] = INT_MAX, noise[8] = INT_MIN;
  for (const auto& [type, gain] :
       {std::pair(LSPChorus::kType, int(LSPChorus::Gain)), {LSPFlanger::kType, int(LSPFlanger::Gain)}}) {
    LSoundSource input(new TestSource(noise, 44100, 2));
    const std::unique_ptr<LEffect> effect = FindEffectType(type).create();
    effect->SetParameterByIndex(gain, 0);
    LSoundSource source = effect->OpenSource(input);
    std::vector<int> out;
    ReadInto(out, source, 2000);
    EXPECT_EQ(out, noise) << type;
    EXPECT_EQ(source.GetPeak(), input.GetPeak());
  }
}

// What holds for all of them: any rate, channels and length, values and samples at their ends, blocks of any size, and
// nothing left of the past after a seek.
TEST(Delays, GiveTheSameHoweverTheyAreRead) {
  constexpr int kFrames = 3000;
  for (const int type : {LSPChorus::kType, LSPFlanger::kType, LSPReverb3::kType, LSPVibrato::kType, LSPDoppler::kType})
    for (const int value : {INT_MIN, INT_MAX})
      for (const auto& [rate, channels] : {std::pair(44100, 2), {44100, 1}, {48000, 6}, {8000, 2}, {1, 1}}) {
        SCOPED_TRACE(testing::Message() << type << " at " << rate << " with " << value);
        const std::unique_ptr<LEffect> effect = FindEffectType(type).create();
        for (int i = 0; i < effect->GetNumParameters(); ++i) effect->LoadValue(i, value);
        std::vector<int> noise = Engine::Noise(6, kPeak16, std::size_t(kFrames) * std::size_t(channels));
        std::fill_n(noise.begin(), 600, INT_MIN);
        std::fill_n(noise.begin() + 600, 600, INT_MAX);
        LSoundSource input(new TestSource(noise, rate, static_cast<unsigned char>(channels)));
        LSoundSource source = effect->OpenSource(input);

        std::vector<int> whole(noise.size()), cut(noise.size());
        source.Read(whole.data(), 0);
        source.Read(whole.data(), kFrames);
        EXPECT_EQ(source.GetPositionSample(), kFrames);
        source.Seek(kFrames);
        source.Read(cut.data(), kFrames);
        if (type != LSPDoppler::kType) {  // which plays on where it is slow
          EXPECT_EQ(cut, std::vector<int>(cut.size()));
        }
        input.Seek(0);
        source = effect->OpenSource(input);
        const AllocationGuard guard;
        for (int at = 0, part = 1; at < kFrames; at += part, part = std::min(part * 10, kFrames - at))
          source.Read(&cut[std::size_t(at * channels)], part);
        EXPECT_EQ(guard.Count(), 0);
        EXPECT_EQ(cut, whole);
      }
}
