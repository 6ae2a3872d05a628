#include <algorithm>
#include <filesystem>
#include <memory>

#include "WindowRig.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

constexpr double kWindowSeconds = 10, kEndSeconds = 10;
constexpr int kTerm = 15, kKill = 9;

struct Window : WindowTest {
  // Started with two tracks and seen on the screen.
  std::unique_ptr<Child> Start(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.end(), {Track("Nachtfahrt.wav", 440, 30), Track("Morgenrot.wav", 660, 30)});
    auto child = std::make_unique<Child>(Program(arguments), Environment());
    window = FindWindow(*child, kWindowSeconds);
    EXPECT_NE(window, "");
    Sleep(0.5);  // the tracks are loaded from the loop
    return child;
  }
  std::vector<std::string> Environment() const {
    return {"DISPLAY=" + display_, "QT_QPA_PLATFORM=xcb", "LC_ALL=C.UTF-8"};
  }
  std::string State() const { return LFile::ReadAll(folder_ + "/state.json").value_or(""); }
  std::string window;
};

TEST_F(Window, KeysPlayAndMoveTheCrossfader) {
  const auto program = Start({"--state", folder_ + "/state.json"});
  Key("space");
  Sleep(1);
  Key("Right Right Right Left");
  Sleep(0.5);
  program->Kill(kTerm);
  EXPECT_EQ(program->Wait(kEndSeconds), 0);
  const std::string state = State();
  EXPECT_NE(state.find("\"crossfader\": 54"), std::string::npos) << state;  // two a key
  const std::size_t deckB = state.find("Morgenrot");
  ASSERT_NE(deckB, std::string::npos) << state;
  EXPECT_LT(state.find("\"playing\": true"), deckB) << state;  // deck A, and it alone
  EXPECT_EQ(state.find("\"playing\": true", deckB), std::string::npos) << state;
}

TEST_F(Window, RecordsPlayableFilesAndASignalEndsThemProperly) {
  const auto program = Start();
  Key("space");
  Key("ctrl+r");
  Sleep(2);
  program->Kill(kTerm);
  EXPECT_EQ(program->Wait(kEndSeconds), 0);
  const std::string recording = Recording();
  ASSERT_NE(recording, "");
  const double seconds = DurationByFfprobe(recording);
  EXPECT_GT(seconds, 1.2);
  EXPECT_LT(seconds, 4);
}

TEST_F(Window, ARecordingCutOffByAKillIsWholeAfterTheNextStart) {
  {
    const auto program = Start();
    Key("space");
    Key("ctrl+r");
    Sleep(3);
    program->Kill(kKill);
  }
  const std::string recording = Recording();
  ASSERT_NE(recording, "");
  const auto next = Start();
  next->Kill(kTerm);
  EXPECT_EQ(next->Wait(kEndSeconds), 0);
  const double seconds = DurationByFfprobe(recording);
  EXPECT_GT(seconds, 1);
  EXPECT_LT(seconds, 5);
}

TEST_F(Window, StaysWholeAtEverySizeWhilePlaying) {
  const auto program = Start();
  Key("space");
  Key("alt+space");
  for (const char* size : {"936 561", "2560 1440", "1056 595"}) {
    Shell("xdotool windowsize --sync " + window + " " + size);
    Sleep(0.7);
    std::string name = LText::Format("window-%s.png", size);
    std::replace(name.begin(), name.end(), ' ', 'x');
    const std::string picture = Keep(name);
    Shell("import -window " + window + " " + picture);
    EXPECT_GT(DifferentColours(picture), 20) << size;
    EXPECT_EQ(program->Wait(0.01), -1) << size;
  }
  program->Kill(kTerm);
  EXPECT_EQ(program->Wait(kEndSeconds), 0);
}

TEST_F(Window, SavesAScreenshotOnADisplayAndWithoutOne) {
  const std::vector<std::string> kEnvironments[] = {Environment(), {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}};
  for (int i = 0; i < 2; ++i) {
    const std::string picture = Keep(i == 0 ? "screenshot-display.png" : "screenshot-offscreen.png");
    std::filesystem::remove(picture);
    Child program(Program({"--screenshot", picture, "--duration", "3", Track("a.wav", 440, 10)}), kEnvironments[i]);
    EXPECT_EQ(program.Wait(20), 0) << i;
    EXPECT_EQ(Shell("identify -format %wx%h '" + picture + "'"), "1056x595") << i;
    EXPECT_GT(DifferentColours(picture), 20) << i;
  }
}

}  // namespace
