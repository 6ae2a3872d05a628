// The panels of the main window in a headless window, on the virtual clock, with a host that writes down what it is
// asked.
#pragma once
#include <gtest/gtest.h>

#include "console/DJConsole.h"
#include "screens/DJConsoleGUI.h"
#include "screens/DJDeckGUI.h"
#include "screens/DJWindowLayout.h"
#include "support/LTestPlatform.h"
#include "toolkit/LMainWindow.h"
#include "toolkit/headless/LHeadlessToolkit.h"
#include "toolkit/headless/LPaintRecorder.h"

struct RecordingHost final : DJPanelHost {
  void PanelCommand(int id) override { commands.push_back(id); }
  void PanelCrossFade(int position) override { crossFades.push_back(position); }
  void PanelDeckVolume(DJDeckPosition, LLevel level) override { volumes.push_back(level.Get()); }
  void PanelLevels(LLevel level, LLevel) override { masters.push_back(level.Get()); }
  void PanelSeek(DJDeckPosition, int frame) override { seeks.push_back(frame); }
  void PanelBrowse(DJDeckPosition) override {}
  bool PanelDrop(DJDeckPosition deck, const std::vector<std::string>& paths) override {
    drops.push_back(DeckLetter(deck) + paths.front());
    return true;
  }
  std::vector<int> commands, crossFades, volumes, masters, seeks;
  std::vector<std::string> drops;
};

struct ScreenRig : ::testing::Test {
  void Run(int ms) {
    for (int i = 0; i < ms; ++i) {
      platform.clock.AdvanceUs(1000);
      platform.loop.DispatchPending();
    }
  }
  static void Press(LPaintControl& control, LPoint at) {
    control.PeerHover(true);
    control.PeerMouseDown({.at = at, .button = LMouseButton::Left}, false);
  }
  static void Drag(LPaintControl& control, LPoint at) { control.PeerMouseMove({.at = at}); }
  static void Release(LPaintControl& control, LPoint at) {
    control.PeerMouseUp({.at = at, .button = LMouseButton::Left}, true);
  }
  static void Click(LPaintControl& control) {
    const LPoint at{control.Width() / 2, control.Height() / 2};
    Press(control, at);
    Release(control, at);
  }

  LHeadlessToolkit toolkit;
  LTestPlatform platform{LTestPlatform::Threads::Offline, &toolkit};
  LMainWindow window;
  RecordingHost host;
};
