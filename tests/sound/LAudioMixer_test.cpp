#include "sound/LAudioMixer.h"

#include <gtest/gtest.h>

#include <map>

#include "sound/LFixedPoint.h"
#include "support/TestSource.h"

namespace {

// The words of a mixer's script, on a mixer and its sources by name.
class MixerScript {
 public:
  explicit MixerScript(const EngineCase& data) : data_(data), mixer_(data.Int("end_rule") != 0) {}

  ScriptResult Run() {
    for (const EngineStep& step : data_.Steps())
      if (!Edit(step) && !RunSourceStep(step, mix_, result_)) ADD_FAILURE() << step.word;
    return result_;
  }

 private:
  bool Edit(const EngineStep& step) {
    if (step.word == "open")
      mix_ = mixer_.OpenSource();
    else if (step.word == "add")
      mixer_.AddSource(Source(step.arguments.at(1)), step.Int(0));
    else if (step.word == "desig")
      mixer_.AddChannelDesignation(step.Int(0), step.Int(1), step.Int(2));
    else if (step.word == "vol")
      mixer_.SetChannelDesignationVolume(step.Int(0), step.Int(1), step.Int(2), step.Int(3));
    else if (step.word == "nodepos")
      result_.ints.push_back(mixer_.GetPositionSample(step.Int(0)));
    else
      return false;
    return true;
  }
  LSoundSource& Source(const std::string& name) {
    return sources_.try_emplace(name, LSoundSource(NewTestSource(data_, name))).first->second;
  }

  const EngineCase& data_;
  LAudioMixer mixer_;
  std::map<std::string, LSoundSource> sources_;
  LSoundSource mix_;
  ScriptResult result_;
};

LSoundSource Ramp(int frames, unsigned char channels = 1, int rate = 44100) {
  std::vector<int> samples(std::size_t(frames) * channels);
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = int(i) * 1000 + 7;
  return LSoundSource(new TestSource(samples, rate, channels));
}

std::vector<int> Read(LSoundSource& source, int frames) {
  std::vector<int> samples;
  ReadInto(samples, source, frames);
  return samples;
}

}  // namespace

TEST(MulGain24, GivesTheComputedProducts) {
  const EngineCase& data = Engine::Case("mixer/mulgain24");
  const std::vector<int> samples = data.In("samples"), gains = data.In("gains");
  std::vector<int> products;
  for (std::size_t i = 0; i < samples.size(); ++i) products.push_back(MulGain24(samples[i], gains[i]));
  EXPECT_EQ(products, data.Out("samples"));
}

TEST(LAudioMixer, RunsTheComputedScripts) {
  for (const EngineCase* data : Engine::CasesBelow("mixer/mixer/")) {
    const ScriptResult result = MixerScript(*data).Run();
    EXPECT_EQ(result.samples, data->Out("samples")) << data->id;
    EXPECT_EQ(result.ints, data->HasOut("ints") ? data->Out("ints") : std::vector<int>{}) << data->id;
  }
}

TEST(LAudioMixer, EndsByItsRule) {
  for (const auto& [endRule, expected, empty] : {std::tuple{false, 130, 0}, std::tuple{true, 100, -1}}) {
    LAudioMixer mixer(endRule);
    LSoundSource mix = mixer.OpenSource();
    EXPECT_EQ(mix.GetEndSample(), empty);
    LSoundSource long100 = Ramp(100), short80 = Ramp(80);
    long100.Seek(50);
    mixer.AddSource(long100, 0);
    mixer.AddSource(short80, 1);
    EXPECT_EQ(mix.GetEndSample(), expected);
  }
}

TEST(LAudioMixer, ARemovedRoutingSilencesThoseBehindItUntilTheHoleIsFilled) {
  LAudioMixer mixer(false);
  LSoundSource input = Ramp(100);
  mixer.AddSource(input, 3);
  mixer.AddChannelDesignation(3, 0, 0);
  mixer.AddChannelDesignation(3, 0, 1);
  LSoundSource mix = mixer.OpenSource();
  mixer.RemoveChannelDesignation(3, 0, 0);
  EXPECT_EQ(Read(mix, 1), (std::vector<int>{0, 0}));
  mixer.AddChannelDesignation(3, 0, 0);
  EXPECT_EQ(Read(mix, 1), (std::vector<int>{1007, 1007}));
  mixer.AddChannelDesignation(3, 0, 300);  // beyond the matrix, and beyond the output: nothing
  mixer.AddChannelDesignation(3, 0, 200);
  mixer.AddChannelDesignation(99, 0, 0);
  EXPECT_EQ(Read(mix, 1), (std::vector<int>{2007, 2007}));
}

TEST(LAudioMixer, ManyRoutingsAndWideOutputsSumTheSame) {
  // Left and right into one output, which the one-pass plan cannot do, and an output wider than its lanes.
  for (const int outputs : {2, 12}) {
    LAudioMixer mixer(false);
    mixer.SetOutputChannels(static_cast<unsigned char>(outputs));
    LSoundSource input = Ramp(100, 2);  // 7, 1007, 2007, 3007
    mixer.AddSource(input, 0);
    mixer.AddChannelDesignation(0, 0, outputs - 1);
    mixer.AddChannelDesignation(0, 1, outputs - 1);
    LSoundSource mix = mixer.OpenSource();
    std::vector<int> expected(std::size_t(2 * outputs));
    expected[std::size_t(outputs - 1)] = 7 + 1007;
    expected[std::size_t(2 * outputs - 1)] = 2007 + 3007;
    EXPECT_EQ(Read(mix, 2), expected);
  }
}

TEST(LAudioMixer, EditsOfSources) {
  LAudioMixer mixer(false);
  LSoundSource slow = Ramp(100, 1, 22050), late = Ramp(100, 1, 22050), other = Ramp(500);
  mixer.AddSource(slow, 0);
  LSoundSource mix = mixer.OpenSource();
  EXPECT_EQ(mix.GetEndSample(), 200);  // converted to 44100 Hz
  mixer.AddSource(late, 1);
  EXPECT_EQ(mix.GetEndSample(), 200);  // 100: not converted
  mixer.DeleteSource(1);
  Read(mix, 60);
  mixer.UpdateSource(0, other);
  EXPECT_EQ(mixer.GetPositionSample(0), 60);
  mixer.UpdateSourceID(0, 8);
  EXPECT_EQ(mixer.GetPositionSample(0), 0);
  EXPECT_EQ(mixer.GetPositionSample(8), 60);
  LSoundSource fresh = Ramp(10);
  mixer.ChangeSource(8, fresh);
  EXPECT_EQ(mixer.GetPositionSample(8), 0);
}
