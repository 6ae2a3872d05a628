// A Qt toolkit that lasts for the test program, and windows that write down what reaches them.
#pragma once
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/LMainLoop.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"
#include "foundation/LTimerHandler.h"
#include "toolkit/LMainWindow.h"
#include "toolkit/LPaintControl.h"
#include "toolkit/qt/LQtToolkit.h"

class QtTest : public testing::Test {
 public:
  static void End() { Slot().reset(); }  // before main returns: Qt's own statics are still there

 protected:
  QtTest() {
    LPlatform::Fill({.clock = &World().clock,
                     .mainLoop = &World().loop,
                     .preferences = &World().preferences,
                     .toolkit = &World().toolkit});
    World().loop.Reopen();
    LTimerHandler::Enable(true);
  }
  ~QtTest() override { LPlatform::Clear(); }

  static LMainLoop& Loop() { return World().loop; }
  static LQtToolkit& Toolkit() { return World().toolkit; }

  static QWidget* WidgetOf(LWindow& window) { return static_cast<QWidget*>(window.Peer().NativeParent()); }
  static bool Press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {}, bool repeat = false) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, 0, 0, 0, QString(), repeat);
    return QApplication::sendEvent(widget, &event);
  }
  static void Mouse(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, QPointF(at), widget->mapToGlobal(QPointF(at)), button, held, {});
    QApplication::sendEvent(widget, &event);
  }
  // Runs what waits in both loops.
  static void Settle() {
    for (int i = 0; i < 3; ++i) {
      LSignalObjectGroup nothing;
      Toolkit().RunUntil(nothing, 0);
    }
  }
  template <class Function>
  static void Post(Function function) {
    struct Task final : LMainLoopTask {
      explicit Task(Function f) : function_(std::move(f)) {}
      void RunTask() override { function_(); }
      Function function_;
    };
    Loop().Post(nullptr, std::make_unique<Task>(std::move(function)));
  }
  // Runs a function a little later, when what the caller opens now stands.
  class Later final : public LTimerHandler {
   public:
    Later(int ms, std::function<void()> function) : function_(std::move(function)) { TimerSet(1, ms); }

   private:
    void EvTimer(int) override { function_(); }
    std::function<void()> function_;
  };
  template <class Widget>
  static Widget* Visible() {  // the one visible top-level window of that kind
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* found = qobject_cast<Widget*>(widget); found && found->isVisible()) return found;
    return nullptr;
  }

 private:
  struct Environment {
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    LRealClock clock;
    LMainLoop loop{clock};
    LMemoryPreferences preferences;
    LQtToolkit toolkit{1, arguments};
  };
  static std::unique_ptr<Environment>& Slot() {
    static std::unique_ptr<Environment> environment;
    return environment;
  }
  static Environment& World() {
    if (!Slot()) Slot() = std::make_unique<Environment>();
    return *Slot();
  }
};

class RecordingWindow : public LMainWindow {
 public:
  bool EvKeyDown(LKey key) override { return keys.push_back(key.GetDisplayText()), usesKeys; }
  bool EvKeyRepeat(LKey key) override { return keys.push_back("repeat " + key.GetDisplayText()), true; }
  bool EvDropFiles(const LDroppedFileData& files) override { return drops.push_back(files), true; }
  void Command(int id, int) override { commands.push_back(id); }
  void LayoutControls(int w, int h) override { layoutWidth = w, layoutHeight = h; }
  bool CmCancel() override { return ++closeRequests, mayClose; }
  void DestroyDialog() override { ++destroyed; }

  std::vector<std::string> keys;
  std::vector<LDroppedFileData> drops;
  std::vector<int> commands;
  int layoutWidth = 0, layoutHeight = 0, closeRequests = 0, destroyed = 0;
  bool mayClose = true, usesKeys = true;
};

class RecordingControl : public LPaintControl {
 public:
  using LPaintControl::LPaintControl;
  void EvPaint(LPaintContext& context) override {
    if (paint) paint(context);
  }
  void EvMouseDown(const LMouseEvent& event) override { Tell("down", event); }
  void EvMouseMove(const LMouseEvent& event) override { Tell(IsCaptured() ? "drag" : "move", event); }
  void EvMouseUp(const LMouseEvent& event) override { Tell(IsCaptured() ? "up, held" : "up", event); }
  void EvMouseDoubleClick(const LMouseEvent& event) override { Tell("double", event); }
  bool EvMouseWheel(const LMouseEvent&, double steps) override { return wheel += steps, true; }

  std::function<void(LPaintContext&)> paint;
  std::vector<std::string> mouse;
  double wheel = 0;

 private:
  void Tell(const char* what, const LMouseEvent& event) {
    mouse.push_back(std::string(what) + " " + std::to_string(event.at.x) + "," + std::to_string(event.at.y));
  }
};
