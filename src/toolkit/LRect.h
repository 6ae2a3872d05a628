// Points and rectangles of windows and painting.
// Units    device-independent pixels; x to the right, y down. A rectangle covers x up to, not including, Right().
// Threads  [any]
#pragma once
#include <algorithm>

#include "toolkit/LPoint.h"

struct LRect {
  int x = 0, y = 0, width = 0, height = 0;

  int Right() const { return x + width; }
  int Bottom() const { return y + height; }
  LPoint TopLeft() const { return {x, y}; }
  LPoint Centre() const { return {x + width / 2, y + height / 2}; }
  bool IsEmpty() const { return width <= 0 || height <= 0; }
  bool Contains(LPoint p) const { return p.x >= x && p.x < Right() && p.y >= y && p.y < Bottom(); }
  LRect Inset(int dx, int dy) const { return {x + dx, y + dy, width - 2 * dx, height - 2 * dy}; }
  LRect Inset(int d) const { return Inset(d, d); }
  LRect Moved(int dx, int dy) const { return {x + dx, y + dy, width, height}; }
  LRect Intersected(const LRect& other) const {
    const int left = std::max(x, other.x), top = std::max(y, other.y);
    return {left, top, std::max(0, std::min(Right(), other.Right()) - left),
            std::max(0, std::min(Bottom(), other.Bottom()) - top)};
  }

  // Cut a strip off one side: the strip is returned and this keeps the rest. For layouts from the outside inwards.
  LRect TakeLeft(int w) { return x += w, width -= w, LRect{x - w, y, w, height}; }
  LRect TakeRight(int w) { return width -= w, LRect{Right(), y, w, height}; }
  LRect TakeTop(int h) { return y += h, height -= h, LRect{x, y - h, width, h}; }
  LRect TakeBottom(int h) { return height -= h, LRect{x, Bottom(), width, h}; }

  friend bool operator==(const LRect& a, const LRect& b) = default;
};
