// How a line is drawn.
// Units    width and dash lengths in device-independent pixels; width 0 is one pixel of the device.
// Threads  [any]
#pragma once
#include "toolkit/LGuiColor.h"

struct LGuiPen {
  LGuiColor colour;
  double width = 1;
  double dashOn = 0, dashOff = 0;  // both above 0: dashed
  bool roundEnds = false;
  bool IsDashed() const { return dashOn > 0 && dashOff > 0; }
  friend bool operator==(const LGuiPen& a, const LGuiPen& b) = default;
};
