#include "shell/MainDialog.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "ShellRig.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

double Rms(const std::vector<int>& samples, double fromSeconds, double seconds) {
  const auto from = std::size_t(fromSeconds * kDeckRate), count = std::size_t(seconds * kDeckRate);
  if (from + count > samples.size()) return -1;
  double sum = 0;
  for (std::size_t i = from; i < from + count; ++i) sum += double(samples[i]) * samples[i];
  return std::sqrt(sum / double(count));
}

// Level of one frequency in a second of sound (Goertzel), as an amplitude.
double ToneLevel(const std::vector<int>& samples, double fromSeconds, double hz) {
  const auto from = std::size_t(fromSeconds * kDeckRate);
  double real = 0, imaginary = 0;
  for (int i = 0; i < kDeckRate; ++i) {
    real += samples[from + std::size_t(i)] * std::cos(2 * M_PI * hz * i / kDeckRate);
    imaginary += samples[from + std::size_t(i)] * std::sin(2 * M_PI * hz * i / kDeckRate);
  }
  return 2 * std::hypot(real, imaginary) / kDeckRate;
}

TEST(MainDialog, MixesTwoFilesByScriptAndRecordsTheSameBytesTwice) {
  std::string recordings[2], states[2];
  for (int run = 0; run < 2; ++run) {
    ShellRig rig;
    const std::string a = rig.Track("a.wav", 440, 20), b = rig.Track("b.wav", 660, 20);
    const std::string script = "# two tracks\n0 load A " + a + "\n0 load B " + b +
                               "\n0 crossfade 0\n0 command Play/Pause A\n2.5 command 1434\n4 crossfade 50\n"
                               "6 crossfade 100\n8 command Play/Pause A\n9 quit\n";
    TStartOptions options;
    options.recordPath = rig.platform.TempPath("mix.wav");
    options.statePath = rig.platform.TempPath("state.json");
    ASSERT_TRUE(rig.Run(script, options));
    // Alone, under the silent second deck, both, the second alone.
    EXPECT_NEAR(ToneLevel(rig.heard, 1, 440), 200000, 2000);
    EXPECT_NEAR(ToneLevel(rig.heard, 2.8, 660), 0, 50);
    EXPECT_NEAR(ToneLevel(rig.heard, 4.5, 440), 200000, 2000);
    EXPECT_NEAR(ToneLevel(rig.heard, 4.5, 660), 200000, 2000);
    EXPECT_NEAR(ToneLevel(rig.heard, 7, 440), 0, 50);
    EXPECT_NEAR(ToneLevel(rig.heard, 7, 660), 200000, 2000);
    LSoundSource recorded = LWaveFile::OpenSource(options.recordPath);
    EXPECT_NEAR(recorded.GetEndSample() / double(kDeckRate), 9, 0.07);
    recordings[run] = LFile::ReadAll(options.recordPath).value_or("");
    states[run] = LFile::ReadAll(options.statePath).value_or("");
    states[run].replace(states[run].find(rig.platform.folder), rig.platform.folder.size(), "");
  }
  EXPECT_EQ(recordings[0], recordings[1]);
  EXPECT_NE(states[0].find("\"crossfader\": 100"), std::string::npos);
  EXPECT_NE(states[0].find("\"playing\": true"), std::string::npos);
}

TEST(MainDialog, ABadFileLeavesTheDeckAndTheProgramAsTheyAre) {
  ShellRig rig;
  const std::string good = rig.Track("good.wav", 440, 5);
  LFile::WriteReplacing(rig.platform.TempPath("empty.wav"), "");
  LFile::WriteReplacing(rig.platform.TempPath("text.wav"), std::string(5000, 'x'));
  LFile::WriteReplacing(rig.platform.TempPath("cover.jpg"), "image");
  const std::string script = LText::Format(
      "0 load A %s\n0.1 command Play/Pause A\n0.5 load A %s/missing.wav\n0.6 load A %s/empty.wav\n0.7 load A "
      "%s/text.wav\n"
      "0.8 load A %s/cover.jpg\n0.9 load A %s\n1 state %s/state.json\n1.5 quit\n",
      good.c_str(), rig.platform.folder.c_str(), rig.platform.folder.c_str(), rig.platform.folder.c_str(),
      rig.platform.folder.c_str(), rig.platform.folder.c_str(), rig.platform.folder.c_str());
  EXPECT_FALSE(rig.Run(script));
  EXPECT_TRUE(rig.Logged("missing.wav\" kann nicht geöffnet werden. Überprüfen Sie"));
  EXPECT_TRUE(rig.Logged("empty.wav\" kann nicht geöffnet werden, da sie beschädigt ist."));
  EXPECT_TRUE(rig.Logged("Datei konvertieren: Kann Datei nicht konvertieren: "));
  EXPECT_TRUE(rig.Logged("text.wav\" kann nicht geöffnet werden, da sie beschädigt ist."));
  EXPECT_TRUE(rig.Logged("cover.jpg\" kann nicht geöffnet werden. Es ist möglich"));
  const std::string state = LFile::ReadAll(rig.platform.TempPath("state.json")).value_or("");
  EXPECT_NE(state.find("good.wav"), std::string::npos);
  EXPECT_NE(state.find("\"playing\": true"), std::string::npos);
  EXPECT_GT(Rms(rig.heard, 1.0, 0.4), 100000);
}

TEST(MainDialog, SafeLiveRefusesWhatWouldCutTheSoundOff) {
  ShellRig rig;
  const std::string a = rig.Track("a.wav", 440, 20), b = rig.Track("b.wav", 660, 20);
  rig.Run("0 load A " + a + "\n0 load B " + b +
          "\n0.1 command Play/Pause A\n0.2 command Safe Live Mode\n"
          "1 command Play/Pause A\n"  // it is heard: refused
          "1.2 crossfade 80\n"        // towards a deck that does not play: refused
          "1.4 command Clear Deck A\n1.6 state " +
          rig.platform.TempPath("s1.json") + "\n2 command Safe Live Mode\n2.2 crossfade 80\n2.4 state " +
          rig.platform.TempPath("s2.json") + "\n2.6 quit\n");
  const std::string refused = LFile::ReadAll(rig.platform.TempPath("s1.json")).value_or("");
  EXPECT_NE(refused.find("\"playing\": true"), std::string::npos);
  EXPECT_NE(refused.find("\"crossfader\": 50"), std::string::npos);
  EXPECT_NE(LFile::ReadAll(rig.platform.TempPath("s2.json")).value_or("").find("\"crossfader\": 80"),
            std::string::npos);
  EXPECT_TRUE(rig.Logged("Abgesicherter Live-Modus ist derzeit aktiviert."));
}

TEST(MainDialog, LevelsFollowTheLawsWithinOneStep) {
  ShellRig rig;
  const std::string a = rig.Track("a.wav", 441, 30, 400000);
  std::string script = "0 load A " + a + "\n0 command Play/Pause A\n";
  const struct {
    int position;
    double db;
  } kCases[] = {{0, 0}, {50, 0}, {75, -3}, {100, -999}};
  for (int i = 0; i < 4; ++i) script += LText::Format("%d crossfade %d\n", 1 + 2 * i, kCases[i].position);
  ASSERT_TRUE(rig.Run(script + "10 quit\n"));
  const double full = Rms(rig.heard, 0.5, 0.4);
  for (int i = 0; i < 4; ++i) {
    const double rms = Rms(rig.heard, 2 + 2 * i, 0.5);
    if (kCases[i].db < -100)
      EXPECT_EQ(rms, 0);
    else
      EXPECT_NEAR(20 * std::log10(rms / full), kCases[i].db, 0.01);
  }
}

TEST(MainDialog, ATrackThatEndsStopsItsDeckAndPlaysAgainFromTheStart) {
  ShellRig rig;
  const std::string a = rig.Track("a.wav", 440, 1.0);
  rig.Run("0 load A " + a + "\n0 command Play/Pause A\n2 state " + rig.platform.TempPath("ended.json") +
          "\n2.1 command Play/Pause A\n2.5 state " + rig.platform.TempPath("again.json") + "\n2.6 quit\n");
  const std::string ended = LFile::ReadAll(rig.platform.TempPath("ended.json")).value_or("");
  EXPECT_NE(ended.find("\"playing\": false"), std::string::npos);
  EXPECT_NE(ended.find("\"position_frames\": 44100"), std::string::npos);
  EXPECT_NE(LFile::ReadAll(rig.platform.TempPath("again.json")).value_or("").find("\"playing\": true"),
            std::string::npos);
}

TEST(MainDialog, ALostDeviceIsToldThoughItReportsNothingAnyMore) {
  ShellRig rig;
  rig.platform.backend.SetMessage("Das Gerät fehlt");
  rig.Run("0 crossfade 50\n1 quit\n");  // nothing plays: no time is reported
  EXPECT_TRUE(rig.Logged("Das Gerät fehlt"));
}

TEST(MainDialog, AFullDiskEndsTheRecordingWithAMessageAndTheMixPlaysOn) {
  ShellRig rig;
  const std::string a = rig.Track("a.wav", 440, 30);
  TStartOptions options;
  options.recordPath = rig.platform.TempPath("mix.wav");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{1 << 20, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool good = rig.Run("0 load A " + a + "\n0 command Play/Pause A\n15 quit\n", options);
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_FALSE(good);
  EXPECT_TRUE(rig.Logged("Aufnahme fehlgeschlagen: " + options.recordPath));
  EXPECT_GT(Rms(rig.heard, 14, 0.5), 100000);
  LSoundSource recorded = LWaveFile::OpenSource(options.recordPath);
  EXPECT_TRUE(recorded.IsOk());
  EXPECT_NEAR(recorded.GetEndSample(), (1 << 20) / 4, 8192);  // up to the last whole block
}

// Commands, loads and seeks in no sensible order: nothing may break, and what was taken is given back.
TEST(MainDialog, TenThousandRandomActionsAndAThousandLoads) {
  ShellRig rig;
  const std::string paths[] = {rig.Track("a.wav", 440, 3), rig.Track("b.wav", 660, 0.2),
                               rig.platform.TempPath("missing.wav")};
  const int kIds[] = {1433, 1434, 1503, 1504, 1509, 1510, 1521, 1522, 1527, 1528, 1563, 1564, 1567,
                      1568, 1569, 1570, 1571, 1576, 1577, 1582, 1583, 1584, 1585, 1374, 1375, 1376};
  std::string script;
  unsigned seed = 7;
  const auto next = [&](unsigned n) {
    seed = seed * 1664525 + 1013904223;
    return (seed >> 8) % n;
  };
  double at = 0;
  for (int i = 0; i < 10000; ++i, at += 0.004) {
    const char deck = char('A' + next(2));
    switch (next(10)) {
      case 0:
        script += LText::Format("%.3f load %c %s\n", at, deck, paths[next(3)].c_str());
        break;
      case 1:
        script += LText::Format("%.3f seek %c %.2f\n", at, deck, next(400) / 100.0);
        break;
      case 2:
        script += LText::Format("%.3f crossfade %u\n", at, next(101));
        break;
      case 3:
        script += LText::Format("%.3f volume %c %d\n", at, deck, int(next(60)) - 50);
        break;
      default:
        script += LText::Format("%.3f command %d\n", at, kIds[next(std::size(kIds))]);
    }
  }
  rig.heard.reserve(1 << 22);
  EXPECT_FALSE(rig.Run(script));  // the missing file was told
  EXPECT_GT(rig.heard.size(), 0u);
}

}  // namespace
