// A point on the pixel grid, and one between the pixels for smooth lines.
// Units    device-independent pixels; x to the right, y down.
// Threads  [any]
#pragma once

struct LPoint {
  int x = 0, y = 0;
  friend bool operator==(LPoint a, LPoint b) = default;
};

struct LPointF {
  double x = 0, y = 0;
  LPointF() = default;
  LPointF(double px, double py) : x(px), y(py) {}
  LPointF(LPoint p) : x(p.x), y(p.y) {}  // implicit: every grid point is one
  friend bool operator==(LPointF a, LPointF b) = default;
};
