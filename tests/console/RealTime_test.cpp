// The engine with its real threads on a device that renders in real time: run under the thread sanitizer too.
#include <gtest/gtest.h>

#include "audiofile/LWaveFile.h"
#include "console/DJConsole.h"
#include "foundation/LPlatform.h"
#include "platform/null/LNullBackend.h"
#include "support/EngineData.h"
#include "support/LTestPlatform.h"
#include "support/TestSource.h"

namespace {

class RealTime : public ::testing::Test {
 protected:
  void SetUp() override {
    LPlatformServices services;
    services.clock = &platform.realClock;
    services.mainLoop = &platform.loop;
    services.folders = &platform.folders;
    services.preferences = &platform.preferences;
    services.soundBackend = &backend;
    LPlatform::Fill(services);
    console = std::make_unique<DJConsole>();
    console->AddDeck(kDeckA);
    console->AddDeck(kDeckB);
  }
  void TearDown() override { console.reset(); }
  DJDeck& Deck(DJDeckPosition position) { return *console->GetDeck(position); }
  void Load(DJDeckPosition position, int seconds) {
    const auto noise = Engine::Noise(1, 200000, std::size_t(2 * seconds * kDeckRate));
    console->CmDeckClear(Deck(position));
    Deck(position).Load("memory", LSoundSource(new TestSource(noise, kDeckRate, 2)), 0, 0);
  }
  void Wait(int ms) {
    platform.WaitUntil([] { return false; }, ms);
  }

  LTestPlatform platform{LTestPlatform::Threads::Real};
  LNullBackend backend;
  std::unique_ptr<DJConsole> console;
};

TEST_F(RealTime, PositionsRunWithTheClock) {
  Load(kDeckA, 10);
  ASSERT_TRUE(Deck(kDeckA).Play());
  ASSERT_TRUE(platform.WaitUntil([&] { return Deck(kDeckA).GetPlayPosition() > kDeckRate / 10; }));
  const LRealClock clock;
  const auto startUs = clock.NowUs();
  const int start = Deck(kDeckA).GetPlayPosition();
  Wait(600);
  const double seconds = double(clock.NowUs() - startUs) / 1e6;
  EXPECT_NEAR((Deck(kDeckA).GetPlayPosition() - start) / double(kDeckRate), seconds, 0.2);
  Deck(kDeckA).Stop();
}

TEST_F(RealTime, EverythingAtOnceWhileRecording) {
  const std::string path = platform.TempPath("mix.wav");
  Load(kDeckA, 20);
  Load(kDeckB, 20);
  ASSERT_TRUE(console->StartRecordingTo(path));
  const auto random = Engine::Noise(4, 1000, 400);
  for (std::size_t i = 0; i + 3 < random.size(); i += 4) {
    DJDeck& deck = Deck(random[i] & 1);
    switch (std::abs(random[i + 1]) % 7) {
      case 0:
        deck.Play();
        break;
      case 1:
        deck.Stop();
        break;
      case 2:
        console->SetCrossFadePosition(std::abs(random[i + 2]) % 101);
        break;
      case 3:
        deck.SetVolume(-(std::abs(random[i + 2]) % 40));
        break;
      case 4:
        console->CmSeek(std::abs(random[i + 2]) * 800, deck);
        break;
      case 5:
        deck.SetHeadphoneMode(!deck.IsHeadphoneOn());
        break;
      default:
        console->SetVolume(-(std::abs(random[i + 2]) % 10), 0);
    }
    Wait(std::abs(random[i + 3]) % 25);
  }
  console->StopRecording();
  EXPECT_GT(LWaveFile::OpenSource(path).GetEndSample(), 0);
}

TEST_F(RealTime, StartsAndStopsAndLoadsAgainAndAgain) {
  Load(kDeckB, 1);
  for (int i = 0; i < 100; ++i) {
    if (i % 10 == 0) Load(kDeckA, 1);
    ASSERT_TRUE(Deck(kDeckA).Play()) << i;
    if (i % 3 == 0) Deck(kDeckB).Play();
    Wait(1);
    Deck(kDeckA).Stop();
    Deck(kDeckB).Stop();
    ASSERT_FALSE(console->IsMainPlayerRunning());
  }
}

}  // namespace
