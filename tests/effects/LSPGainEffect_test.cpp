#include "effects/LSPGainEffect.h"

#include <gtest/gtest.h>

#include "effects/LSPPitchEffects.h"
#include "support/TestSource.h"

namespace {

std::vector<int> Played(LEffect& effect, int frames) {
  LSoundSource input(new TestSource(Engine::Noise(8, 100000, 20000), 44100, 2)), source = effect.OpenSource(input);
  std::vector<int> out;
  ReadInto(out, source, frames);
  return out;
}

int ValueOf(const LEffect& effect) {
  LSoundProcessParameter parameter;
  effect.GetParameterByIndex(0, &parameter);
  return parameter.value;
}

int LoadedFrom(LSDFWriter& writer) {
  const std::string file = writer.Finish();
  LSDFReader reader;
  EXPECT_EQ(reader.Open(file, 12), LSDFOpen::Good);
  LSPGainEffect effect;
  effect.LoadFromSDF(LSDFReaderChunkIterator(reader));
  return ValueOf(effect);
}

}  // namespace

TEST(LSPGainEffect, PlaysAndStoresItsGain) {
  const std::vector<int> plain = Engine::Noise(8, 100000, 20000);
  LSPGainEffect effect;
  EXPECT_EQ(Played(effect, 10000), plain);
  effect.SetPreset(2);
  EXPECT_EQ(ValueOf(effect), 200);
  EXPECT_EQ(Played(effect, 1)[0], 2 * plain[0]);
  for (int percent = 1; percent <= 400; ++percent) {
    effect.SetParameterByIndex(0, percent);
    LSDFWriter writer(12, 16);
    effect.SaveToSDF(writer);
    ASSERT_EQ(LoadedFrom(writer), percent);
  }
  for (const auto& [chunk, stored, percent] :
       {std::tuple{8192, 0x800000, 50}, {2, 0x2000000, 200}, {2, -5, 1}, {8192, 0x7fffffff, 400}, {3, 5, 100}}) {
    LSDFWriter writer(12, 16);
    writer.WriteInt(std::uint16_t(chunk), stored, 1);
    EXPECT_EQ(LoadedFrom(writer), percent) << chunk;
  }
}

TEST(LSPPitchEffects, PassAtRatioOneAndElseShift) {
  const std::vector<int> plain = Engine::Noise(8, 100000, 20000);
  LSPPitchSpeedEffect speed;
  LSPPitchEffect pitch;
  for (LEffect* effect : {static_cast<LEffect*>(&speed), static_cast<LEffect*>(&pitch)}) {
    EXPECT_EQ(Played(*effect, 10000), plain);
    effect->SetParameterByIndex(0, 2000);
    LSoundSource input(new TestSource(plain, 44100, 2)), source = effect->OpenSource(input);
    EXPECT_EQ(source.GetSampleRate(), 44100);
    // An octave up: with the speed half as long, else as long as before.
    EXPECT_NEAR(source.GetEndSample(), effect == &speed ? 5000 : 10000, 2);
  }
}
