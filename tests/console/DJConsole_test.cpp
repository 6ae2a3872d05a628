#include "console/DJConsole.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "console/DJMixLaws.h"
#include "effects/LEffectTypes.h"
#include "foundation/TSettings.h"
#include "support/AllocationGuard.h"
#include "support/EngineData.h"

namespace {

constexpr int kMinute = 60 * kDeckRate;

TEST(MixLaws, PercentAndLevelEqualTheIndependentTables) {
  const EngineCase& percent = Engine::Case("console/crossfade_percent");
  const EngineCase& level = Engine::Case("console/crossfade_level");
  for (int i = 0; i <= 100; ++i) {
    EXPECT_EQ(CrossFadePercent(kDeckA, i), percent.Out("deck_a")[std::size_t(i)]);
    EXPECT_EQ(CrossFadePercent(kDeckB, i), percent.Out("deck_b")[std::size_t(i)]);
    EXPECT_EQ(CrossFadeLevel(i).Get(), level.Out("db")[std::size_t(i)]) << i;
  }
  const auto triples = Engine::Case("console/volume").In("triples");
  for (std::size_t i = 0; i < triples.size() / 3; ++i)
    EXPECT_EQ((LLevel(triples[3 * i]) + LLevel(triples[3 * i + 1]) + LLevel(triples[3 * i + 2])).Get(),
              Engine::Case("console/volume").Out("db")[i]);
}

TEST(DJConsole, ADeckPlaysFromItsFirstFrameToItsLastAndStops) {
  ConsoleRig rig;
  const auto track = Engine::Noise(5, 300000, 2 * 3 * kDeckRate);
  rig.Load(kDeckA, track);
  ASSERT_TRUE(rig.Deck(kDeckA).Play());
  rig.RunMs(3500);
  EXPECT_FALSE(rig.Deck(kDeckA).IsPlaying());
  EXPECT_FALSE(rig.console->IsMainPlayerRunning());
  EXPECT_EQ(rig.Deck(kDeckA).GetPlayPosition(), 3 * kDeckRate);
  ASSERT_GE(rig.heard.size(), track.size());
  const auto left = rig.Heard();
  for (int i = 0; i < 3 * kDeckRate; ++i)
    ASSERT_NEAR(left[std::size_t(i)], track[std::size_t(2 * i)], kEqualizerLoss) << i;
}

TEST(DJConsole, CrossfaderAndLevelsFollowTheirLaws) {
  ConsoleRig rig;
  constexpr int kAmplitude = 200000;
  rig.Load(kDeckA, Tone(441, kAmplitude, kMinute));
  rig.Deck(kDeckA).Play();
  const struct {
    int position, deckDb, masterDb;
  } kCases[] = {{50, 0, 0}, {0, 0, 0}, {75, 0, 0}, {90, 0, 0}, {50, -6, 0}, {50, -6, -12}, {75, 3, -3}, {100, 0, 0}};
  for (const auto& c : kCases) {
    rig.console->SetCrossFadePosition(c.position);
    rig.Deck(kDeckA).SetVolume(c.deckDb);
    rig.console->SetVolume(c.masterDb, 0);
    rig.RunMs(400);
    const auto left = rig.Heard();
    const double rms = Rms(left, left.size() - kDeckRate / 10, kDeckRate / 10);
    const LLevel level = CrossFadeLevel(CrossFadePercent(kDeckA, c.position)) + LLevel(c.deckDb) + LLevel(c.masterDb);
    if (level.IsMuted())
      EXPECT_EQ(rms, 0);
    else
      EXPECT_NEAR(20 * std::log10(rms / (kAmplitude / std::sqrt(2))), level.Get(), 0.01) << c.position;
  }
}

TEST(DJConsole, AVolumeChangeIsHeardWithinTheDevicesReachAndWithoutAClick) {
  ConsoleRig rig;
  constexpr int kAmplitude = 400000;
  rig.Load(kDeckA, Tone(100, kAmplitude, kMinute));
  rig.Deck(kDeckA).Play();
  rig.RunMs(1000);
  const std::size_t changedAt = rig.Heard().size();
  rig.Deck(kDeckA).SetVolume(-48);
  rig.RunMs(300);
  const auto left = rig.Heard();
  // Timer (30 ms) and what the device is about to take (4 slices), then a fade over one block of a thirtieth of a
  // second.
  const std::size_t latest = changedAt + std::size_t(kDeckRate * 30 / 1000 + 4 * 512 + 512 + kDeckRate / 30);
  EXPECT_LT(Rms(left, latest, 4410), kAmplitude / 100);
  const double ownStep = kAmplitude * 2 * M_PI * 100 / kDeckRate, fadeStep = double(kAmplitude) / (kDeckRate / 30.0);
  int largest = 0;
  for (std::size_t i = 1; i < left.size(); ++i) largest = std::max(largest, std::abs(left[i] - left[i - 1]));
  EXPECT_LE(largest, ownStep + fadeStep + 2);
}

TEST(DJConsole, TwoDecksSumAndStoppingOneLeavesTheOtherUntouched) {
  ConsoleRig rig;
  rig.Load(kDeckA, Tone(300, 100000, kMinute));
  rig.Load(kDeckB, Tone(700, 100000, kMinute));
  rig.Deck(kDeckA).Play();
  rig.RunMs(500);
  rig.Deck(kDeckB).Play();
  rig.RunMs(500);
  EXPECT_NEAR(Rms(rig.Heard(), rig.Heard().size() - 4410, 4410), 100000, 1500);  // two tones of 70711 RMS each
  rig.Deck(kDeckB).Stop();
  EXPECT_TRUE(rig.console->IsMainPlayerRunning());
  rig.RunMs(500);
  const auto left = rig.Heard();
  const auto alone = Tone(300, 100000, kDeckRate * 2);
  // Deck A's own frames, at the place it would have without the other deck.
  for (std::size_t i = left.size() - 4410; i < left.size(); ++i)
    ASSERT_NEAR(left[i], alone[2 * i], kEqualizerLoss + 1) << i;
  rig.Deck(kDeckA).Stop();
  EXPECT_FALSE(rig.console->IsMainPlayerRunning());
  EXPECT_NEAR(rig.Deck(kDeckA).GetPlayPosition(), int(left.size()), 4 * 512 + 512);  // heard, not read
}

TEST(DJConsole, HeadphonesHearADeckRegardlessOfTheCrossfaderOnTheirOwnChannels) {
  ConsoleRig rig;
  TSettings::kHeadphoneOutputLeft.Set(2);
  TSettings::kHeadphoneOutputRight.Set(3);
  rig.console->UpdateDevice();
  EXPECT_TRUE(rig.console->CheckHeadphones());
  rig.Load(kDeckB, Tone(441, 100000, kMinute));
  rig.console->SetCrossFadePosition(0);
  rig.Deck(kDeckB).Play();
  rig.RunMs(300);
  EXPECT_EQ(Rms(rig.Heard(2), rig.Heard(2).size() - 2000, 2000), 0);
  rig.Deck(kDeckB).SetHeadphoneMode(true);
  rig.RunMs(300);
  EXPECT_EQ(rig.heardChannels, 4);
  EXPECT_EQ(Rms(rig.Heard(0), rig.Heard(0).size() - 2000, 2000), 0);
  EXPECT_NEAR(Rms(rig.Heard(2), rig.Heard(2).size() - 2000, 2000), 100000 / std::sqrt(2), 100);
  TSettings::kHeadphoneOutputLeft.Set(1);
  rig.Deck(kDeckB).Stop();
  rig.console->UpdateDevice();
  EXPECT_FALSE(rig.console->CheckHeadphones());
}

// Deck A plays noise to both devices; gives the noise.
std::vector<int> PlayOnTwoDevices(ConsoleRig& rig) {
  TSettings::kUseSecondDevice.Set(true);
  TSettings::kSoundOutDeviceHeadphone.Set("Offline (2)");
  rig.console->UpdateDevice();
  const auto track = Engine::Noise(9, 200000, 2 * kMinute / 6);
  rig.Load(kDeckA, track);
  rig.Deck(kDeckA).SetHeadphoneMode(true);
  rig.Deck(kDeckA).Play();
  rig.RunMs(700);
  return track;
}

TEST(DJConsole, ASecondDeviceCarriesTheHeadphonesInStepWithTheMainOne) {
  ConsoleRig rig;
  const auto track = PlayOnTwoDevices(rig);
  rig.console->SetCrossFadePosition(100);  // a resync of both: the headphones go on, frame by frame
  rig.RunMs(700);
  rig.console->SetCrossFadePosition(0);
  rig.RunMs(700);
  ASSERT_EQ(rig.phones.size(), rig.heard.size());
  const std::size_t frames = rig.phones.size() / 2;
  // A fade between equal signals may lose the last bits of its two products.
  for (std::size_t i = 0; i < frames; ++i) ASSERT_NEAR(rig.phones[2 * i] >> 12, track[2 * i], 3 + kEqualizerLoss) << i;
  for (std::size_t i = frames - 4410; i < frames; ++i)
    ASSERT_NEAR(rig.heard[2 * i] >> 12, track[2 * i], kEqualizerLoss) << i;
}

TEST(DJConsole, MasterEffectsChangeUnderTwoDevicesWithoutMovingEither) {
  ConsoleRig rig;
  const auto track = PlayOnTwoDevices(rig);
  for (const bool bypass : {false, true, false}) {
    LMasterEffects& effects = rig.console->GetMasterEffects();
    if (effects.Count() == 0) effects.Add(CreateSoundProcessByType(1));  // a gain of 1
    effects.At(0).SetBypass(bypass);
    rig.console->djntfProcessMasterFxChainUpdate();
    rig.RunMs(700);
  }
  ASSERT_EQ(rig.phones.size(), rig.heard.size());
  for (std::size_t i = 0; i < rig.phones.size() / 2; ++i) {
    ASSERT_NEAR(rig.phones[2 * i] >> 12, track[2 * i], 3 + kEqualizerLoss) << i;
    ASSERT_NEAR(rig.heard[2 * i] >> 12, track[2 * i], 3 + kEqualizerLoss) << i;
  }
}

TEST(DJConsole, NoAllocationInAnyRefillOrRenderStep) {
  ConsoleRig rig;
  rig.Load(kDeckA, Tone(300, 300000, kMinute));
  rig.Load(kDeckB, Tone(500, 300000, kMinute));
  ASSERT_TRUE(rig.console->StartRecordingTo(rig.platform.TempPath("mix.wav")));
  rig.Deck(kDeckA).Play();
  rig.Deck(kDeckB).Play();
  rig.RunMs(200);
  rig.platform.loop.DispatchPending();
  rig.heard.reserve(1 << 22);
  int allocations = 0;
  for (int i = 0; i < 200; ++i) {
    rig.platform.loop.DispatchPending();
    const AllocationGuard guard;
    rig.platform.steps.RunAll();
    const int posts = guard.Count();  // the done handler posts a notification a report: two objects on the heap
    rig.platform.backend.RenderSlice(kWantedSliceFrames);
    allocations += guard.Count() - posts;
    EXPECT_LE(posts, 3) << i;
  }
  EXPECT_EQ(allocations, 0);
}

TEST(DJConsole, SeekInPlayIsHeardAtOnce) {
  ConsoleRig rig;
  std::vector<int> track(std::size_t(kMinute) * 2);
  for (int i = 0; i < kMinute; ++i) track[std::size_t(2 * i)] = track[std::size_t(2 * i + 1)] = i / 8;
  rig.Load(kDeckA, track);
  rig.Deck(kDeckA).Play();
  rig.RunMs(500);
  rig.console->CmSeek(20 * kDeckRate, rig.Deck(kDeckA));
  const std::size_t at = rig.Heard().size();
  rig.RunMs(300);
  const auto left = rig.Heard();
  EXPECT_NEAR(left[at + 4 * 512 + 512 + kDeckRate / 30], (20 * kDeckRate + kDeckRate / 30) / 8, 200);
  EXPECT_NEAR(rig.Deck(kDeckA).GetPlayPosition(), 20 * kDeckRate + kDeckRate * 3 / 10, kDeckRate / 8);
}

}  // namespace
