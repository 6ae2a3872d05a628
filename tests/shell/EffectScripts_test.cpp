// Effects in a running mix, by script, and the lists that stay from one run to the next.
#include <gtest/gtest.h>

#include <algorithm>

#include "ShellRig.h"
#include "effects/LEffectTypes.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

// The largest step from sample to sample.
int LargestStep(const std::vector<int>& heard, double fromSeconds, double toSeconds) {
  int step = 0;
  for (auto i = std::size_t(fromSeconds * kDeckRate); i < std::size_t(toSeconds * kDeckRate); ++i)
    step = std::max(step, std::abs(heard.at(i + 1) - heard.at(i)));
  return step;
}

}  // namespace

TEST(EffectScripts, EachEffectGoesOnAndOffWithoutAClick) {
  for (const bool master : {false, true}) {
    for (const LEffectType& type : LEffectTypes::Rows()) {
      if (!type.offered) continue;
      ShellRig rig;
      const char* const list = master ? "master " : "";
      ASSERT_TRUE(
          rig.Run("0 load A " + rig.Track("a.wav", 220.5, 20, 100000) + "\n0 command Play/Pause A\n" +
                  LText::Format("3 effect add %s%d\n6 effect bypass %s1 on\n9 quit\n", list, type.number, list)))
          << type.name;
      // A hall that fills up is louder for a moment than when it is full; clicks were four to ten times as large.
      const int own = std::max(LargestStep(rig.heard, 1, 2.5), LargestStep(rig.heard, 4, 5.5));
      const int switching = std::max(LargestStep(rig.heard, 2.5, 4), LargestStep(rig.heard, 5.5, 7.5));
      EXPECT_LT(switching, own * 3 / 2) << type.name << (master ? " behind the mix" : " in the deck");
      RecordProperty(LText::Format("step_%d_%d", type.number, int(master)), LText::Format("%d of %d", switching, own));
    }
  }
}

TEST(EffectScripts, ListsStayFromOneRunToTheNext) {
  ShellRig rig;
  const std::string chain = rig.platform.TempPath("chain.ecf"), again = rig.platform.TempPath("again.ecf");
  ASSERT_TRUE(
      rig.Run("0 effect add Echo\n0 effect set 1 2 333\n0 effect add Hochpass\n0 effect apply 2 B off\n"
              "0 effect bypass 1 on\n0 effect add master Echo\n0 effect preset master 1 3\n0.1 effect save " +
              chain + "\n0.2 quit\n"));
  ASSERT_TRUE(rig.Run("0 effect save " + again + "\n0.1 effect remove 2\n0.2 quit\n"));
  const auto bytes = LFile::ReadAll(chain);
  ASSERT_TRUE(bytes && bytes->size() > 100);
  EXPECT_EQ(LFile::ReadAll(again), bytes);
  ASSERT_TRUE(rig.Run("0 effect load " + chain +
                      "\n0.1 effect remove 3\n0.15 command Clear Effects\n0.16 command Clear Master Effects\n0.17 "
                      "effect add master Hall\n0.1 effect preset master 1 1\n0.2 quit\n"));
  EXPECT_TRUE(rig.Logged("2 Effekte wurden hinzugefügt."));
  const std::string notAudio = rig.Track("a.wav", 441, 0.1);
  EXPECT_FALSE(rig.Run("0 effect load " + notAudio + "\n0.2 quit\n"));
  EXPECT_TRUE(rig.Logged("Konnte Datei nicht öffnen, um Effekte zu laden."));
  EXPECT_FALSE(rig.Run("0 effect load master " + chain + "\n0.2 quit\n"));
  EXPECT_TRUE(rig.Logged("Die geladene Datei ist nicht der Liste der Master-Effekte."));
  EXPECT_FALSE(rig.Run("0 effect set 1 2 5000\n0 effect set 1 9 1\n0.2 quit\n"));
}

TEST(EffectScripts, TheEqualiserIsHeardAndReset) {
  ShellRig rig;
  ASSERT_TRUE(rig.Run(
      "0 load A " + rig.Track("bass.wav", 60, 20, 50000) +
      "\n0 command Play/Pause A\n2 eq A 1 0\n5 eq A 1 100\n8 command Reset Deck A\n10 command Kill Bass A\n13 quit\n"));
  const auto level = [&](double seconds) {
    double sum = 0;
    const auto from = rig.heard.begin() + std::ptrdiff_t(seconds * kDeckRate);
    for (auto i = from; i < from + kDeckRate; ++i) sum += double(*i) * *i;
    return 10 * std::log10(sum / kDeckRate / (50000.0 * 50000 / 2) + 1e-12);
  };
  EXPECT_NEAR(level(0.5), 0, 0.05);
  EXPECT_NEAR(level(3.5), 12, 0.5);
  EXPECT_LT(level(6.5), -40);
  EXPECT_NEAR(level(8.8), 0, 0.1);
  EXPECT_NEAR(level(11.5), -24, 0.5);
}
